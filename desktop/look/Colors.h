#pragma once

#include <QColor>
#include <QPalette>

#include "contract/base/Color.h"

namespace tessel {

/// What a colour looks like in the given palette; a system colour is one of the palette's roles, so
/// it follows light and dark.
[[nodiscard]] QColor ToQColor(Color color, const QPalette& palette);
/// The plain colour, without transparency.
[[nodiscard]] Color FromQColor(const QColor& color);

/// The text colour of a control with these two. Where only the ground is one of the user's own, the
/// text is black or white, whichever can be read on it. A text of his own on the system's ground
/// becomes lighter or darker until it can be read, and keeps its hue. Two of his own, or of the
/// system, stay as they are.
[[nodiscard]] QColor TextColor(Color text, Color ground, const QPalette& palette);

/// The colour where it can be read on the ground, else that of the text.
[[nodiscard]] QColor ReadableOn(const QColor& ground, const QColor& color, const QColor& text);

/// The colour at a part of the way from one to another: 0 is the first, 1 the second.
[[nodiscard]] QColor Blend(const QColor& from, const QColor& to, double part);

/// Whether light text is needed on this ground.
[[nodiscard]] bool IsDark(const QColor& ground);

}  // namespace tessel
