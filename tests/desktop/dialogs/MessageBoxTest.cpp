#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QTest>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "desktop/base/Text.h"
#include "desktop/dialogs/MessageDialog.h"

namespace tessel::test {

namespace {

/// Orders the buttons of a box as one of the desktops does.
class ButtonOrder : public QProxyStyle {
 public:
  explicit ButtonOrder(QDialogButtonBox::ButtonLayout order) : order_(order) {}
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonLayout ? order_
                                         : QProxyStyle::styleHint(hint, option, widget, data);
  }

 private:
  int order_;
};

class MessageBoxTest : public testing::TestWithParam<QDialogButtonBox::ButtonLayout> {
 protected:
  MessageBoxTest() {
    message.help = [this] { ++helped; };
  }

  MessageDialog& Shown() {
    dialog.emplace(message, nullptr);
    order.emplace(GetParam());
    for (QWidget* widget : dialog->findChildren<QWidget*>()) widget->setStyle(&*order);
    dialog->show();
    dialog->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&*dialog));
    return *dialog;
  }
  std::string Focused() {
    const auto* button = qobject_cast<QAbstractButton*>(dialog->focusWidget());
    return button == nullptr ? "" : FromQt(button->text());
  }

  Message message{"Go on?", MessageButtons::YesNoCancel, MessageIcon::Question};
  int helped = 0;
  std::optional<ButtonOrder> order;
  std::optional<MessageDialog> dialog;
};

TEST_P(MessageBoxTest, EnterPressesTheFirstButtonOfTheSetNotHelp) {
  Shown();
  EXPECT_EQ(Focused(), "&Yes");
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->Result(), MessageResult::Yes);
  EXPECT_EQ(helped, 0);
}

TEST_P(MessageBoxTest, EnterPressesTheButtonThatWasAskedFor) {
  message.defaultAnswer = MessageResult::No;
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  EXPECT_EQ(dialog->Result(), MessageResult::No);
}

TEST_P(MessageBoxTest, ALetterAnswersWithoutAlt) {
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_N);
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->Result(), MessageResult::No);
}

TEST_P(MessageBoxTest, ALetterOfHelpShowsHelpAndLeavesTheBoxOpen) {
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_H);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(helped, 1);
}

TEST_P(MessageBoxTest, GivenWordsStandOnTheButtons) {
  message.captions = {"&Commit", "&Roll back"};
  Shown();
  EXPECT_EQ(Focused(), "&Commit");
  QTest::keyClick(dialog->focusWidget(), Qt::Key_R);
  EXPECT_EQ(dialog->Result(), MessageResult::No);
}

TEST_P(MessageBoxTest, AMarkedLetterGoesBeforeAFirstOne) {
  message.captions = {"&Commit", "&Roll back", "Cancel"};
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_C);
  EXPECT_EQ(dialog->Result(), MessageResult::Yes);
}

TEST_P(MessageBoxTest, AnUnmarkedWordIsPressedByItsFirstLetter) {
  message.captions = {"&Overwrite", "&Reload", "Cancel"};
  message.defaultAnswer = MessageResult::Yes;
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_C);
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->Result(), MessageResult::Cancel);
}

TEST_P(MessageBoxTest, CtrlCCopiesTheText) {
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(dialog->isVisible()) << "no answer was given";
  EXPECT_EQ(FromQt(QGuiApplication::clipboard()->text()), "Go on?");
}

TEST_P(MessageBoxTest, EscIsTheLastAnswerOfTheSet) {
  Shown();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(dialog->Result(), MessageResult::Cancel);
}

INSTANTIATE_TEST_SUITE_P(Orders, MessageBoxTest,
                         testing::Values(QDialogButtonBox::WinLayout, QDialogButtonBox::GnomeLayout,
                                         QDialogButtonBox::KdeLayout));

}  // namespace

}  // namespace tessel::test
