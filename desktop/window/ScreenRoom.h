#pragma once

#include <QSize>
#include <QWidget>

namespace tessel {

/// The wanted size, but no more than nine tenths of a screen's work area.
[[nodiscard]] QSize Within(const QSize& workArea, const QSize& wanted);
/// The same on the screen where the window stands or will stand.
[[nodiscard]] QSize WithinScreenOf(const QWidget& window, const QSize& wanted);

}  // namespace tessel
