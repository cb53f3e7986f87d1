#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>

namespace tessel {

/// Gives the keyboard to the window below when one that is not to be seen is taken for the active
/// one. On X11 a modal window asks for the keyboard as soon as it is on the screen, and is told
/// that it has it at once. When it is hidden before the window manager has given it, nobody takes
/// that back: the keys go on coming to the window below, which takes them for keys of a window that
/// is not active. Where no window is taken for the active one, the first that gets a key is it.
class KeyboardReturn final : public QObject {
 public:
  KeyboardReturn();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Watch(QWindow* active);
  static void ReturnFrom(QWindow& hidden);

  QPointer<QWindow> active_;
  QMetaObject::Connection hiding_;
  QTimer patience_;
};

}  // namespace tessel
