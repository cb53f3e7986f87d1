#include "desktop/grid/cells/GridHeader.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <utility>

#include "contract/data/RowArrangement.h"
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
  if (!rows) setMouseTracking(true);
}

/// The exact width is rounded up: a number that lacks a part of a pixel would be elided.
int GridHeader::WidthForRows(int rows) const {
  const QString widest = QString::number(std::max(rows, 99));
  const qreal exact = QFontMetricsF(font()).horizontalAdvance(widest);
  return static_cast<int>(std::ceil(exact)) + 2 * cellPadding + 1;
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
  if (orientation() == Qt::Horizontal) PaintSort(*painter, rect, section);
  painter->restore();
}

void GridHeader::PaintText(QPainter& painter, const QRect& rect, int section) const {
  const QAbstractItemModel& rows = *model();
  const QString text = rows.headerData(section, orientation(), Qt::DisplayRole).toString();
  const QVariant aligned = rows.headerData(section, orientation(), Qt::TextAlignmentRole);
  const int alignment = aligned.isValid() ? aligned.toInt() : static_cast<int>(defaultAlignment());
  QRect inside = rect.adjusted(cellPadding, 0, -cellPadding - 1, 0);
  const SortPart part = orientation() == Qt::Horizontal ? SortPartOf(section) : SortPart();
  if (part.place > 0 || (orientation() == Qt::Horizontal && section == pointed_))
    inside.setRight(SortZoneIn(rect).left() - 1 - PlaceWidth(part));
  const int needed = fontMetrics().horizontalAdvance(text) + 1;  // Parts of a pixel cut it, too.
  const int lacking = needed - inside.width();
  if (part.place > 0 && lacking > 0) grid_.WantWidth(section, rect.width() + lacking);
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

// --- sorting -------------------------------------------------------------------------------------

GridHeader::SortPart GridHeader::SortPartOf(int section) const {
  const auto& source = grid_.Model().Source();
  if (source == nullptr || (source->State() & objectState::open) == 0) return {};
  const std::vector<SortKey>& keys = source->Arrangement().sort;
  for (std::size_t i = 0; i < keys.size(); ++i)
    if (keys[i].field == static_cast<std::size_t>(section))
      return {static_cast<int>(i) + 1, keys[i].descending, keys.size() == 1};
  return {};
}

/// Beside the edge at which the column is made wider.
QRect GridHeader::SortZoneIn(const QRect& section) const {
  const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
  const int width = std::min(fontMetrics().height(), section.width() / 2);
  return {section.right() - grip - width, section.top(), width, section.height()};
}

/// What the number left of the arrow takes.
int GridHeader::PlaceWidth(const SortPart& part) const {
  if (part.place == 0 || part.alone) return 0;
  return fontMetrics().horizontalAdvance(QString::number(part.place)) + 1;
}

QRect GridHeader::SectionRect(int section) const {
  return {sectionViewportPosition(section), 0, sectionSize(section), height()};
}

/// The column whose arrow stands there; -1 for none.
int GridHeader::SortSectionAt(const QPoint& place) const {
  if (orientation() == Qt::Vertical) return -1;
  const int section = logicalIndexAt(place);
  return section >= 0 && SortZoneIn(SectionRect(section)).contains(place) ? section : -1;
}

void GridHeader::mousePressEvent(QMouseEvent* event) {
  const QPoint place = event->position().toPoint();
  const bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
  const bool sorts = SortSectionAt(place) >= 0 || grid_.SortsAt(ctrl);
  const int section = logicalIndexAt(place);
  if (orientation() == Qt::Vertical || event->button() != Qt::LeftButton || !sorts || section < 0)
    return QHeaderView::mousePressEvent(event);
  grid_.setFocus(Qt::MouseFocusReason);
  grid_.PressSort(section, event->modifiers().testFlag(Qt::ShiftModifier));
}

void GridHeader::mouseMoveEvent(QMouseEvent* event) {
  PointAt(SortSectionAt(event->position().toPoint()));
  QHeaderView::mouseMoveEvent(event);
}

void GridHeader::leaveEvent(QEvent* event) {
  PointAt(-1);
  QHeaderView::leaveEvent(event);
}

void GridHeader::PointAt(int section) {
  if (std::exchange(pointed_, section) != section) viewport()->update();
}

/// An arrow up or down, with its place behind it where there are several; a faint one where the
/// mouse is.
void GridHeader::PaintSort(QPainter& painter, const QRect& rect, int section) const {
  const SortPart part = SortPartOf(section);
  if (part.place == 0 && section != pointed_) return;
  const QRect zone = SortZoneIn(rect);
  const qreal half = MarkSide() / 2.0;
  const qreal down = part.descending ? 1 : -1;
  const QPointF middle = QRectF(zone).center();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(part.place > 0 ? CurrentTokens().accent : CurrentTokens().line);
  painter.drawPolygon(
      QPolygonF({middle + QPointF(-half, -down * half / 2),
                 middle + QPointF(half, -down * half / 2), middle + QPointF(0, down * half / 2)}));
  if (part.place > 0 && !part.alone) {
    painter.setPen(CurrentTokens().muted);
    painter.setFont(font());
    const int width = PlaceWidth(part);
    painter.drawText(QRect(zone.left() - width + 1, zone.top(), width, zone.height()),
                     Qt::AlignRight | Qt::AlignVCenter, QString::number(part.place));
  }
  painter.restore();
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
