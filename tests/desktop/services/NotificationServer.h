#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <vector>

namespace tessel::test {

/// A desktop's notification server, which remembers what it is asked to show.
class NotificationServer : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  struct Notice {
    QString program, icon, title, text;
    QStringList actions;
    QVariantMap hints;
  };

  explicit NotificationServer(QDBusConnection bus) {
    bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
  }

  QStringList abilities{QStringLiteral("body")};
  bool hangs = false;  ///< Takes calls and answers none.
  int asked = 0;
  std::vector<Notice> notices;  ///< The first has the number 1.

 public slots:
  QStringList GetCapabilities() {
    ++asked;
    if (hangs) setDelayedReply(true);
    return abilities;
  }
  uint Notify(const QString& program, uint /*replaces*/, const QString& icon, const QString& title,
              const QString& text, const QStringList& actions, const QVariantMap& hints,
              int /*milliseconds*/) {
    notices.push_back({program, icon, title, text, actions, hints});
    return static_cast<uint>(notices.size());
  }

 signals:
  void ActionInvoked(uint id, const QString& action);
};

}  // namespace tessel::test
