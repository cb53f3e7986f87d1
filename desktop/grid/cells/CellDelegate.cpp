#include "desktop/grid/cells/CellDelegate.h"

#include <QGuiApplication>
#include <QPainter>
#include <algorithm>

#include "desktop/grid/cells/GridView.h"

namespace tessel {

namespace {

/// What the style leaves beside a text by itself.
constexpr int paddingOfStyle = 3;

void SetText(QPalette& palette, const QColor& color) {
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
    palette.setColor(group, QPalette::Text, color);
}

}  // namespace

CellDelegate::CellDelegate(GridView& grid) : QStyledItemDelegate(&grid), grid_(grid) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const ShownCell cell = grid_.Model().CellAt(index.row(), index.column());
  const bool selected = grid_.ShowsSelected(index.row(), index.column());
  const bool current = index == grid_.currentIndex();
  const bool button = current && grid_.Model().ColumnAt(index.column()).button;
  painter->fillRect(option.rect, GroundOf(index, selected));
  PaintText(*painter, option, index, cell, selected, button);
  if (button) PaintButton(*painter, option);
  PaintLines(*painter, option.rect);
  if (current) PaintRing(*painter, option.rect);
}

QColor CellDelegate::GroundOf(const QModelIndex& index, bool selected) const {
  const GridColors& colors = Colors();
  if (selected) return grid_.palette().color(QPalette::Highlight);
  if (grid_.Model().IsMarked(index.row(), index.column())) return colors.marked;
  if (index.row() == grid_.currentIndex().row()) return colors.currentRow;
  return index.row() % 2 == 0 ? colors.base : colors.alternate;
}

/// A number that does not fit asks for a wider column: what is left of it would be another number.
void CellDelegate::PaintText(QPainter& painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index, const ShownCell& cell, bool selected,
                             bool button) const {
  if (cell.text.isEmpty()) return;
  QStyleOptionViewItem shown = option;
  shown.text = cell.text;
  shown.features = QStyleOptionViewItem::HasDisplay;
  shown.displayAlignment = (cell.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
  shown.textElideMode = Qt::ElideRight;
  shown.state =
      option.state & ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
  shown.backgroundBrush = QBrush();
  shown.font.setItalic(cell.isNull);
  const int inside = cellPadding - paddingOfStyle;
  shown.rect.adjust(inside, 0, -inside - 1, 0);
  if (button) shown.rect.setRight(ButtonIn(option.rect).left() - 1);
  const QColor onSelection = grid_.palette().color(QPalette::HighlightedText);
  SetText(shown.palette, selected ? onSelection : cell.isNull ? Colors().muted : Colors().text);
  grid_.style()->drawControl(QStyle::CE_ItemViewItem, &shown, &painter, &grid_);
  if (cell.isNumber) AskForRoom(index.column(), cell.text, option.rect.width());
}

/// Digits are of about one width: texts that are surely short enough are not measured.
void CellDelegate::AskForRoom(int column, const QString& number, int width) const {
  const QFontMetrics metrics = grid_.fontMetrics();
  const int room = width - cellMargins;
  if (number.size() * metrics.maxWidth() <= room) return;
  const int needed = metrics.horizontalAdvance(number);
  if (needed > room) grid_.WantWidth(column, needed + cellMargins);
}

void CellDelegate::PaintLines(QPainter& painter, const QRect& cell) const {
  painter.setPen(Colors().line);
  painter.drawLine(cell.topRight(), cell.bottomRight());
  painter.drawLine(cell.bottomLeft(), cell.bottomRight());
}

/// Of the width of a line, and twice that while the grid has the keyboard.
void CellDelegate::PaintRing(QPainter& painter, const QRect& cell) const {
  painter.setPen(Colors().ring);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(cell.adjusted(0, 0, -2, -2));
  if (grid_.hasFocus()) painter.drawRect(cell.adjusted(1, 1, -3, -3));
}

QRect CellDelegate::ButtonIn(const QRect& cell) {
  const int side = std::min(cell.height(), cell.width());
  return {cell.right() - side + 1, cell.top(), side, cell.height()};
}

void CellDelegate::PaintButton(QPainter& painter, const QStyleOptionViewItem& option) const {
  QStyleOptionButton button;
  button.palette = grid_.window()->palette();
  button.rect = ButtonIn(option.rect).adjusted(1, 1, -2, -2);
  button.state = QStyle::State_Enabled | QStyle::State_Raised;
  button.text = QStringLiteral("…");
  grid_.style()->drawControl(QStyle::CE_PushButton, &button, &painter, &grid_);
}

/// Made anew when the grid or the program has other colours.
const GridColors& CellDelegate::Colors() const {
  const QPalette& palette = grid_.palette();
  const auto key = std::pair(palette.cacheKey(), QGuiApplication::palette().cacheKey());
  if (std::exchange(colorsOf_, key) != key) colors_ = GridColorsOf(palette);
  return colors_;
}

}  // namespace tessel
