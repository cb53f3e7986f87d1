#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace tessel {

/// Whether a ground is light or dark.
enum class Shade : unsigned char { Light, Dark };

/// What the user asked his desktop for, as its portal tells over D-Bus: light or dark. It asks once
/// it is made and when a portal appears, hears of every change, and never waits for an answer.
/// Nothing is said until one has come, and where there is no portal or the user has no wish.
class PortalColorScheme final : public QObject {
  Q_OBJECT

 public:
  /// Asks on this bus; one that is not connected says nothing.
  explicit PortalColorScheme(const QDBusConnection& bus);

  [[nodiscard]] std::optional<Shade> Said() const { return said_; }

 signals:
  /// Said() is another one now.
  void changed();

 private slots:
  void Ask();
  void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void AskBy(const QString& method);
  void Take(const QVariant& value);

  QDBusConnection bus_;
  QDBusServiceWatcher portal_;
  std::optional<Shade> said_;
};

}  // namespace tessel
