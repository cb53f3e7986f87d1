#pragma once

#include <QColor>
#include <QPainter>
#include <QStyleOption>

namespace tessel {

/// The ground of a box and the line around it.
struct BoxLook {
  QColor ground;
  QColor edge;
  double edgeWidth = 1;
};

/// Draws a box with round corners within the rectangle. A ground that is not valid is left open.
void DrawBox(QPainter& painter, const QRect& rect, const BoxLook& look);
/// The ring around what has the focus, just within the rectangle.
void DrawFocusRing(QPainter& painter, const QRect& rect);
/// The thinner one around a part of what has the focus, such as an entry of a list.
void DrawFocusLine(QPainter& painter, const QRect& rect);

/// A field to type in or to choose from: ringed in the accent while it has the focus.
[[nodiscard]] BoxLook FieldLook(const QStyleOption& option);
/// The frame around a list or a text of many lines, which has a ground of its own.
[[nodiscard]] BoxLook FrameLook(const QStyleOption& option);
[[nodiscard]] BoxLook PushButtonLook(const QStyleOption& option);
/// Nothing but for a button that is under the mouse, pressed or on.
[[nodiscard]] BoxLook ToolButtonLook(const QStyleOption& option);

/// A box to tick, with its mark.
void DrawCheckBox(QPainter& painter, const QStyleOption& option);
void DrawRadioButton(QPainter& painter, const QStyleOption& option);
/// Two lines that point there, in the middle of the rectangle.
void DrawChevron(QPainter& painter, const QRect& rect, Qt::ArrowType direction,
                 const QColor& color);

/// The ground of an entry of a list or a table.
void DrawItemGround(QPainter& painter, const QStyleOptionViewItem& item);

}  // namespace tessel
