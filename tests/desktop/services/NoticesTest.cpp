#include "desktop/services/DesktopNotices.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/PrivateBus.h"
#include "tests/desktop/services/NotificationServer.h"

namespace tessel::test {
namespace {

constexpr int patience = 5000;

class NoticesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(serversBus.isConnected());
    ASSERT_TRUE(programsBus.isConnected());
  }
  [[nodiscard]] bool IsShown(std::size_t count) {
    return QTest::qWaitFor([&] { return server.notices.size() == count; }, patience);
  }

  PrivateBus bus;
  QDBusConnection serversBus = bus.Connection("server");
  QDBusConnection programsBus = bus.Connection("program");
  NotificationServer server{serversBus};
  DesktopNotices notices{programsBus};
};

TEST_F(NoticesTest, TheDesktopShowsTitleAndText) {
  notices.Show("Größe", "Executing has ended.");
  ASSERT_TRUE(IsShown(1));
  EXPECT_EQ(server.notices[0].title, "Größe");
  EXPECT_EQ(server.notices[0].text, "Executing has ended.");
  EXPECT_EQ(server.notices[0].actions.value(0), "default");
}

TEST_F(NoticesTest, WhatLooksLikeMarkupIsText) {
  notices.Show("<b>", "a <b>&amp;</b>");
  ASSERT_TRUE(IsShown(1));
  EXPECT_EQ(server.notices[0].text, "a <b>&amp;</b>") << "the server takes plain text";
  server.abilities.append("body-markup");
  notices.Show("<b>", "a <b>&amp;</b>");
  ASSERT_TRUE(IsShown(2));
  EXPECT_EQ(server.notices[1].text, "a &lt;b&gt;&amp;amp;&lt;/b&gt;");
  EXPECT_EQ(server.notices[1].title, "<b>") << "titles are plain for all";
}

TEST_F(NoticesTest, AClickOnANoticeActivatesTheProgram) {
  QMainWindow frame;
  frame.show();
  QWidget other;
  other.show();
  other.activateWindow();
  notices.Show("a", "b");
  ASSERT_TRUE(IsShown(1));
  ASSERT_TRUE(QTest::qWaitFor([&] { return other.isActiveWindow(); }, patience));
  emit server.ActionInvoked(99, "default");
  emit server.ActionInvoked(1, "other");
  QTest::qWait(50);
  EXPECT_FALSE(frame.isActiveWindow()) << "a notice of another program, another action";
  emit server.ActionInvoked(1, "default");
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.isActiveWindow(); }, patience));
}

TEST_F(NoticesTest, AServerThatHangsHoldsNothingUp) {
  server.hangs = true;
  QElapsedTimer timer;
  timer.start();
  notices.Show("a", "b");
  EXPECT_LT(timer.elapsed(), 1000);
  EXPECT_TRUE(QTest::qWaitFor([&] { return server.asked == 1; }, patience));
  EXPECT_TRUE(server.notices.empty());
  timer.restart();
  notices.Show("a", "c");
  EXPECT_LT(timer.elapsed(), 1000);
}

TEST_F(NoticesTest, WithoutAServerNothingHappens) {
  ASSERT_TRUE(serversBus.unregisterService("org.freedesktop.Notifications"));
  notices.Show("a", "b");
  QTest::qWait(50);
  EXPECT_TRUE(server.notices.empty());
  ASSERT_TRUE(serversBus.registerService("org.freedesktop.Notifications"));
  notices.Show("a", "c");
  EXPECT_TRUE(IsShown(1)) << "one that comes later is used";
}

TEST_F(NoticesTest, WithoutABusNothingHappens) {
  DesktopNotices alone{QDBusConnection("there is none")};
  alone.Show("a", "b");
  QTest::qWait(50);
  EXPECT_TRUE(server.notices.empty());
}

TEST_F(NoticesTest, TheUserIsHereWhileAWindowIsActive) {
  QMainWindow frame;
  frame.show();
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame, patience));
  EXPECT_TRUE(notices.UserIsHere());
  if (QGuiApplication::platformName() == "offscreen") return;  // There it is active to its end.
  frame.hide();
  EXPECT_TRUE(notices.UserIsHere()) << "the next window is about to come";
  EXPECT_TRUE(QTest::qWaitFor([this] { return !notices.UserIsHere(); }, patience));
}

}  // namespace
}  // namespace tessel::test

#include "moc_NotificationServer.cpp"
