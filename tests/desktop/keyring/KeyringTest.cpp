// The keyring of the desktop, over a Secret Service of the test's own. Each test runs as a process
// of its own, whose session bus is the test's too: so nobody's keyring is touched.

#include "desktop/keyring/QtKeyring.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <optional>

#include <gtest/gtest.h>

#include "tests/desktop/PrivateBus.h"
#include "tests/desktop/keyring/FakeSecrets.h"

namespace tessel::test {

namespace {

using Kind = KeyringAnswer::Kind;

constexpr const char* childMark = "TESSEL_TEST_HAS_BUS";

class KeyringTest : public testing::Test {
 protected:
  /// Runs the test's body in a process of its own.
  template <class Body>
  void OnItsOwnBus(Body body) {
    if (qEnvironmentVariableIsSet(childMark)) return body();
    const PrivateBus bus;
    ASSERT_FALSE(bus.Address().isEmpty()) << "no dbus-daemon";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(childMark), QStringLiteral("1"));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.Address());
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("GNOME"));
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=KeyringTest.%1").arg(QLatin1String(test->name()))});
    child.waitForFinished();
    EXPECT_EQ(child.exitCode(), 0) << child.readAll().toStdString();
  }

  static std::unique_ptr<FakeSecrets> Service() {
    return std::make_unique<FakeSecrets>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("secrets")));
  }
  /// Takes down the answer that comes.
  Keyring::Answered Take() {
    return [this](const KeyringAnswer& given) { answer = given; };
  }
  bool Comes() {
    return QTest::qWaitFor([this] { return answer.has_value(); }, 10000);
  }
  KeyringAnswer Look() {
    keyring.Look(owner, Take());
    return Next();
  }
  KeyringAnswer Read(std::string_view name) {
    keyring.Read(name, owner, Take());
    return Next();
  }
  KeyringAnswer Keep(std::string_view name, std::string_view secret) {
    keyring.Keep(name, secret, owner, Take());
    return Next();
  }
  KeyringAnswer Next() {
    EXPECT_FALSE(answer) << "the answer came from inside the request";
    EXPECT_TRUE(Comes());
    return std::exchange(answer, std::nullopt).value_or(KeyringAnswer());
  }

  QtKeyring keyring;
  std::shared_ptr<const int> owner = std::make_shared<const int>();
  std::optional<KeyringAnswer> answer;
};

TEST_F(KeyringTest, KeepsASecretUnderItsName) {
  OnItsOwnBus([this] {
    const auto service = Service();
    EXPECT_EQ(Look().kind, Kind::Done);
    const std::string name = "provider=postgresql;server={a;b};user id=ü";
    EXPECT_EQ(Read(name).kind, Kind::Missing);
    EXPECT_EQ(Keep(name, "s;e}c='\" ü").kind, Kind::Done);
    EXPECT_EQ(Read(name).secret, "s;e}c='\" ü");
    EXPECT_EQ(Read("provider=mariadb").kind, Kind::Missing);
    EXPECT_EQ(Keep(name, "new").kind, Kind::Done);
    EXPECT_EQ(Read(name).secret, "new");
    EXPECT_EQ(service->items.size(), 1U);
  });
}

TEST_F(KeyringTest, SaysThatThereIsNone) {
  OnItsOwnBus([this] {
    const KeyringAnswer none = Look();
    EXPECT_EQ(none.kind, Kind::Failed);
    EXPECT_EQ(none.reason, "No keyring answers on this desktop.");
    EXPECT_EQ(Keep("a", "b").kind, Kind::Failed);
    EXPECT_NE(Read("a").kind, Kind::Done);
  });
}

TEST_F(KeyringTest, AKeyringThatStaysLockedGivesAndTakesNothing) {
  OnItsOwnBus([this] {
    const auto service = Service();
    EXPECT_EQ(Keep("a", "b").kind, Kind::Done);
    service->locked = true;
    EXPECT_NE(Read("a").kind, Kind::Done);
    EXPECT_EQ(service->prompts, 1) << "the user was asked to unlock it";
    const KeyringAnswer kept = Keep("a", "c");
    EXPECT_EQ(kept.kind, Kind::Failed);
    EXPECT_FALSE(kept.reason.empty());
    EXPECT_EQ(service->items.at(0).secret, "b");
  });
}

TEST_F(KeyringTest, ARefusalIsTold) {
  OnItsOwnBus([this] {
    const auto service = Service();
    service->refuses = true;
    const KeyringAnswer kept = Keep("a", "b");
    EXPECT_EQ(kept.kind, Kind::Failed);
    EXPECT_NE(kept.reason.find("Nothing is kept"), std::string::npos) << kept.reason;
  });
}

TEST_F(KeyringTest, AServiceThatHangsHoldsNobodyUp) {
  OnItsOwnBus([this] {
    const auto service = Service();
    service->hangs = true;
    QElapsedTimer time;
    time.start();
    keyring.Read("a", owner, Take());
    keyring.Keep("a", "b", owner, Take());
    EXPECT_EQ(Look().kind, Kind::Done) << "the bus answers for it";
    EXPECT_LT(time.elapsed(), 2000);
    owner.reset();
    QTest::qWait(200);
    EXPECT_FALSE(answer);
  });
}

}  // namespace

}  // namespace tessel::test
