#include "tests/desktop/keyring/FakeSecrets.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>

namespace tessel::test {

/// As the service hands over what it keeps.
struct SecretValue {
  QDBusObjectPath session;
  QByteArray parameters;
  QByteArray value;
  QString type;
};

static QDBusArgument& operator<<(QDBusArgument& out, const SecretValue& secret) {
  out.beginStructure();
  out << secret.session << secret.parameters << secret.value << secret.type;
  out.endStructure();
  return out;
}

static const QDBusArgument& operator>>(const QDBusArgument& in, SecretValue& secret) {
  in.beginStructure();
  in >> secret.session >> secret.parameters >> secret.value >> secret.type;
  in.endStructure();
  return in;
}

}  // namespace tessel::test

using Attributes = QMap<QString, QString>;
using SecretMap = QMap<QDBusObjectPath, tessel::test::SecretValue>;
Q_DECLARE_METATYPE(tessel::test::SecretValue)
Q_DECLARE_METATYPE(Attributes)
Q_DECLARE_METATYPE(SecretMap)

namespace tessel::test {

namespace {

const QString root = QStringLiteral("/org/freedesktop/secrets");
const QString collection = root + QStringLiteral("/collection/login");
const QString itemPrefix = collection + QStringLiteral("/");
const QString session = root + QStringLiteral("/session/1");
const QString prompt = root + QStringLiteral("/prompt/1");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString promptInterface = QStringLiteral("org.freedesktop.Secret.Prompt");

QDBusObjectPath PathOf(std::size_t item) {
  return QDBusObjectPath(itemPrefix + QString::number(item));
}

std::size_t ItemOf(const QString& path) { return path.mid(itemPrefix.size()).toULongLong(); }

bool Matches(const Attributes& attributes, const Attributes& wanted) {
  for (auto it = wanted.begin(); it != wanted.end(); ++it)
    if (attributes.value(it.key()) != it.value()) return false;
  return true;
}

template <class... Values>
QDBusMessage Reply(const QDBusMessage& call, const Values&... values) {
  return call.createReply(QVariantList{QVariant::fromValue(values)...});
}

}  // namespace

FakeSecrets::FakeSecrets(QDBusConnection bus) : bus_(std::move(bus)) {
  qDBusRegisterMetaType<SecretValue>();
  qDBusRegisterMetaType<Attributes>();
  qDBusRegisterMetaType<SecretMap>();
  bus_.registerVirtualObject(root, this, QDBusConnection::SubPath);
  bus_.registerService(QStringLiteral("org.freedesktop.secrets"));
}

bool FakeSecrets::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (!hangs) connection.send(Answer(message));
  return true;
}

QDBusMessage FakeSecrets::Answer(const QDBusMessage& call) {
  const QString method = call.member();
  if (method == QLatin1String("OpenSession")) return OpenSession(call);
  if (method == QLatin1String("SearchItems")) return Search(call);
  if (method == QLatin1String("Unlock")) return Unlock(call);
  if (method == QLatin1String("GetSecrets")) return GetSecrets(call);
  if (method == QLatin1String("CreateItem")) return Create(call);
  if (method == QLatin1String("Prompt")) return Dismiss(call);
  if (method == QLatin1String("GetAll")) return AllProperties(call);
  if (method == QLatin1String("ReadAlias")) return Reply(call, QDBusObjectPath(collection));
  return call.createErrorReply(QDBusError::UnknownMethod, method);
}

/// Only the plain way: the bus is the test's own.
QDBusMessage FakeSecrets::OpenSession(const QDBusMessage& call) const {
  if (call.arguments().at(0).toString() != QLatin1String("plain"))
    return call.createErrorReply(QDBusError::NotSupported, QStringLiteral("plain only"));
  return Reply(call, QDBusVariant(QString()), QDBusObjectPath(session));
}

QDBusMessage FakeSecrets::Search(const QDBusMessage& call) const {
  const auto wanted = qdbus_cast<Attributes>(call.arguments().at(0));
  QList<QDBusObjectPath> found;
  for (std::size_t i = 0; i < items.size(); ++i)
    if (Matches(items[i].attributes, wanted)) found.append(PathOf(i));
  const QList<QDBusObjectPath> none;
  return locked ? Reply(call, none, found) : Reply(call, found, none);
}

QDBusMessage FakeSecrets::Unlock(const QDBusMessage& call) const {
  const auto paths = qdbus_cast<QList<QDBusObjectPath>>(call.arguments().at(0));
  if (locked) return Reply(call, QList<QDBusObjectPath>(), QDBusObjectPath(prompt));
  return Reply(call, paths, QDBusObjectPath(QStringLiteral("/")));
}

QDBusMessage FakeSecrets::GetSecrets(const QDBusMessage& call) const {
  SecretMap secrets;
  for (const QDBusObjectPath& path : qdbus_cast<QList<QDBusObjectPath>>(call.arguments().at(0)))
    secrets[path] = {QDBusObjectPath(session),
                     {},
                     items.at(ItemOf(path.path())).secret,
                     QStringLiteral("text/plain")};
  return Reply(call, secrets);
}

QDBusMessage FakeSecrets::Create(const QDBusMessage& call) {
  if (locked)
    return call.createErrorReply(QStringLiteral("org.freedesktop.Secret.Error.IsLocked"),
                                 QStringLiteral("The collection is locked"));
  if (refuses)
    return call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("Nothing is kept"));
  const auto properties = qdbus_cast<QVariantMap>(call.arguments().at(0));
  const QVariant given = properties.value(itemInterface + QStringLiteral(".Attributes"));
  const auto attributes = qdbus_cast<Attributes>(given);
  const auto secret = qdbus_cast<SecretValue>(call.arguments().at(1));
  std::size_t place = 0;
  while (place < items.size() && items[place].attributes != attributes) ++place;
  if (place == items.size()) items.emplace_back();
  items[place] = {attributes, secret.value};
  return Reply(call, PathOf(place), QDBusObjectPath(QStringLiteral("/")));
}

/// The user closes the question.
QDBusMessage FakeSecrets::Dismiss(const QDBusMessage& call) {
  ++prompts;
  bus_.send(Reply(call));
  QDBusMessage end =
      QDBusMessage::createSignal(prompt, promptInterface, QStringLiteral("Completed"));
  const QVariant none = QVariant::fromValue(QList<QDBusObjectPath>());
  end << true << QVariant::fromValue(QDBusVariant(none));
  return end;
}

QDBusMessage FakeSecrets::AllProperties(const QDBusMessage& call) const {
  QVariantMap all{{QStringLiteral("Label"), QStringLiteral("test")},
                  {QStringLiteral("Locked"), locked}};
  if (call.arguments().at(0).toString() == itemInterface)
    all[QStringLiteral("Attributes")] =
        QVariant::fromValue(items.at(ItemOf(call.path())).attributes);
  return Reply(call, all);
}

}  // namespace tessel::test
