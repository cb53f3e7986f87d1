#include "desktop/services/InputBlock.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QWindow>

namespace tessel {

namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::Drop: return true;
    default: return false;
  }
}

}  // namespace

void InputBlock::Set(bool on) {
  if (on == on_) return;
  on_ = on;
  if (on) QCoreApplication::instance()->installEventFilter(this);
  else QCoreApplication::instance()->removeEventFilter(this);
}

/// An accepted override is what keeps a key from becoming a shortcut.
bool InputBlock::eventFilter(QObject* watched, QEvent* event) {
  if (!IsInput(event->type()) || !Concerns(watched)) return false;
  event->setAccepted(true);
  return true;
}

bool InputBlock::Concerns(QObject* watched) const {
  if (window_ == nullptr) return false;
  if (watched->isWindowType()) return window_->isWindow() && watched == window_->windowHandle();
  if (const auto* action = qobject_cast<QAction*>(watched)) watched = action->parent();
  const auto* widget = qobject_cast<QWidget*>(watched);
  return widget != nullptr && (widget == window_ || window_->isAncestorOf(widget));
}

}  // namespace tessel
