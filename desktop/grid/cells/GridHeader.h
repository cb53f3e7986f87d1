#pragma once

#include <QHeaderView>

namespace tessel {

class GridView;

/// The row numbers or the field names of a grid: marks the selected ones and the current row.
class GridHeader final : public QHeaderView {
 public:
  GridHeader(Qt::Orientation orientation, GridView& grid);
  /// Width that the numbers of so many rows need.
  [[nodiscard]] int WidthForRows(int rows) const;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  /// How a column takes part in the order of the rows.
  struct SortPart {
    int place = 0;  ///< From 1; 0: it takes no part.
    bool descending = false;
    bool alone = true;
  };
  [[nodiscard]] SortPart SortPartOf(int section) const;
  [[nodiscard]] QRect SortZoneIn(const QRect& section) const;
  [[nodiscard]] int PlaceWidth(const SortPart& part) const;
  [[nodiscard]] QRect SectionRect(int section) const;
  [[nodiscard]] int SortSectionAt(const QPoint& place) const;
  void PaintSort(QPainter& painter, const QRect& rect, int section) const;
  void PointAt(int section);
  [[nodiscard]] bool IsSelected(int section) const;
  [[nodiscard]] int MarkSide() const { return fontMetrics().ascent() / 2 + 1; }
  [[nodiscard]] bool IsCurrentRow(int section) const;
  void PaintText(QPainter& painter, const QRect& rect, int section) const;
  void PaintPencil(QPainter& painter, const QRect& rect) const;

  GridView& grid_;
  int pointed_ = -1;  ///< The mouse is over the sort arrow of this column.
};

}  // namespace tessel
