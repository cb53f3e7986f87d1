#pragma once

#include <QKeyEvent>
#include <QMouseEvent>

#include "contract/base/Keys.h"

namespace tessel {

/// The virtual key code of a Qt key; 0 for a key that has none.
[[nodiscard]] int KeyCodeOf(int qtKey);
/// Bits of shiftState.
[[nodiscard]] int ShiftStateOf(Qt::KeyboardModifiers modifiers);
/// The button of a press, release or double click; of a move the one that is held.
[[nodiscard]] MouseButton ButtonOf(const QMouseEvent& event);

}  // namespace tessel
