#include "desktop/base/QtKeys.h"

#include <array>
#include <utility>

namespace tessel {

namespace {

/// Keys whose codes follow no rule. A key with two characters has one code.
constexpr std::array<std::pair<int, int>, 54> otherKeys{{
    {Qt::Key_Backspace, key::back},
    {Qt::Key_Tab, key::tab},
    {Qt::Key_Backtab, key::tab},
    {Qt::Key_Return, key::enter},
    {Qt::Key_Enter, key::enter},
    {Qt::Key_Shift, key::shift},
    {Qt::Key_Control, key::control},
    {Qt::Key_Alt, key::alt},
    {Qt::Key_Escape, key::escape},
    {Qt::Key_Space, key::space},
    {Qt::Key_PageUp, key::pageUp},
    {Qt::Key_PageDown, key::pageDown},
    {Qt::Key_End, key::end},
    {Qt::Key_Home, key::home},
    {Qt::Key_Left, key::left},
    {Qt::Key_Up, key::up},
    {Qt::Key_Right, key::right},
    {Qt::Key_Down, key::down},
    {Qt::Key_Insert, key::insert},
    {Qt::Key_Delete, key::del},
    {Qt::Key_Menu, key::contextMenu},
    {Qt::Key_Exclam, '1'},
    {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},
    {Qt::Key_Dollar, '4'},
    {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'},
    {Qt::Key_Ampersand, '7'},
    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},
    {Qt::Key_ParenRight, '0'},
    {Qt::Key_Semicolon, 186},
    {Qt::Key_Colon, 186},
    {Qt::Key_Equal, key::equals},
    {Qt::Key_Plus, key::equals},
    {Qt::Key_Comma, 188},
    {Qt::Key_Less, 188},
    {Qt::Key_Minus, key::hyphen},
    {Qt::Key_Underscore, key::hyphen},
    {Qt::Key_Period, key::fullStop},
    {Qt::Key_Greater, key::fullStop},
    {Qt::Key_Slash, 191},
    {Qt::Key_Question, 191},
    {Qt::Key_QuoteLeft, 192},
    {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219},
    {Qt::Key_BraceLeft, 219},
    {Qt::Key_Backslash, 220},
    {Qt::Key_Bar, 220},
    {Qt::Key_BracketRight, 221},
    {Qt::Key_BraceRight, 221},
    {Qt::Key_Apostrophe, key::apostrophe},
    {Qt::Key_QuoteDbl, key::apostrophe},
    {Qt::Key_CapsLock, 20},
}};

bool Between(int value, int first, int last) { return value >= first && value <= last; }

}  // namespace

int KeyCodeOf(int qtKey) {
  if (Between(qtKey, Qt::Key_A, Qt::Key_Z) || Between(qtKey, Qt::Key_0, Qt::Key_9)) return qtKey;
  if (Between(qtKey, Qt::Key_F1, Qt::Key_F24)) return key::f1 + (qtKey - Qt::Key_F1);
  for (const auto& [qt, code] : otherKeys)
    if (qt == qtKey) return code;
  return 0;
}

int ShiftStateOf(Qt::KeyboardModifiers modifiers) {
  int state = shiftState::none;
  if (modifiers.testFlag(Qt::ShiftModifier)) state |= shiftState::shift;
  if (modifiers.testFlag(Qt::ControlModifier)) state |= shiftState::ctrl;
  if (modifiers.testFlag(Qt::AltModifier)) state |= shiftState::alt;
  return state;
}

MouseButton ButtonOf(const QMouseEvent& event) {
  const Qt::MouseButtons buttons =
      event.type() == QEvent::MouseMove ? event.buttons() : Qt::MouseButtons(event.button());
  if (buttons.testFlag(Qt::LeftButton)) return MouseButton::Left;
  if (buttons.testFlag(Qt::RightButton)) return MouseButton::Right;
  if (buttons.testFlag(Qt::MiddleButton)) return MouseButton::Middle;
  return MouseButton::None;
}

}  // namespace tessel
