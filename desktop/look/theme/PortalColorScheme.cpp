#include "desktop/look/theme/PortalColorScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tessel {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String object("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");
constexpr QLatin1String group("org.freedesktop.appearance");
constexpr QLatin1String setting("color-scheme");
constexpr QLatin1String readOne("ReadOne");
/// The older name of the same; it packs the value once more than it needs.
constexpr QLatin1String read("Read");

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

/// The value itself, however often it is packed.
QVariant Unpacked(QVariant value) {
  while (value.metaType() == QMetaType::fromType<QDBusVariant>())
    value = value.value<QDBusVariant>().variant();
  return value;
}

std::optional<Shade> ShadeOf(const QVariant& value) {
  switch (Unpacked(value).toUInt()) {
    case prefersDark: return Shade::Dark;
    case prefersLight: return Shade::Light;
    default: return std::nullopt;
  }
}

}  // namespace

/// The toolkit looks up the type of what a change brings by its name, and does not know it in a
/// program that has used no other of its kind before.
PortalColorScheme::PortalColorScheme(const QDBusConnection& bus)
    : bus_(bus), portal_(service, bus, QDBusServiceWatcher::WatchForRegistration) {
  if (!bus_.isConnected()) return;
  qRegisterMetaType<QDBusVariant>();
  bus_.connect(service, object, interface, QStringLiteral("SettingChanged"), this,
               SLOT(SettingChanged(QString, QString, QDBusVariant)));
  connect(&portal_, &QDBusServiceWatcher::serviceRegistered, this, &PortalColorScheme::Ask);
  Ask();
}

void PortalColorScheme::Ask() { AskBy(readOne); }

/// An older portal does not know the newer name.
void PortalColorScheme::AskBy(const QString& method) {
  QDBusMessage question = QDBusMessage::createMethodCall(service, object, interface, method);
  question << group << setting;
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, method] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (!reply.isError()) Take(QVariant::fromValue(reply.value()));
    else if (method == readOne && reply.error().type() == QDBusError::UnknownMethod) AskBy(read);
  });
}

void PortalColorScheme::SettingChanged(const QString& changedGroup, const QString& key,
                                       const QDBusVariant& value) {
  if (changedGroup == group && key == setting) Take(QVariant::fromValue(value));
}

void PortalColorScheme::Take(const QVariant& value) {
  const std::optional<Shade> said = ShadeOf(value);
  if (said == said_) return;
  said_ = said;
  emit changed();
}

}  // namespace tessel
