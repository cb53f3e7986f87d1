#pragma once

#include "desktop/controls/lists/CutTextDelegate.h"

namespace tessel {

/// Paints a node of a tree: its stripe before it, its detail muted behind the text, the number of
/// its children muted at the right edge, and a tint under the pointer.
class NodeDelegate final : public CutTextDelegate {
  Q_OBJECT

 public:
  explicit NodeDelegate(QAbstractItemView& view);
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  void PaintGround(QPainter& painter, const QStyleOptionViewItem& option) const;
  [[nodiscard]] int PaintCount(QPainter& painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const;
  void PaintDetail(QPainter& painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;
  [[nodiscard]] int PaintMark(QPainter& painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const;

  QAbstractItemView& tree_;
};

}  // namespace tessel
