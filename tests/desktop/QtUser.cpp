#include "tests/desktop/QtUser.h"

#include <QApplication>
#include <QTest>
#include <QWindow>
#include <array>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "desktop/base/Text.h"

// Exported by QtGui for its own tests: a key as the window system reports it, shortcuts included.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type t, int k,
                                    Qt::KeyboardModifiers mods, const QString& text, bool autorep,
                                    ushort count);

namespace tessel::test {

namespace {

constexpr std::array<std::pair<int, int>, 20> qtKeys{{
    {key::back, Qt::Key_Backspace},
    {key::tab, Qt::Key_Tab},
    {key::enter, Qt::Key_Return},
    {key::escape, Qt::Key_Escape},
    {key::space, Qt::Key_Space},
    {key::pageUp, Qt::Key_PageUp},
    {key::pageDown, Qt::Key_PageDown},
    {key::end, Qt::Key_End},
    {key::home, Qt::Key_Home},
    {key::left, Qt::Key_Left},
    {key::up, Qt::Key_Up},
    {key::right, Qt::Key_Right},
    {key::down, Qt::Key_Down},
    {key::insert, Qt::Key_Insert},
    {key::del, Qt::Key_Delete},
    {key::contextMenu, Qt::Key_Menu},
    {key::equals, Qt::Key_Equal},
    {key::fullStop, Qt::Key_Period},
    {key::apostrophe, Qt::Key_Apostrophe},
    {key::shift, Qt::Key_Shift},
}};

int QtKeyOf(int keyCode) {
  for (const auto& [code, qt] : qtKeys)
    if (code == keyCode) return qt;
  if (keyCode >= key::f1 && keyCode < key::f1 + 24) return Qt::Key_F1 + keyCode - key::f1;
  return keyCode;
}

Qt::KeyboardModifiers ModifiersOf(int shift) {
  Qt::KeyboardModifiers modifiers;
  modifiers.setFlag(Qt::ShiftModifier, (shift & shiftState::shift) != 0);
  modifiers.setFlag(Qt::ControlModifier, (shift & shiftState::ctrl) != 0);
  modifiers.setFlag(Qt::AltModifier, (shift & shiftState::alt) != 0);
  return modifiers;
}

/// Off screen no window manager takes the keyboard from a window that is hidden.
bool SomeWindowIsActive() {
  const QWindow* window = QGuiApplication::focusWindow();
  return window != nullptr && window->isVisible();
}

/// What a window that has just closed leaves to another one comes in its own time.
QWindow* WindowWithKeyboard() {
  constexpr int patience = 1000;
  if (const QWidget* popup = QApplication::activePopupWidget()) return popup->windowHandle();
  const auto active = [] { return SomeWindowIsActive(); };
  if (QTest::qWaitFor(active, patience)) return QGuiApplication::focusWindow();
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible()) window->activateWindow();
  static_cast<void>(QTest::qWaitFor(active, patience));
  return QGuiApplication::focusWindow();
}

/// With Ctrl held the window system turns letters and some others into control characters.
QString TextWithControl(char16_t key) {
  if (key >= u'@' && key <= u'~') return QChar(static_cast<char16_t>(key & 0x1F));
  if (key == u' ' || key == u'2' || key == u'/') return {};
  if (key >= u'3' && key <= u'8') return QChar(static_cast<char16_t>(key - u'3' + 0x1B));
  return QChar(key);
}

/// The text that the window system gives a key.
QString TextOf(int qtKey, Qt::KeyboardModifiers modifiers) {
  if (qtKey == Qt::Key_Return) return QStringLiteral("\r");
  if (qtKey == Qt::Key_Backspace) return QStringLiteral("\b");
  if (qtKey < Qt::Key_Space || qtKey > Qt::Key_AsciiTilde) return {};
  const QChar character(static_cast<char16_t>(qtKey));
  if (modifiers.testFlag(Qt::ControlModifier)) return TextWithControl(character.unicode());
  return modifiers.testFlag(Qt::ShiftModifier) ? character : character.toLower();
}

}  // namespace

QtWindow& AsQt(Window& window) { return dynamic_cast<QtWindow&>(window); }

QWidget& WidgetOf(Window& window, std::string_view name) {
  auto* widget = AsQt(window).Root().findChild<QWidget*>(ToQt(name));
  if (widget == nullptr) throw std::runtime_error("There is no widget " + std::string(name));
  return *widget;
}

void WaitForKeyboard(Window& frame) {
  QWidget& outer = AsQt(frame).Outer();
  if (!SomeWindowIsActive()) outer.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([] { return SomeWindowIsActive(); }));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&outer));
  SettleEvents();
}

void PressQtKey(int qtKey, Qt::KeyboardModifiers modifiers, const QString& text) {
  QWindow* window = WindowWithKeyboard();
  if (window == nullptr) throw std::runtime_error("No window has the keyboard.");
  const QPointer<QWindow> alive(window);
  qt_handleKeyEvent(window, QEvent::KeyPress, qtKey, modifiers, text, false, 1);
  if (QWindow* now = QGuiApplication::focusWindow(); alive == nullptr || now != nullptr)
    window = now;
  if (window == nullptr) return;
  qt_handleKeyEvent(window, QEvent::KeyRelease, qtKey, modifiers, text, false, 1);
}

void PressKeyCode(int keyCode, int shift) {
  const Qt::KeyboardModifiers modifiers = ModifiersOf(shift);
  const int qtKey = QtKeyOf(keyCode);
  PressQtKey(qtKey, modifiers, TextOf(qtKey, modifiers));
}

void TypeText(std::string_view text) {
  for (const char c : text) {
    const QChar character = QLatin1Char(c);
    const bool upper = character.isUpper();
    PressQtKey(character.toUpper().unicode(), upper ? Qt::ShiftModifier : Qt::NoModifier,
               character);
  }
}

void SettleEvents() {
  for (int round = 0; round < 5; ++round) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace tessel::test
