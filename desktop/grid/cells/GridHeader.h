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

 private:
  [[nodiscard]] bool IsSelected(int section) const;
  [[nodiscard]] int MarkSide() const { return fontMetrics().ascent() / 2 + 1; }
  [[nodiscard]] bool IsCurrentRow(int section) const;
  void PaintText(QPainter& painter, const QRect& rect, int section) const;
  void PaintPencil(QPainter& painter, const QRect& rect) const;

  GridView& grid_;
};

}  // namespace tessel
