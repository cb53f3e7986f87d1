#pragma once

#include <string>

namespace tessel {

/// Virtual key codes, as the handlers of keys name them. Letters and digits are their upper-case
/// ASCII codes.
namespace key {
inline constexpr int back = 8;
inline constexpr int tab = 9;
inline constexpr int enter = 13;
inline constexpr int shift = 16;
inline constexpr int control = 17;
inline constexpr int alt = 18;
inline constexpr int escape = 27;
inline constexpr int space = 32;
inline constexpr int pageUp = 33;
inline constexpr int pageDown = 34;
inline constexpr int end = 35;
inline constexpr int home = 36;
inline constexpr int left = 37;
inline constexpr int up = 38;
inline constexpr int right = 39;
inline constexpr int down = 40;
inline constexpr int insert = 45;
inline constexpr int del = 46;
inline constexpr int contextMenu = 93;  ///< Shift+F10 is told as this key.
inline constexpr int f1 = 112;
inline constexpr int f2 = 113;
inline constexpr int f3 = 114;
inline constexpr int f4 = 115;
inline constexpr int f5 = 116;
inline constexpr int f6 = 117;
inline constexpr int f7 = 118;
inline constexpr int f8 = 119;
inline constexpr int f10 = 121;
inline constexpr int equals = 187;
inline constexpr int hyphen = 189;
inline constexpr int fullStop = 190;
inline constexpr int apostrophe = 222;
}  // namespace key

/// Bits of KeyEvent::shift and MouseEvent::shift.
namespace shiftState {
inline constexpr int none = 0;
inline constexpr int shift = 1;
inline constexpr int ctrl = 2;
inline constexpr int alt = 4;
}  // namespace shiftState

/// A key going down or up. A handler that takes the key sets `handled`: it then reaches nobody
/// else.
struct KeyEvent {
  int keyCode = 0;
  int shift = shiftState::none;
  bool handled = false;
  /// What a key going down types, UTF-8; empty when it types nothing, as with Ctrl, Alt or Meta
  /// held (AltGr types). A key without a code of its own that types something is reported too,
  /// with the code 0.
  std::string text = {};
};

enum class MouseButton { None, Left, Right, Middle };

/// A mouse event; `x` and `y` in twips from the control's upper left corner.
struct MouseEvent {
  MouseButton button = MouseButton::None;
  int shift = shiftState::none;
  int x = 0;
  int y = 0;
};

}  // namespace tessel
