// What the style draws, piece by piece: boxes with a thin line around them, marks and rings, in the
// colours of the program.

#include "desktop/look/theme/FlatDrawing.h"

#include <algorithm>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr double cornerRadius = 3.5;
constexpr double ringWidth = 2;
constexpr double markWidth = 1.8;
constexpr double chevronWidth = 1.5;
/// How much of the text's colour lies on a ground under the mouse, and on one that is pressed.
constexpr double hoverStrength = 0.06;
constexpr double pressedStrength = 0.12;
constexpr double raisedStrength = 0.06;
constexpr double defaultStrength = 0.12;

bool Has(const QStyleOption& option, QStyle::StateFlag flag) { return option.state.testFlag(flag); }

bool IsUnderMouse(const QStyleOption& option) {
  return Has(option, QStyle::State_MouseOver) && Has(option, QStyle::State_Enabled);
}

bool IsPressed(const QStyleOption& option) {
  return Has(option, QStyle::State_Sunken) || Has(option, QStyle::State_On);
}

/// The line around a box that may have the focus.
void SetEdge(BoxLook& look, const QStyleOption& option) {
  const Tokens& tokens = CurrentTokens();
  look.edge = Has(option, QStyle::State_Enabled) ? tokens.edge : tokens.line;
  if (!Has(option, QStyle::State_HasFocus)) return;
  look.edge = tokens.accent;
  look.edgeWidth = ringWidth;
}

/// White on light; on dark a little lighter than the window. A ground of the user's own stays.
QColor ButtonGround(const QStyleOption& option) {
  const Tokens& tokens = CurrentTokens();
  const QColor own = option.palette.color(QPalette::Button);
  if (own != tokens.window) return own;
  if (!Has(option, QStyle::State_Enabled)) return tokens.window;
  return IsDark(tokens.window) ? Blend(tokens.window, tokens.text, raisedStrength) : tokens.base;
}

void SetPen(QPainter& painter, const QColor& color, double width) {
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
}

/// A mark in the box of this rectangle; its points are given in parts of the box.
void DrawMark(QPainter& painter, const QRectF& box, std::initializer_list<QPointF> points,
              const QColor& color) {
  QPolygonF line;
  for (const QPointF& point : points)
    line.append(box.topLeft() + QPointF(point.x() * box.width(), point.y() * box.height()));
  SetPen(painter, color, markWidth);
  painter.drawPolyline(line);
}

/// The square in the middle of a rectangle, with even edges.
QRect SquareIn(const QRect& rect) {
  const int side = std::min(rect.width(), rect.height());
  return {rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2, side, side};
}

/// Of something to tick: the ground is full of the accent once it is ticked.
BoxLook TickLook(const QStyleOption& option) {
  const Tokens& tokens = CurrentTokens();
  BoxLook look{tokens.base, {}};
  SetEdge(look, option);
  const bool isTicked = Has(option, QStyle::State_On) || Has(option, QStyle::State_NoChange);
  if (!Has(option, QStyle::State_Enabled)) look.ground = isTicked ? tokens.muted : tokens.window;
  else if (isTicked) look.ground = tokens.accent;
  else if (IsUnderMouse(option)) look.ground = Blend(tokens.base, tokens.text, hoverStrength);
  if (isTicked && !Has(option, QStyle::State_HasFocus)) look.edge = look.ground;
  return look;
}

}  // namespace

void DrawBox(QPainter& painter, const QRect& rect, const BoxLook& look) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const double half = look.edgeWidth / 2;
  painter.setPen(look.edge.isValid() ? QPen(look.edge, look.edgeWidth) : QPen(Qt::NoPen));
  painter.setBrush(look.ground.isValid() ? QBrush(look.ground) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(QRectF(rect).adjusted(half, half, -half, -half), cornerRadius,
                          cornerRadius);
  painter.restore();
}

void DrawFocusRing(QPainter& painter, const QRect& rect) {
  DrawBox(painter, rect, {{}, CurrentTokens().accent, ringWidth});
}

void DrawFocusLine(QPainter& painter, const QRect& rect) {
  DrawBox(painter, rect, {{}, CurrentTokens().accent});
}

BoxLook FieldLook(const QStyleOption& option) {
  BoxLook look{option.palette.color(QPalette::Base), {}};
  SetEdge(look, option);
  return look;
}

BoxLook FrameLook(const QStyleOption& option) {
  BoxLook look;
  SetEdge(look, option);
  return look;
}

BoxLook PushButtonLook(const QStyleOption& option) {
  const Tokens& tokens = CurrentTokens();
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isDefault =
      button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
  BoxLook look{ButtonGround(option), {}};
  SetEdge(look, option);
  if (isDefault && Has(option, QStyle::State_Enabled)) {
    look.ground = Blend(look.ground, tokens.accent, defaultStrength);
    look.edge = tokens.accent;
  }
  if (IsPressed(option)) look.ground = Blend(look.ground, tokens.text, pressedStrength);
  else if (IsUnderMouse(option)) look.ground = Blend(look.ground, tokens.text, hoverStrength);
  return look;
}

BoxLook ToolButtonLook(const QStyleOption& option) {
  const Tokens& tokens = CurrentTokens();
  const QColor ground = option.palette.color(QPalette::Button);
  BoxLook look;
  if (IsPressed(option)) look.ground = Blend(ground, tokens.text, pressedStrength);
  else if (IsUnderMouse(option)) look.ground = Blend(ground, tokens.text, hoverStrength);
  if (!Has(option, QStyle::State_AutoRaise)) look.edge = tokens.edge;
  return look;
}

void DrawCheckBox(QPainter& painter, const QStyleOption& option) {
  const QRect box = SquareIn(option.rect);
  DrawBox(painter, box, TickLook(option));
  const QColor mark = CurrentTokens().base;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (Has(option, QStyle::State_NoChange)) DrawMark(painter, box, {{0.28, 0.5}, {0.72, 0.5}}, mark);
  else if (Has(option, QStyle::State_On))
    DrawMark(painter, box, {{0.25, 0.52}, {0.43, 0.70}, {0.76, 0.32}}, mark);
  painter.restore();
}

void DrawRadioButton(QPainter& painter, const QStyleOption& option) {
  const BoxLook look = TickLook(option);
  const double half = look.edgeWidth / 2;
  const QRectF box = QRectF(SquareIn(option.rect)).adjusted(half, half, -half, -half);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.edge, look.edgeWidth));
  painter.setBrush(look.ground);
  painter.drawEllipse(box);
  if (Has(option, QStyle::State_On)) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(CurrentTokens().base);
    painter.drawEllipse(box.center(), box.width() * 0.2, box.height() * 0.2);
  }
  painter.restore();
}

void DrawChevron(QPainter& painter, const QRect& rect, Qt::ArrowType direction,
                 const QColor& color) {
  const double reach = std::clamp(std::min(rect.width(), rect.height()) / 4.0, 2.5, 4.5);
  const double depth = reach / 2;
  QPolygonF line({QPointF(-reach, -depth), QPointF(0, depth), QPointF(reach, -depth)});
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect).center());
  if (direction == Qt::UpArrow) painter.rotate(180);
  if (direction == Qt::RightArrow) painter.rotate(-90);
  if (direction == Qt::LeftArrow) painter.rotate(90);
  SetPen(painter, color, chevronWidth);
  painter.drawPolyline(line);
  painter.restore();
}

void DrawItemGround(QPainter& painter, const QStyleOptionViewItem& item) {
  if (Has(item, QStyle::State_Selected))
    return painter.fillRect(item.rect, item.palette.brush(QPalette::Highlight));
  if (item.backgroundBrush.style() != Qt::NoBrush)
    return painter.fillRect(item.rect, item.backgroundBrush);
  if (!IsUnderMouse(item)) return;
  const QColor base = item.palette.color(QPalette::Base);
  painter.fillRect(item.rect, Blend(base, item.palette.color(QPalette::Text), hoverStrength));
}

}  // namespace tessel
