#include "desktop/controls/lists/CutTextDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include "desktop/base/Text.h"

namespace tessel {

CutTextDelegate::CutTextDelegate(QAbstractItemView& view)
    : QStyledItemDelegate(&view), view_(view) {
  view.setTextElideMode(Qt::ElideMiddle);
  view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view.setItemDelegate(this);
}

int CutTextDelegate::WholeWidth(const QModelIndex& index) const {
  QStyleOptionViewItem option;
  option.initFrom(&view_);
  option.font = view_.font();
  option.fontMetrics = view_.fontMetrics();
  option.decorationSize = view_.iconSize();
  return QStyledItemDelegate::sizeHint(option, index).width();
}

QSize CutTextDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  return {0, QStyledItemDelegate::sizeHint(option, index).height()};
}

bool CutTextDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QRect shown = view->visualRect(index);
  const bool hasOwn = !index.data(Qt::ToolTipRole).toString().isEmpty();
  if (event->type() != QEvent::ToolTip || !index.isValid() || hasOwn ||
      WholeWidth(index) <= shown.width())
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  const std::string text = FromQt(index.data(Qt::DisplayRole).toString());
  QToolTip::showText(event->globalPos(), AsPlainToolTip(text), view->viewport(), shown);
  return true;
}

}  // namespace tessel
