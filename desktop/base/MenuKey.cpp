#include "desktop/base/MenuKey.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

namespace tessel {

namespace {

/// False when nobody took it.
bool SendMenuKey(QWidget& widget, QEvent::Type type) {
  QKeyEvent key(type, Qt::Key_Menu, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &key);
  return key.isAccepted();
}

}  // namespace

/// The menu opens where the text is written, as with the key itself.
void MenuKeyFilter::Press(QWidget& widget, const QKeyEvent& event) {
  if (event.isAutoRepeat()) return;
  held_ = true;
  const QPointer<QWidget> alive(&widget);
  if (SendMenuKey(widget, QEvent::KeyPress) || alive == nullptr) return;
  const QPoint place = widget.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, widget.mapToGlobal(place));
  QCoreApplication::sendEvent(&widget, &menu);
}

bool MenuKeyFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool down = event->type() == QEvent::KeyPress;
  if ((!down && event->type() != QEvent::KeyRelease) || !watched->isWidgetType()) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (key.key() != Qt::Key_F10 || (down ? key.modifiers() != Qt::ShiftModifier : !held_))
    return false;
  auto& widget = *static_cast<QWidget*>(watched);
  event->accept();
  if (down) {
    Press(widget, key);
  } else if (!key.isAutoRepeat()) {
    held_ = false;
    SendMenuKey(widget, QEvent::KeyRelease);
  }
  return true;
}

}  // namespace tessel
