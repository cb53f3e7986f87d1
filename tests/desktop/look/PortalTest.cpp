// Light and dark as the desktop says, over D-Bus, from portals of the test's own: one that answers,
// an older one, none, one that hangs, one that comes late. Each test has a bus of its own.

#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QTest>

#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/TextBox.h"
#include "desktop/look/Colors.h"
#include "desktop/look/theme/Theme.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/desktop/PrivateBus.h"
#include "tests/desktop/grid/GeneratedRows.h"

namespace tessel::test {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString scheme = QStringLiteral("color-scheme");

constexpr uint noWish = 0;
constexpr uint dark = 1;
constexpr uint light = 2;

}  // namespace

/// A portal that tells one setting.
class FakePortal : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  explicit FakePortal(PrivateBus& bus) : bus_(bus.Connection(QStringLiteral("portal"))) {}

  /// Appears on the bus.
  void Begin() {
    bus_.registerObject(object, this, QDBusConnection::ExportAllSlots);
    bus_.registerService(service);
  }
  void Tell(uint value, const QString& key = scheme) {
    value_ = value;
    QDBusMessage news =
        QDBusMessage::createSignal(object, QStringLiteral("org.freedesktop.portal.Settings"),
                                   QStringLiteral("SettingChanged"));
    news << appearance << key << QVariant::fromValue(QDBusVariant(value));
    bus_.send(news);
  }

  uint value_ = noWish;
  bool hangs_ = false;
  bool isOld_ = false;
  int questions_ = 0;

 public slots:
  QDBusVariant ReadOne(const QString& group, const QString& key) {
    if (isOld_) sendErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such method"));
    return Answer(group, key);
  }
  QDBusVariant Read(const QString& group, const QString& key) {
    return QDBusVariant(QVariant::fromValue(Answer(group, key)));
  }

 private:
  QDBusVariant Answer(const QString& group, const QString& key) {
    ++questions_;
    if (hangs_) setDelayedReply(true);
    const bool known = group == appearance && key == scheme;
    return QDBusVariant(known ? value_ : 99U);
  }

  QDBusConnection bus_;
};

namespace {

class PortalTest : public DesktopFixture {
 protected:
  ~PortalTest() override { SystemTheme::Force(false); }

  void Follow() { theme.Follow(bus.Connection(QStringLiteral("program"))); }
  [[nodiscard]] static bool BecomesDark() {
    return QTest::qWaitFor([] { return CurrentTokens() == DarkTokens(); });
  }
  [[nodiscard]] static bool BecomesLight() {
    return QTest::qWaitFor([] { return CurrentTokens() == LightTokens(); });
  }

  PrivateBus bus;
  FakePortal portal{bus};
  SystemTheme theme;
};

TEST_F(PortalTest, TheProgramIsDarkWhereTheDesktopSaysSo) {
  portal.value_ = dark;
  portal.Begin();
  Follow();
  EXPECT_TRUE(BecomesDark());
}

TEST_F(PortalTest, AnOlderPortalIsUnderstood) {
  portal.value_ = dark;
  portal.isOld_ = true;
  portal.Begin();
  Follow();
  EXPECT_TRUE(BecomesDark());
}

TEST_F(PortalTest, AChangeIsFollowedAtOnceAndBack) {
  portal.value_ = light;
  portal.Begin();
  Follow();
  portal.Tell(dark);
  EXPECT_TRUE(BecomesDark());
  portal.Tell(light);
  EXPECT_TRUE(BecomesLight());
  portal.Tell(dark);
  EXPECT_TRUE(BecomesDark());
  portal.Tell(noWish);
  EXPECT_TRUE(BecomesLight());
}

TEST_F(PortalTest, AnotherSettingChangesNothing) {
  portal.value_ = dark;
  portal.Begin();
  Follow();
  ASSERT_TRUE(BecomesDark());
  portal.Tell(light, QStringLiteral("contrast"));
  QTest::qWait(100);
  EXPECT_TRUE(CurrentTokens() == DarkTokens());
}

TEST_F(PortalTest, WithoutAPortalThePaletteStays) {
  QElapsedTimer clock;
  clock.start();
  Follow();
  QTest::qWait(50);
  EXPECT_LT(clock.elapsed(), 1000);
  EXPECT_TRUE(CurrentTokens() == LightTokens());
}

TEST_F(PortalTest, WithoutABusThePaletteStays) {
  const QString name = QStringLiteral("on no bus");
  theme.Follow(QDBusConnection::connectToBus(QStringLiteral("unix:path=/nowhere"), name));
  QTest::qWait(20);
  EXPECT_TRUE(CurrentTokens() == LightTokens());
  QDBusConnection::disconnectFromBus(name);
}

TEST_F(PortalTest, APortalThatHangsDelaysNothing) {
  portal.hangs_ = true;
  portal.Begin();
  QElapsedTimer clock;
  clock.start();
  Follow();
  EXPECT_LT(clock.elapsed(), 500);
  EXPECT_TRUE(QTest::qWaitFor([this] { return portal.questions_ > 0; })) << "it was asked";
  const auto window = ShowForm("dlgAbout");
  EXPECT_TRUE(window->Visible());
  EXPECT_LT(clock.elapsed(), 3000);
  portal.Tell(dark);
  EXPECT_TRUE(BecomesDark()) << "a change is heard without an answer";
}

TEST_F(PortalTest, APortalThatComesLateIsAsked) {
  Follow();
  QTest::qWait(50);
  portal.value_ = dark;
  portal.Begin();
  EXPECT_TRUE(BecomesDark());
}

/// The mean lightness of what a window shows.
int LightnessOf(const QWidget& widget) {
  const QImage picture = const_cast<QWidget&>(widget).grab().toImage().scaled(
      1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return picture.pixelColor(0, 0).lightness();
}

TEST_F(PortalTest, AllOpenWindowsFollow) {
  portal.value_ = light;
  portal.Begin();
  Follow();
  const auto frame = ShowForm("frmMDI");
  const auto query = ShowForm("frmMain");
  query->Find<RichTextBox>("txtQuery").SetText("SELECT 'text' -- remark");
  const auto records = ShowForm("frmRecords");
  auto& grid = records->Find<DataGrid>("DataGrid");
  grid.SetDataSource(OrdersOf(100));
  grid.SetVisible(true);
  const auto viewer = ShowForm("frmText");
  const auto dialog = ShowForm("dlgConnect");
  TheDesktop().ShowHelp({}, 1, 0);
  host.Settle();
  const auto expectAll = [](bool isDark) {
    int seen = 0;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      ++seen;
      EXPECT_EQ(LightnessOf(*window) < 128, isDark) << window->objectName().toStdString();
    }
    EXPECT_GE(seen, 3);
  };
  expectAll(false);
  portal.Tell(dark);
  ASSERT_TRUE(BecomesDark());
  host.Settle();
  expectAll(true);
  for (const auto& [window, name] :
       std::initializer_list<std::pair<Window*, const char*>>{{query.get(), "txtQuery"},
                                                              {records.get(), "DataGrid"},
                                                              {viewer.get(), "txtText"},
                                                              {frame.get(), "trvBrowser"},
                                                              {dialog.get(), "lsvConnections"}})
    EXPECT_LT(LightnessOf(WidgetOf(*window, name)), 100) << name;
  grid.SetDataSource(nullptr);
}

}  // namespace

}  // namespace tessel::test

#include "PortalTest.moc"
