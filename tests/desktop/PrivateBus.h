#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

namespace tessel::test {

/// A session bus of a test's own, with nobody on it, nor any service that the machine's own bus
/// would start; it ends with this object.
class PrivateBus {
 public:
  PrivateBus() {
    if (!rules_.open()) return;
    rules_.write(R"(<busconfig><type>session</type>
      <listen>unix:tmpdir=/tmp</listen><policy context="default">
      <allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
      </policy></busconfig>)");
    rules_.flush();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + rules_.fileName(), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address=1")});
    if (daemon_.waitForReadyRead()) address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
  }
  ~PrivateBus() {
    for (const QString& name : names_) QDBusConnection::disconnectFromBus(name);
    daemon_.kill();
    daemon_.waitForFinished();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// Empty when there is no bus.
  [[nodiscard]] const QString& Address() const { return address_; }
  /// A connection of its own for whoever is called that; it ends before the bus does.
  [[nodiscard]] QDBusConnection Connection(const QString& name) {
    names_.append(name);
    return QDBusConnection::connectToBus(address_, name);
  }

 private:
  QTemporaryFile rules_;
  QProcess daemon_;
  QString address_;
  QStringList names_;
};

}  // namespace tessel::test
