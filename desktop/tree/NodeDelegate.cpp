#include "desktop/tree/NodeDelegate.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyle>

#include "desktop/look/Tokens.h"
#include "desktop/tree/KeyedTreeModel.h"

namespace tessel {

namespace {

constexpr int padding = 4;
constexpr int stripeWidth = 4;

bool IsSelected(const QStyleOptionViewItem& option) {
  return option.state.testFlag(QStyle::State_Selected);
}

}  // namespace

NodeDelegate::NodeDelegate(QAbstractItemView& view) : CutTextDelegate(view), tree_(view) {}

/// The ground goes to the right edge, beyond a text that leaves room for the number.
void NodeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  PaintGround(*painter, option);
  QStyleOptionViewItem shown = option;
  shown.rect.adjust(PaintMark(*painter, option, index), 0, -PaintCount(*painter, option, index), 0);
  CutTextDelegate::paint(painter, shown, index);
  PaintDetail(*painter, shown, index);
}

/// In the room that the text leaves.
void NodeDelegate::PaintDetail(QPainter& painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  const QString detail = index.data(detailRole).toString();
  if (detail.isEmpty()) return;
  QStyleOptionViewItem item = option;
  initStyleOption(&item, index);
  QRect room = tree_.style()->subElementRect(QStyle::SE_ItemViewItemText, &item, &tree_);
  const QFontMetrics metrics = tree_.fontMetrics();
  room.setLeft(room.left() + metrics.horizontalAdvance(item.text) + 3 * padding);
  room.setRight(option.rect.right());
  if (room.width() < 4 * padding) return;
  const Tokens& tokens = CurrentTokens();
  painter.setFont(tree_.font());
  painter.setPen(IsSelected(option) ? tokens.text : tokens.muted);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                   metrics.elidedText(detail, Qt::ElideRight, room.width()));
}

void NodeDelegate::PaintGround(QPainter& painter, const QStyleOptionViewItem& option) const {
  const Tokens& tokens = CurrentTokens();
  if (IsSelected(option)) painter.fillRect(option.rect, tokens.selection);
  else if (option.state.testFlag(QStyle::State_MouseOver))
    painter.fillRect(option.rect, tokens.currentRow);
}

/// Pixels that the number takes.
int NodeDelegate::PaintCount(QPainter& painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const int count = index.data(countRole).toInt();
  if (count == 0) return 0;
  const Tokens& tokens = CurrentTokens();
  const QString text = QString::number(count);
  const int width = tree_.fontMetrics().horizontalAdvance(text) + 2 * padding;
  painter.setFont(tree_.font());
  painter.setPen(IsSelected(option) ? tokens.text : tokens.muted);
  painter.drawText(option.rect.adjusted(0, 0, -padding, 0), Qt::AlignRight | Qt::AlignVCenter,
                   text);
  return width;
}

/// Pixels that the stripe takes.
int NodeDelegate::PaintMark(QPainter& painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  const auto mark = index.data(markRole).value<QColor>();
  if (!mark.isValid()) return 0;
  QRect stripe(option.rect.left(), option.rect.top() + 2, stripeWidth, option.rect.height() - 4);
  painter.fillRect(stripe.adjusted(-1, -1, 1, 1), CurrentTokens().edge);
  painter.fillRect(stripe, mark);
  return stripeWidth + padding;
}

}  // namespace tessel
