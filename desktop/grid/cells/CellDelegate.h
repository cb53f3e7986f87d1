#pragma once

#include <QStyledItemDelegate>

namespace tessel {

class GridView;

/// Paints a cell of a grid straight from the recordset's value.
class CellDelegate final : public QStyledItemDelegate {
 public:
  explicit CellDelegate(GridView& grid);
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

  /// Where the button of a cell stands.
  [[nodiscard]] static QRect ButtonIn(const QRect& cell);

 private:
  void PaintButton(QPainter& painter, const QStyleOptionViewItem& option) const;

  GridView& grid_;
};

}  // namespace tessel
