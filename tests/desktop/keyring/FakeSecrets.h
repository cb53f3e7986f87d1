#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QString>
#include <vector>

namespace tessel::test {

/// A Secret Service of the test's own: one collection, whose items are found by their attributes.
class FakeSecrets final : public QDBusVirtualObject {
 public:
  /// Appears on the bus under its well-known name.
  explicit FakeSecrets(QDBusConnection bus);

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  struct Item {
    QMap<QString, QString> attributes;
    QByteArray secret;
  };
  std::vector<Item> items;
  bool locked = false;   ///< Items are locked; the user dismisses the question to unlock them.
  bool refuses = false;  ///< Nothing is kept.
  bool hangs = false;    ///< Takes calls and answers none.
  int prompts = 0;       ///< Questions to unlock so far.

 private:
  [[nodiscard]] QDBusMessage Answer(const QDBusMessage& call);
  [[nodiscard]] QDBusMessage OpenSession(const QDBusMessage& call) const;
  [[nodiscard]] QDBusMessage Search(const QDBusMessage& call) const;
  [[nodiscard]] QDBusMessage Unlock(const QDBusMessage& call) const;
  [[nodiscard]] QDBusMessage GetSecrets(const QDBusMessage& call) const;
  [[nodiscard]] QDBusMessage Create(const QDBusMessage& call);
  [[nodiscard]] QDBusMessage Dismiss(const QDBusMessage& call);
  [[nodiscard]] QDBusMessage AllProperties(const QDBusMessage& call) const;

  QDBusConnection bus_;
};

}  // namespace tessel::test
