#include "desktop/services/KeyboardReturn.h"

#include <QEvent>
#include <QGuiApplication>

namespace tessel {

namespace {

/// How long a window manager may take to give the keyboard of a window that was hidden to another.
constexpr int patienceMilliseconds = 150;

}  // namespace

KeyboardReturn::KeyboardReturn() {
  patience_.setSingleShot(true);
  patience_.setInterval(patienceMilliseconds);
  QObject::connect(&patience_, &QTimer::timeout, this, [this] { Watch(active_); });
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeyboardReturn::Watch);
  QCoreApplication::instance()->installEventFilter(this);
}

bool KeyboardReturn::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched->isWindowType() &&
      QGuiApplication::focusWindow() == nullptr)
    static_cast<QWindow*>(watched)->requestActivate();
  return false;
}

void KeyboardReturn::Watch(QWindow* active) {
  patience_.stop();
  QObject::disconnect(hiding_);
  active_ = active;
  if (active == nullptr) return;
  if (!active->isVisible()) return ReturnFrom(*active);
  hiding_ = QObject::connect(active, &QWindow::visibleChanged, &patience_, [this](bool visible) {
    if (!visible) patience_.start();
  });
}

/// While the active window belongs to another one, that is not told that it became active.
void KeyboardReturn::ReturnFrom(QWindow& hidden) {
  QWindow* below = hidden.transientParent();
  if (below == nullptr || !below->isVisible()) return;
  hidden.setTransientParent(nullptr);
  below->requestActivate();
  hidden.setTransientParent(below);
}

}  // namespace tessel
