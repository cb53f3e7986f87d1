#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>
#include <string>
#include <string_view>

#include "contract/base/Keys.h"
#include "contract/desktop/Window.h"
#include "desktop/window/QtWindow.h"

namespace tessel::test {

/// A user at real windows: the mouse and the keyboard as Qt delivers them.

[[nodiscard]] QtWindow& AsQt(Window& window);
/// The widget of a control; fails the test and throws when the form has none.
[[nodiscard]] QWidget& WidgetOf(Window& window, std::string_view name);
template <class Widget>
[[nodiscard]] Widget& WidgetAs(Window& window, std::string_view name) {
  return dynamic_cast<Widget&>(WidgetOf(window, name));
}

/// Waits until the frame is active: a window manager hands the keyboard back when a dialog has
/// gone, in its own time; off screen there is none, and the user clicks the frame.
void WaitForKeyboard(Window& frame);
/// Presses and releases a key in the active window, as the window system reports it.
void PressQtKey(int qtKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                const QString& text = {});
/// The same for a virtual key code.
void PressKeyCode(int keyCode, int shift = shiftState::none);
/// Types ASCII text where the focus is.
void TypeText(std::string_view text);

/// Lets everything that waits in the event loop happen.
void SettleEvents();

}  // namespace tessel::test
