#pragma once

#include <QPoint>
#include <QRect>
#include <QWidget>

namespace tessel {

/// A place on the screen in the pixels in which the window system counts, which is what assistive
/// tools want. The toolkit counts in its own, which are larger where the desktop is scaled.
[[nodiscard]] QRect ToNative(const QRect& place, const QWidget& widget);
/// The other way round.
[[nodiscard]] QPoint FromNative(const QPoint& place, const QWidget& widget);
/// Where a part of a widget stands, in native pixels; empty for one that is not on show.
[[nodiscard]] QRect NativePlaceOf(const QWidget& widget, const QRect& part);

}  // namespace tessel
