// Windows: modal ones inside each other, message boxes, windows that go while their own handler
// runs.

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "desktop/base/Text.h"
#include "desktop/dialogs/MessageDialog.h"
#include "desktop/window/ScreenRoom.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class WindowTest : public DesktopFixture {};

TEST_F(WindowTest, AModalWindowMayShowAnother) {
  const auto outer = TheDesktop().MakeWindow("dlgConnect");
  const auto inner = TheDesktop().MakeWindow("dlgText");
  std::vector<std::string> order;
  outer->Find<Button>("cmdConnect").Click = [&] {
    inner->ShowModal(outer.get());
    order.emplace_back("inner closed");
    host.OnMessage("Sure?", MessageResult::Cancel);
    Message question;
    question.text = "Sure?";
    question.buttons = MessageButtons::OkCancel;
    if (TheDesktop().ShowMessage(question) == MessageResult::Cancel) order.emplace_back("not sure");
    outer->Hide();
  };
  host.OnModal("dlgConnect", [&](Window& window) { host.Click(window, "cmdConnect"); });
  host.OnModal("dlgText", [](Window& window) { window.Hide(); });
  outer->ShowModal(nullptr);
  order.emplace_back("outer closed");
  EXPECT_EQ(order, (std::vector<std::string>{"inner closed", "not sure", "outer closed"}));
}

TEST_F(WindowTest, AWindowMayGoInItsOwnHandler) {
  auto window = ShowForm("dlgText");
  window->Find<Button>("cmdOK").Click = [&] { window.reset(); };
  host.Click(*window, "cmdOK");
  EXPECT_EQ(window, nullptr);
}

TEST_F(WindowTest, AWindowMayGoInItsKeyPreview) {
  auto window = ShowForm("dlgText");
  window->Find<Control>("txtText").SetFocus();
  window->KeyDown = [&](KeyEvent&) { window.reset(); };
  PressKeyCode('A');
  host.Settle();
  EXPECT_EQ(window, nullptr);
}

TEST_F(WindowTest, AWindowMayGoWhileItIsModal) {
  auto window = TheDesktop().MakeWindow("dlgText");
  window->Find<Button>("cmdOK").Click = [&] { window.reset(); };
  host.OnModal("dlgText", [&](Window& modal) {
    QTest::mouseClick(&WidgetOf(modal, "cmdOK"), Qt::LeftButton);
  });
  Window* raw = window.get();
  raw->ShowModal(nullptr);
  EXPECT_EQ(window, nullptr);
}

TEST_F(WindowTest, AWindowHiddenBeforeItBecameActiveLeavesTheKeyboardBelow) {
  const auto below = ShowForm("dlgConnect");
  WaitForKeyboard(*below);
  const auto brief = TheDesktop().MakeWindow("dlgText");
  QMetaObject::invokeMethod(
      qApp, [&] { brief->Hide(); }, Qt::QueuedConnection);
  brief->ShowModal(below.get());
  host.Settle();
  EXPECT_EQ(QGuiApplication::focusWindow(), AsQt(*below).Outer().windowHandle());
}

/// Off screen no window manager gives the keyboard back.
TEST_F(WindowTest, AWindowHiddenWhileItIsActiveLeavesTheKeyboardBelow) {
  const auto below = ShowForm("dlgConnect");
  const auto above = TheDesktop().MakeWindow("dlgText");
  QWindow* belowHandle = AsQt(*below).Outer().windowHandle();
  host.OnModal("dlgText", [&](Window& window) {
    EXPECT_TRUE(QTest::qWaitForWindowActive(&AsQt(window).Outer()));
    EXPECT_NE(QGuiApplication::focusWindow(), belowHandle);
    window.Hide();
  });
  above->ShowModal(below.get());
  EXPECT_TRUE(QTest::qWaitFor([&] { return QGuiApplication::focusWindow() == belowHandle; }, 2000));
}

TEST_F(WindowTest, AWindowThatGetsAKeyWhileNoneIsActiveBecomesActive) {
  const auto below = ShowForm("dlgConnect");
  QWindow* handle = AsQt(*below).Outer().windowHandle();
  ShowForm("dlgText").reset();
  host.Settle();
  ASSERT_EQ(QGuiApplication::focusWindow(), nullptr);
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier);
  QCoreApplication::sendEvent(handle, &key);
  host.Settle();
  EXPECT_EQ(QGuiApplication::focusWindow(), handle);
}

TEST_F(WindowTest, AnOwnerMayGoBeforeTheWindowAboveIt) {
  auto owner = ShowForm("dlgConnect");
  const auto above = TheDesktop().MakeWindow("dlgAsync");
  above->ShowAbove(*owner);
  host.Settle();
  owner.reset();
  host.Settle();
  above->Find<Label>("lblMessage").SetCaption("still there");
  EXPECT_EQ(above->Find<Label>("lblMessage").Caption(), "still there");
}

TEST_F(WindowTest, AWindowShownSoonLeavesShortWorkAlone) {
  const auto owner = ShowForm("dlgConnect");
  const auto window = TheDesktop().MakeWindow("dlgAsync");
  const QWidget& shown = AsQt(*window).Outer();
  window->ShowAboveSoon(*owner);
  QTest::qWait(60);
  EXPECT_FALSE(shown.isVisible());
  QTest::qWait(200);
  EXPECT_TRUE(shown.isVisible());
  EXPECT_EQ(shown.parentWidget(), &AsQt(*owner).Outer());
  window->Hide();
  window->ShowAboveSoon(*owner);
  QTest::qWait(60);
  window->Unload();
  QTest::qWait(200);
  EXPECT_FALSE(shown.isVisible());
}

TEST_F(WindowTest, ALoopShowsItsWindowOnceItTakesLong) {
  const auto owner = ShowForm("dlgConnect");
  const auto window = TheDesktop().MakeWindow("dlgAsync");
  window->ShowAboveSoon(*owner);
  QElapsedTimer timer;
  timer.start();
  while (!AsQt(*window).Outer().isVisible() && timer.elapsed() < 5000)
    TheDesktop().ProcessPending();
  EXPECT_GE(timer.elapsed(), 145);
  EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(WindowTest, EnterPressesCancelOnceAndNotByItsRepetition) {
  const auto window = ShowForm("dlgAsync");
  int cancels = 0;
  window->Find<Button>("cmdCancel").Click = [&] { ++cancels; };
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
  QCoreApplication::sendEvent(&WidgetOf(*window, "cmdCancel"), &held);
  EXPECT_EQ(cancels, 0) << "the key was pressed for what came before";
  PressKeyCode(key::enter);
  EXPECT_EQ(cancels, 1);
}

TEST_F(WindowTest, AnExceptionOfAnyKindIsShown) {
  const auto window = ShowForm("dlgText");
  window->Find<Button>("cmdOK").Click = [] { throw std::runtime_error("It broke."); };
  host.OnMessage("It broke.", MessageResult::Ok);
  host.Click(*window, "cmdOK");
  window->Find<Button>("cmdOK").Click = [] { throw 7; };
  host.OnMessage("An unknown error occurred.", MessageResult::Ok);
  host.Click(*window, "cmdOK");
}

TEST_F(WindowTest, EnterInAFieldOfSeveralLinesIsTheDialogs) {
  const auto window = ShowForm("dlgConnect");
  int connects = 0;
  window->Find<Button>("cmdConnect").Click = [&] { ++connects; };
  auto& box = window->Find<TextBox>("txtCnStr");
  box.SetText("abc");
  box.SetFocus();
  PressKeyCode(key::enter);
  EXPECT_EQ(connects, 1);
  EXPECT_EQ(box.Text(), "abc");
}

TEST_F(WindowTest, MnemonicsGoToTheirFields) {
  const auto window = ShowForm("dlgConnect");
  PressKeyCode('U', shiftState::alt);
  EXPECT_TRUE(window->Find<Control>("txtUsername").HasFocus());
  PressKeyCode('N', shiftState::alt);
  EXPECT_TRUE(window->Find<Control>("txtCaption").HasFocus());
}

TEST_F(WindowTest, AWindowLeavesATenthOfTheScreenFree) {
  EXPECT_EQ(Within({1024, 768}, {1040, 720}), QSize(921, 691));
  EXPECT_EQ(Within({512, 384}, {400, 300}), QSize(400, 300));
  const auto frame = ShowForm("frmMDI");
  const auto list = ShowForm("dlgConnect");
  const auto text = TheDesktop().MakeWindow("frmText");
  text->SetBounds({0, 0, 60000, 60000});
  text->Show();
  host.Settle();
  for (Window* window : {frame.get(), list.get(), text.get()}) {
    const QWidget& shown = AsQt(*window).Outer();
    const QSize most = shown.screen()->availableSize() * 9 / 10;
    EXPECT_LE(shown.width(), most.width()) << window->FormName();
    EXPECT_LE(shown.height(), most.height()) << window->FormName();
  }
  EXPECT_LT(text->Bounds().width, 60000) << "it tells the size it has";
}

TEST_F(WindowTest, ToolTipsAreNoMarkup) {
  const auto window = ShowForm("dlgText");
  window->Find<Control>("txtText").SetToolTip("SELECT <b>1</b>");
  EXPECT_EQ(WidgetOf(*window, "txtText").toolTip().count("&lt;"), 2);
  window->Find<Control>("txtText").SetToolTip("a < b");
  EXPECT_EQ(WidgetOf(*window, "txtText").toolTip(), "a < b");
}

TEST_F(WindowTest, KeysTellWhatTheyType) {
  const auto window = ShowForm("dlgText");
  window->Find<Control>("txtText").SetFocus();
  std::vector<std::string> typed;
  window->KeyDown = [&](KeyEvent& event) { typed.push_back(event.text); };
  PressQtKey(Qt::Key_Adiaeresis, Qt::NoModifier, QStringLiteral("ä"));
  PressKeyCode('B', shiftState::ctrl);
  PressQtKey(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
  PressQtKey(Qt::Key_F2);
  EXPECT_EQ(typed, (std::vector<std::string>{"\xC3\xA4", "", "", ""}));
}

class MessageTest : public DesktopFixture {
 protected:
  /// Shows a box, lets `act` do something with it, and returns the answer.
  [[nodiscard]] MessageResult Ask(MessageButtons buttons,
                                  const std::function<void(MessageDialog&)>& act) {
    Message message;
    message.text = "Question";
    message.buttons = buttons;
    QTimer::singleShot(20, qApp, [&] {
      auto* box = qobject_cast<MessageDialog*>(QApplication::activeModalWidget());
      if (box != nullptr) act(*box);
      else ADD_FAILURE() << "no box";
    });
    return TheDesktop().ShowMessage(message);
  }
};

TEST_F(MessageTest, ClosingIsTheMildestAnswer) {
  const auto close = [](MessageDialog& box) { box.close(); };
  const auto escape = [](MessageDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); };
  for (const auto& act :
       {std::function<void(MessageDialog&)>(close), std::function<void(MessageDialog&)>(escape)}) {
    EXPECT_EQ(Ask(MessageButtons::Ok, act), MessageResult::Ok);
    EXPECT_EQ(Ask(MessageButtons::OkCancel, act), MessageResult::Cancel);
    EXPECT_EQ(Ask(MessageButtons::YesNo, act), MessageResult::No);
    EXPECT_EQ(Ask(MessageButtons::YesNoCancel, act), MessageResult::Cancel);
  }
}

TEST_F(MessageTest, EnterIsTheFirstButton) {
  const auto enter = [](MessageDialog& box) { QTest::keyClick(&box, Qt::Key_Return); };
  EXPECT_EQ(Ask(MessageButtons::OkCancel, enter), MessageResult::Ok);
  EXPECT_EQ(Ask(MessageButtons::YesNoCancel, enter), MessageResult::Yes);
}

TEST_F(MessageTest, HelpLeavesTheBoxOpen) {
  int helped = 0;
  Message message;
  message.text = "Help?";
  message.help = [&] { ++helped; };
  QTimer::singleShot(20, qApp, [&] {
    auto* box = qobject_cast<MessageDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QTest::mouseClick(box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Help),
                      Qt::LeftButton);
    EXPECT_TRUE(box->isVisible());
    PressMessageButton(*box, MessageResult::Ok);
  });
  EXPECT_EQ(TheDesktop().ShowMessage(message), MessageResult::Ok);
  EXPECT_EQ(helped, 1);
}

TEST_F(MessageTest, AFailingHelpIsShownAndTheBoxStays) {
  Message message;
  message.text = "Help?";
  message.help = [] { throw std::runtime_error("No help."); };
  QTimer::singleShot(20, qApp, [&] {
    auto* box = qobject_cast<MessageDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    host.OnMessage("No help.", MessageResult::Ok);
    QTest::mouseClick(box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Help),
                      Qt::LeftButton);
    EXPECT_TRUE(box->isVisible());
    box->close();
  });
  EXPECT_EQ(TheDesktop().ShowMessage(message), MessageResult::Ok);
}

TEST_F(MessageTest, ALongTextFitsOnTheScreen) {
  Message message;
  message.text = std::string(200'000, 'x');
  MessageDialog wide(message, nullptr);
  message.text.clear();
  for (int line = 0; line < 5000; ++line) message.text += "line\r\n";
  MessageDialog tall(message, nullptr);
  for (MessageDialog* box : {&wide, &tall}) {
    box->show();
    host.Settle();
    EXPECT_LT(box->width(), 700);
    EXPECT_LT(box->height(), 500);
  }
}

}  // namespace

}  // namespace tessel::test
