#include "desktop/base/Typing.h"

#include <QCoreApplication>
#include <QMenu>

namespace tessel {

namespace {

constexpr QStringView typedWithAltGr = u"@[\\]{|}~€";

}  // namespace

bool TypesText(const QKeyEvent& event) {
  const auto held = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (held == 0) return true;
  if (held != (Qt::ControlModifier | Qt::AltModifier) || event.text().isEmpty()) return false;
  return event.modifiers().testFlag(Qt::GroupSwitchModifier) ||
         typedWithAltGr.contains(event.text()[0]);
}

/// The event cannot be changed: another one without a text takes its way, up to the widget that
/// takes it.
bool HeldKeysFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (key.text().isEmpty() || TypesText(key) || qobject_cast<QMenu*>(watched) != nullptr)
    return false;
  QKeyEvent silent(key.type(), key.key(), key.modifiers(), key.nativeScanCode(),
                   key.nativeVirtualKey(), key.nativeModifiers(), {}, key.isAutoRepeat(),
                   static_cast<quint16>(key.count()), key.device());
  QCoreApplication::sendEvent(watched, &silent);
  event->accept();
  return true;
}

}  // namespace tessel
