#include "desktop/keyring/QtKeyring.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>
#include <utility>

#include <qt6keychain/keychain.h>

#include "desktop/base/Text.h"

namespace tessel {

namespace {

using Kind = KeyringAnswer::Kind;

/// Under which the keyring's own program lists what is kept.
const QString service = QStringLiteral("Tessel");
const QString noKeyring = QStringLiteral("No keyring answers on this desktop.");
constexpr int busPatienceMilliseconds = 5000;

/// The services that keep secrets, by their names on the bus.
bool IsKeyring(const QString& name) {
  return name == QLatin1String("org.freedesktop.secrets") ||
         name == QLatin1String("org.kde.kwalletd5") || name == QLatin1String("org.kde.kwalletd6");
}

void Tell(const std::weak_ptr<const void>& owner, const Keyring::Answered& answered,
          const KeyringAnswer& answer) {
  if (const auto alive = owner.lock()) answered(answer);
}

std::string ReasonOf(const QKeychain::Job& job) {
  switch (job.error()) {
    case QKeychain::AccessDeniedByUser: return "The keyring was not unlocked.";
    case QKeychain::AccessDenied: return "The keyring refuses, or stays locked.";
    case QKeychain::NoBackendAvailable: return FromQt(noKeyring);
    default: return "The keyring says: " + FromQt(job.errorString());
  }
}

KeyringAnswer AnswerOf(const QKeychain::Job& job) {
  if (job.error() == QKeychain::NoError) return {};
  if (job.error() == QKeychain::EntryNotFound) return {Kind::Missing, {}, {}};
  return {Kind::Failed, {}, ReasonOf(job)};
}

/// A call of the bus itself that gives a list of names; null without a bus.
QDBusPendingCallWatcher* AskBus(const char* method) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return nullptr;
  const QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
  return new QDBusPendingCallWatcher(bus.asyncCall(call, busPatienceMilliseconds));
}

/// One that runs is told by the first list, one that the bus would start by the second.
void LookIn(const char* method, std::weak_ptr<const void> owner, Keyring::Answered answered,
            const char* next) {
  QDBusPendingCallWatcher* watcher = AskBus(method);
  const KeyringAnswer none{Kind::Failed, {}, FromQt(noKeyring)};
  if (watcher == nullptr)
    return QTimer::singleShot(0, [owner, answered, none] { Tell(owner, answered, none); });
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                   [=, owner = std::move(owner), answered = std::move(answered)] {
                     watcher->deleteLater();
                     const QDBusPendingReply<QStringList> names = *watcher;
                     const bool found =
                         names.isValid() && std::ranges::any_of(names.value(), &IsKeyring);
                     if (!found && next != nullptr) return LookIn(next, owner, answered, nullptr);
                     Tell(owner, answered, found ? KeyringAnswer() : none);
                   });
}

/// A job goes by itself when it has ended; it outlives whoever asked.
template <class Job>
void Start(Job* job, std::string_view name, std::weak_ptr<const void> owner,
           std::function<void(const Job&)> ended) {
  job->setKey(ToQt(name));
  job->setInsecureFallback(false);
  QObject::connect(job, &QKeychain::Job::finished, job,
                   [job, owner = std::move(owner), ended = std::move(ended)] {
                     if (const auto alive = owner.lock()) ended(*job);
                   });
  job->start();
}

}  // namespace

void QtKeyring::Look(std::weak_ptr<const void> owner, Answered answered) {
  LookIn("ListNames", std::move(owner), std::move(answered), "ListActivatableNames");
}

void QtKeyring::Read(std::string_view name, std::weak_ptr<const void> owner, Answered answered) {
  using Job = QKeychain::ReadPasswordJob;
  Start<Job>(new Job(service), name, std::move(owner), [answered](const Job& job) {
    KeyringAnswer answer = AnswerOf(job);
    if (answer.kind == Kind::Done) answer.secret = FromQt(job.textData());
    answered(answer);
  });
}

void QtKeyring::Keep(std::string_view name, std::string_view secret,
                     std::weak_ptr<const void> owner, Answered answered) {
  using Job = QKeychain::WritePasswordJob;
  auto* job = new Job(service);
  job->setTextData(ToQt(secret));
  Start<Job>(job, name, std::move(owner),
             [answered](const Job& ended) { answered(AnswerOf(ended)); });
}

}  // namespace tessel
