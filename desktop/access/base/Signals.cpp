// Signals of the accessibility bus that the toolkit has no event for. They go out on the toolkit's
// own connection to that bus, under the paths it gives to the objects.

#include "desktop/access/base/Signals.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

namespace tessel {

namespace {

const QString busName = QStringLiteral("a11y");
const QString pathStart = QStringLiteral("/org/a11y/atspi/accessible/");
const QString objectEvents = QStringLiteral("org.a11y.atspi.Event.Object");
constexpr int polite = 1;  ///< What is being spoken is not cut off.

void Send(QAccessibleInterface& source, const QString& signal, const QString& kind, int first,
          const QVariant& value) {
  const QDBusConnection bus(busName);
  if (!bus.isConnected()) return;
  const QString path = pathStart + QString::number(QAccessible::uniqueId(&source));
  QDBusMessage message = QDBusMessage::createSignal(path, objectEvents, signal);
  message << kind << first << 0 << QVariant::fromValue(QDBusVariant(value)) << QVariantMap();
  bus.send(message);
}

}  // namespace

void Announce(QAccessibleInterface& source, const QString& text) {
  Send(source, QStringLiteral("Announcement"), {}, polite, text);
}

void TellState(QAccessibleInterface& source, const QString& state, bool on) {
  Send(source, QStringLiteral("StateChanged"), state, on ? 1 : 0, 0);
}

}  // namespace tessel
