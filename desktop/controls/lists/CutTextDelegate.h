#pragma once

#include <QStyledItemDelegate>

namespace tessel {

/// Shows items no wider than their view. A text that does not fit is cut in its middle, where names
/// of one kind differ least, and shown whole in a tool tip.
class CutTextDelegate : public QStyledItemDelegate {
 public:
  explicit CutTextDelegate(QAbstractItemView& view);

  /// Pixels that the item needs from side to side to show its text whole.
  [[nodiscard]] int WholeWidth(const QModelIndex& index) const;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  QAbstractItemView& view_;
};

}  // namespace tessel
