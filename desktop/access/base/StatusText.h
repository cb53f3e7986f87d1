#pragma once

#include <QWidget>

namespace tessel {

/// Whether the form marks the widget as one whose text tells what has just come of something: a
/// reader speaks it when it changes.
[[nodiscard]] bool IsStatus(const QWidget& widget);
/// The text that is spoken: that on show without the time in brackets before it.
[[nodiscard]] QString SpokenStatus(const QWidget& widget);

}  // namespace tessel
