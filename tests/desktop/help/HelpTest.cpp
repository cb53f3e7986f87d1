// The help book in its window.

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

#include "desktop/base/Text.h"
#include "desktop/help/HelpWindow.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

constexpr int contents = 1;
constexpr int index = 2;
constexpr int topic = 15;

class HelpTest : public DesktopFixture {
 protected:
  bool ShowHelp(int command, int data = 0) {
    const bool shown = TheDesktop().ShowHelp("/nowhere/Tessel.chm", command, data);
    host.Settle();
    return shown;
  }
  /// The help window, or null when it does not show.
  static HelpWindow* Shown() {
    for (QWidget* widget : QApplication::allWidgets())
      if (auto* help = qobject_cast<HelpWindow*>(widget); help != nullptr && help->isVisible())
        return help;
    return nullptr;
  }
  static QTextBrowser& Page() { return *Shown()->findChild<QTextBrowser*>("page"); }
  static std::string PageName() { return FromQt(Page().source().toString()); }
  static QTabWidget& Tabs() { return *Shown()->findChild<QTabWidget*>("tabs"); }
};

TEST_F(HelpTest, ContentsShowTheFirstPageWithItsTextAndTopics) {
  ASSERT_TRUE(ShowHelp(contents));
  ASSERT_NE(Shown(), nullptr);
  EXPECT_EQ(Tabs().currentIndex(), 0);
  EXPECT_EQ(PageName(), "qrc:/help/welcome.html");
  EXPECT_TRUE(Page().toPlainText().contains("Getting started"));
  EXPECT_GT(Shown()->findChild<QTreeWidget*>("contents")->topLevelItemCount(), 10);
}

TEST_F(HelpTest, BackForwardAndHomeHaveKeysWhereverTheKeyboardIs) {
  ASSERT_TRUE(ShowHelp(contents));
  ASSERT_TRUE(QTest::qWaitForWindowActive(Shown()));
  auto* tree = Shown()->findChild<QTreeWidget*>("contents");
  tree->setFocus();
  tree->setCurrentItem(tree->topLevelItem(3));
  const std::string second = PageName();
  ASSERT_NE(second, "qrc:/help/welcome.html");
  PressKeyCode(key::left, shiftState::alt);
  EXPECT_EQ(PageName(), "qrc:/help/welcome.html");
  PressKeyCode(key::right, shiftState::alt);
  EXPECT_EQ(PageName(), second);
  PressKeyCode(key::home, shiftState::alt);
  EXPECT_EQ(PageName(), "qrc:/help/welcome.html");
}

TEST_F(HelpTest, TheIndexFindsAPageByItsWord) {
  ASSERT_TRUE(ShowHelp(index));
  EXPECT_EQ(Tabs().currentIndex(), 1);
  auto* line = Tabs().currentWidget()->findChild<QLineEdit*>();
  auto* list = Tabs().currentWidget()->findChild<QListWidget*>();
  EXPECT_EQ(QApplication::focusWidget(), line);
  const int all = list->count();
  QTest::keyClicks(line, "quoted");
  EXPECT_LT(list->count(), all);
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_EQ(PageName(), "qrc:/help/conversions.html#quoted");
}

TEST_F(HelpTest, TheSearchFindsPagesThatHoldAllWords) {
  ASSERT_TRUE(ShowHelp(contents));
  Tabs().setCurrentIndex(2);
  auto* line = Tabs().currentWidget()->findChild<QLineEdit*>();
  auto* list = Tabs().currentWidget()->findChild<QListWidget*>();
  EXPECT_EQ(list->count(), 0);
  line->setText("HEXADECIMAL brackets");
  ASSERT_EQ(list->count(), 1);
  EXPECT_EQ(list->item(0)->text(), "Conversions");
  line->setText("nosuchword");
  EXPECT_EQ(list->count(), 0);
}

TEST_F(HelpTest, ATopicOpensByItsNumberAndAnUnknownOneOpensTheContents) {
  ASSERT_TRUE(ShowHelp(topic, 8704));
  EXPECT_EQ(PageName(), "qrc:/help/conversions.html#insert");
  ASSERT_TRUE(ShowHelp(topic, 12));
  EXPECT_EQ(PageName(), "qrc:/help/welcome.html");
  EXPECT_FALSE(ShowHelp(99));
}

TEST_F(HelpTest, EveryPageOfTheBookIsThere) {
  ASSERT_TRUE(ShowHelp(contents));
  const HelpBook& book = Shown()->Book();
  for (const HelpTopic& word : book.Index()) {
    Shown()->ShowPage(word.page);
    EXPECT_FALSE(Page().toPlainText().isEmpty()) << FromQt(word.title);
  }
}

TEST_F(HelpTest, F1ShowsHelpOnTheWindow) {
  const auto window = ShowForm("dlgConnect");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
  host.Settle();
  ASSERT_NE(Shown(), nullptr);
  EXPECT_EQ(PageName(), "qrc:/help/connecting.html");
  Shown()->close();
  window->SetHelpContext(9200);
  window->Activate();
  host.Settle();
  QTest::keyClick(&WidgetAs<QWidget>(*window, "txtCaption"), Qt::Key_F1);
  host.Settle();
  EXPECT_EQ(PageName(), "qrc:/help/messages.html#notices");
}

TEST_F(HelpTest, HelpOnAWindowIsThePageThatF1Shows) {
  const auto window = ShowForm("dlgConnect");
  TheDesktop().ShowHelpOn(*window);
  host.Settle();
  ASSERT_NE(Shown(), nullptr);
  EXPECT_EQ(PageName(), "qrc:/help/connecting.html");
}

TEST_F(HelpTest, TheHelpButtonOfAMessageOpensTheTopicAndTheBoxStays) {
  Message message;
  message.text = "Go on?";
  message.buttons = MessageButtons::YesNo;
  message.help = [this] { TheDesktop().ShowHelp("/nowhere/Tessel.chm", topic, 9100); };
  bool boxStayed = false;
  QTimer::singleShot(200, [&] {
    QWidget* box = QApplication::activeModalWidget();
    ASSERT_NE(box, nullptr);
    for (auto* button : box->findChildren<QPushButton*>())
      if (button->text().contains("Help")) button->click();
    QTest::qWait(100);
    ASSERT_NE(Shown(), nullptr);
    EXPECT_EQ(PageName(), "qrc:/help/messages.html#questions");
    boxStayed = box->isVisible();
    QTest::keyClick(&Page(), Qt::Key_End);  // The window takes input although the box waits.
    EXPECT_EQ(Page().verticalScrollBar()->value(), Page().verticalScrollBar()->maximum());
    PressMessageButton(*box, MessageResult::Yes);
  });
  EXPECT_EQ(TheDesktop().ShowMessage(message), MessageResult::Yes);
  EXPECT_TRUE(boxStayed);
  host.Settle();
  ASSERT_NE(Shown(), nullptr) << "the help stays when the box goes";
}

}  // namespace

}  // namespace tessel::test
