#pragma once

#include <QObject>

class QWindow;

namespace tessel {

/// Gives the keyboard to the window below when one that is no longer to be seen is told that it has
/// it. On X11 a modal window asks for the keyboard as soon as it is on the screen; when it was
/// hidden before that, its request is answered to it all the same, while the keys go on coming to
/// the window below, which takes them for keys of a window that is not active.
class KeyboardReturn final : public QObject {
 public:
  KeyboardReturn();

 private:
  static void ReturnFrom(QWindow* active);
};

}  // namespace tessel
