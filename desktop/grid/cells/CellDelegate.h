#pragma once

#include <QStyledItemDelegate>
#include <utility>

#include "desktop/grid/cells/GridColors.h"

namespace tessel {

class GridView;
struct ShownCell;

/// Pixels between a cell's edge and its text.
inline constexpr int cellPadding = 6;
/// What a column needs beside the width of its text: the line, and a pixel because widths of texts
/// are rounded.
inline constexpr int cellMargins = 2 * cellPadding + 2;

/// Paints a cell of a grid straight from the recordset's value: every second row on another ground,
/// that of the current record tinted, the current cell with a ring.
class CellDelegate final : public QStyledItemDelegate {
 public:
  explicit CellDelegate(GridView& grid);
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

  /// Where the button of a cell stands.
  [[nodiscard]] static QRect ButtonIn(const QRect& cell);

 private:
  [[nodiscard]] QColor GroundOf(const QModelIndex& index, bool selected) const;
  void PaintText(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                 const ShownCell& cell, bool selected, bool button) const;
  void AskForRoom(int column, const QString& number, int width) const;
  void PaintLines(QPainter& painter, const QRect& cell) const;
  void PaintRing(QPainter& painter, const QRect& cell) const;
  void PaintButton(QPainter& painter, const QStyleOptionViewItem& option) const;
  [[nodiscard]] const GridColors& Colors() const;

  GridView& grid_;
  mutable GridColors colors_;
  mutable std::pair<qint64, qint64> colorsOf_{-1, -1};  ///< Keys of the palettes they are made of.
};

}  // namespace tessel
