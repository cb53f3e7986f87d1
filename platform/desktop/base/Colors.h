#pragma once

#include <QColor>
#include <QPalette>

#include "platform/Color.h"

namespace tessel {

/// What a colour looks like in the given palette; a system colour is one of the palette's roles, so
/// it follows light and dark.
[[nodiscard]] QColor ToQColor(Color color, const QPalette& palette);
/// The plain colour, without transparency.
[[nodiscard]] Color FromQColor(const QColor& color);

/// Whether light text is needed on this ground.
[[nodiscard]] bool IsDark(const QColor& ground);

}  // namespace tessel
