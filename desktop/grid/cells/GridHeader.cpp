#include "desktop/grid/cells/GridHeader.h"

#include <QPainter>

#include "desktop/grid/cells/CellDelegate.h"
#include "desktop/grid/cells/GridView.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int markWidth = 3;  ///< Of the bar beside the current row's number.

}  // namespace

GridHeader::GridHeader(Qt::Orientation orientation, GridView& grid)
    : QHeaderView(orientation, &grid), grid_(grid) {
  const bool rows = orientation == Qt::Vertical;
  setSectionsClickable(true);
  setHighlightSections(false);
  setSectionResizeMode(rows ? Fixed : Interactive);
  setDefaultAlignment((rows ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  if (!rows) setTextElideMode(Qt::ElideRight);
}

int GridHeader::WidthForRows(int rows) const {
  return fontMetrics().horizontalAdvance(QString::number(std::max(rows, 99))) + 2 * cellPadding + 1;
}

/// Flat: a ground, a line at the right and one below. What is selected has the ground of selected
/// cells; the number of the current row stands out by the colour of a text.
void GridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const Tokens& tokens = CurrentTokens();
  const bool selected = IsSelected(section);
  const bool current = IsCurrentRow(section);
  painter->save();
  painter->fillRect(rect, selected ? tokens.selection : tokens.window);
  painter->setPen(tokens.line);
  painter->drawLine(rect.topRight(), rect.bottomRight());
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  if (current)
    painter->fillRect(QRect(rect.topLeft(), QSize(markWidth, rect.height())), tokens.accent);
  painter->setPen(selected || current ? tokens.text : tokens.muted);
  if (current && grid_.RowIsBeingChanged()) PaintPencil(*painter, rect);
  else PaintText(*painter, rect, section);
  painter->restore();
}

void GridHeader::PaintText(QPainter& painter, const QRect& rect, int section) const {
  const QAbstractItemModel& rows = *model();
  const QString text = rows.headerData(section, orientation(), Qt::DisplayRole).toString();
  const QVariant aligned = rows.headerData(section, orientation(), Qt::TextAlignmentRole);
  const int alignment = aligned.isValid() ? aligned.toInt() : static_cast<int>(defaultAlignment());
  const QRect inside = rect.adjusted(cellPadding, 0, -cellPadding - 1, 0);
  painter.setFont(font());
  painter.drawText(inside, alignment | Qt::TextSingleLine,
                   fontMetrics().elidedText(text, Qt::ElideRight, inside.width()));
}

bool GridHeader::IsCurrentRow(int section) const {
  return orientation() == Qt::Vertical && section == grid_.currentIndex().row();
}

/// As high as a row.
QSize GridHeader::sizeHint() const {
  const QSize hint = QHeaderView::sizeHint();
  const int rows = fontMetrics().height() * 3 / 2;
  return orientation() == Qt::Vertical ? hint : QSize(hint.width(), rows);
}

bool GridHeader::IsSelected(int section) const {
  return orientation() == Qt::Vertical ? grid_.RowSelected(section) : grid_.ColumnSelected(section);
}

/// The row holds something that is not written yet.
void GridHeader::PaintPencil(QPainter& painter, const QRect& rect) const {
  const qreal side = MarkSide() + 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.center().x() - side / 2, rect.center().y() + side / 2 + 0.5);
  painter.rotate(-45);
  painter.setPen(Qt::NoPen);
  painter.setBrush(CurrentTokens().text);
  const qreal half = side / 5;
  painter.drawPolygon(
      QPolygonF({QPointF(0, 0), QPointF(side * 0.4, -half), QPointF(side * 0.4, half)}));
  painter.drawRect(QRectF(side * 0.5, -half, side * 0.8, 2 * half));
  painter.restore();
}

}  // namespace tessel
