#include "desktop/grid/cells/CellDelegate.h"

#include <QPainter>

#include "desktop/grid/cells/GridView.h"

namespace tessel {

namespace {

QColor Between(const QColor& a, const QColor& b) {
  return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

/// The ground of a cell that stands out: a little of a warm colour, in the light and in the dark.
QColor MarkedGround(const QPalette& palette) {
  const QColor warm(255, 160, 0);
  return Between(palette.color(QPalette::Base), Between(palette.color(QPalette::Base), warm));
}

/// The colour of the word NULL: half way from the text to its ground, whatever these are.
void MakePale(QPalette& palette) {
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    palette.setColor(
        group, QPalette::Text,
        Between(palette.color(group, QPalette::Text), palette.color(group, QPalette::Base)));
    palette.setColor(group, QPalette::HighlightedText,
                     Between(palette.color(group, QPalette::HighlightedText),
                             palette.color(group, QPalette::Highlight)));
  }
}

}  // namespace

CellDelegate::CellDelegate(GridView& grid) : QStyledItemDelegate(&grid), grid_(grid) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const ShownCell cell = grid_.Model().CellAt(index.row(), index.column());
  QStyleOptionViewItem shown = option;
  shown.index = index;
  shown.text = cell.text;
  shown.features = QStyleOptionViewItem::HasDisplay;
  shown.displayAlignment = (cell.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
  shown.textElideMode = Qt::ElideRight;
  shown.state.setFlag(QStyle::State_Selected, grid_.ShowsSelected(index.row(), index.column()));
  shown.state.setFlag(QStyle::State_HasFocus, false);
  const bool isSelected = shown.state.testFlag(QStyle::State_Selected);
  if (!isSelected && grid_.Model().IsMarked(index.row(), index.column()))
    shown.backgroundBrush = MarkedGround(shown.palette);
  if (cell.isNull) {
    shown.font.setItalic(true);
    MakePale(shown.palette);
  }
  const bool current = index == grid_.currentIndex();
  const bool button = current && grid_.Model().ColumnAt(index.column()).button;
  if (button) shown.rect.setRight(ButtonIn(option.rect).left() - 1);
  grid_.style()->drawControl(QStyle::CE_ItemViewItem, &shown, painter, &grid_);
  if (button) PaintButton(*painter, option);
  if (!current) return;
  painter->setPen(QPen(shown.palette.color(QPalette::Highlight), 1));
  painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
  if (grid_.hasFocus()) painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
}

QRect CellDelegate::ButtonIn(const QRect& cell) {
  const int side = std::min(cell.height(), cell.width());
  return {cell.right() - side + 1, cell.top(), side, cell.height()};
}

void CellDelegate::PaintButton(QPainter& painter, const QStyleOptionViewItem& option) const {
  QStyleOptionButton button;
  button.palette = grid_.window()->palette();
  button.rect = ButtonIn(option.rect).adjusted(1, 1, -1, -1);
  button.state = QStyle::State_Enabled | QStyle::State_Raised;
  button.text = QStringLiteral("…");
  grid_.style()->drawControl(QStyle::CE_PushButton, &button, &painter, &grid_);
}

}  // namespace tessel
