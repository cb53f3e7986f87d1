#pragma once

#include <string>

namespace tessel {

/// Virtual key codes with their classic numbers, as the handlers of keys name them. Letters and
/// digits are their upper-case ASCII codes, whatever is held with them. A key has one code for both
/// of its characters: "1" and "!" are '1' where they share a key. The two keys for Enter have one
/// code, and so have the two of each of Shift, Ctrl and Alt. A code that is not named here may be
/// reported too.
namespace key {
inline constexpr int back = 8;  ///< Backspace.
inline constexpr int tab = 9;   ///< With Shift too.
inline constexpr int enter = 13;
// The three keys that change others are reported when they go down and up themselves.
inline constexpr int shift = 16;
inline constexpr int control = 17;
inline constexpr int alt = 18;
inline constexpr int escape = 27;
inline constexpr int space = 32;
// Those that move the caret or the current row.
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
// The function keys follow each other without a gap.
inline constexpr int f1 = 112;
inline constexpr int f2 = 113;
inline constexpr int f3 = 114;
inline constexpr int f4 = 115;
inline constexpr int f5 = 116;
inline constexpr int f6 = 117;
inline constexpr int f7 = 118;
inline constexpr int f8 = 119;
inline constexpr int f10 = 121;
// Keys named by the character that they type without Shift on the common layout.
inline constexpr int equals = 187;      ///< "=" and "+".
inline constexpr int hyphen = 189;      ///< "-" and "_".
inline constexpr int fullStop = 190;    ///< "." and ">".
inline constexpr int apostrophe = 222;  ///< A single quote, and the double one with Shift.
}  // namespace key

/// Bits of KeyEvent::shift and MouseEvent::shift: what was held when the event came. AltGr, where
/// the desktop knows it as a key of its own, sets none of them.
namespace shiftState {
inline constexpr int none = 0;
inline constexpr int shift = 1;
inline constexpr int ctrl = 2;
inline constexpr int alt = 4;
}  // namespace shiftState

/// A key going down or up. A key that is held down goes down again and again, and comes up once. A
/// handler that takes the key sets `handled`: it then reaches nobody else, and neither the control
/// nor a default button acts on it.
struct KeyEvent {
  int keyCode = 0;               ///< One of `key`, or the code of a letter or digit.
  int shift = shiftState::none;  ///< Bits of shiftState.
  bool handled = false;          ///< Set by a handler, never taken back by the caller.
  /// What a key going down types, UTF-8; empty when it types nothing, as with Ctrl, Alt or Meta
  /// held (AltGr types). A key without a code of its own that types something is reported too,
  /// with the code 0. Keys that act, such as Enter and Tab, type nothing in this sense, and a key
  /// that comes up has no text.
  std::string text = {};
};

/// The button that went down or up; of a moving mouse the one that is held, the left one before the
/// right and the middle one, or None.
enum class MouseButton { None, Left, Right, Middle };

/// A mouse event; `x` and `y` in twips from the control's upper left corner, its frame included.
/// They may lie outside of the control while a button is held that went down inside.
struct MouseEvent {
  MouseButton button = MouseButton::None;
  int shift = shiftState::none;  ///< Bits of shiftState.
  int x = 0;
  int y = 0;
};

}  // namespace tessel
