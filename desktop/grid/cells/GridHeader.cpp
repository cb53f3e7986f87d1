#include "desktop/grid/cells/GridHeader.h"

#include <QPainter>

#include "desktop/grid/cells/GridView.h"

namespace tessel {

namespace {

constexpr int padding = 4;
constexpr int overlayStrength = 90;

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
  return fontMetrics().horizontalAdvance(QString::number(std::max(rows, 99))) + MarkSide() +
         5 * padding;
}

void GridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, section);
  painter->restore();
  if (IsSelected(section)) {
    QColor overlay = palette().color(QPalette::Highlight);
    overlay.setAlpha(overlayStrength);
    painter->fillRect(rect, overlay);
  }
  if (orientation() != Qt::Vertical || section != grid_.currentIndex().row()) return;
  if (grid_.RowIsBeingChanged()) PaintPencil(*painter, rect);
  else PaintMark(*painter, rect);
}

bool GridHeader::IsSelected(int section) const {
  return orientation() == Qt::Vertical ? grid_.RowSelected(section) : grid_.ColumnSelected(section);
}

/// A triangle that points at the row.
void GridHeader::PaintMark(QPainter& painter, const QRect& rect) const {
  const qreal side = MarkSide();
  const QPointF top(rect.left() + padding, rect.center().y() - side / 2 + 0.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::ButtonText));
  painter.drawPolygon(
      QPolygonF({top, top + QPointF(0, side), top + QPointF(side * 0.75, side / 2)}));
  painter.restore();
}

/// The row holds something that is not written yet.
void GridHeader::PaintPencil(QPainter& painter, const QRect& rect) const {
  const qreal side = MarkSide() + 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.left() + padding, rect.center().y() + side / 2 + 0.5);
  painter.rotate(-45);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::ButtonText));
  const qreal half = side / 5;
  painter.drawPolygon(
      QPolygonF({QPointF(0, 0), QPointF(side * 0.4, -half), QPointF(side * 0.4, half)}));
  painter.drawRect(QRectF(side * 0.5, -half, side * 0.8, 2 * half));
  painter.restore();
}

}  // namespace tessel
