#include "tests/headless/HeadlessDesktop.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;

/// Runs `action`, which is to fail the test with `text` and to end it.
#define EXPECT_STOPS(action, text)                                                                 \
  do {                                                                                             \
    bool stopped = false;                                                                          \
    EXPECT_NONFATAL_FAILURE(                                                                       \
        {                                                                                          \
          try {                                                                                    \
            action;                                                                                \
          } catch (const TestStop&) {                                                              \
            stopped = true;                                                                        \
          }                                                                                        \
        },                                                                                         \
        text);                                                                                     \
    EXPECT_TRUE(stopped) << "the test was not ended";                                              \
  } while (false)

class HeadlessDesktopTest : public testing::Test {
 protected:
  HeadlessWindow& Make(const std::string& form) {
    windows_.push_back(desktop_.MakeWindow(form));
    return dynamic_cast<HeadlessWindow&>(*windows_.back());
  }

  HeadlessDesktop desktop_;
  std::vector<std::unique_ptr<Window>> windows_;
};

}  // namespace

TEST_F(HeadlessDesktopTest, ReadsEveryForm) {
  const std::vector<std::string> forms = FormFile::NamesIn(TESSEL_FORMS_DIR);
  EXPECT_GE(forms.size(), 13U);
  for (const std::string& name : forms) EXPECT_EQ(Make(name).FormName(), name);
}

TEST_F(HeadlessDesktopTest, RaisesForAnUnknownForm) {
  EXPECT_THROW(static_cast<void>(desktop_.MakeWindow("frmNone")), Error);
}

TEST_F(HeadlessDesktopTest, RaisesForAMisspeltControl) {
  HeadlessWindow& window = Make("dlgText");
  EXPECT_NO_THROW(static_cast<void>(window.Find<TextBox>("txtText")));
  EXPECT_THROW(static_cast<void>(window.Find<TextBox>("txtTxet")), Error);
  EXPECT_THROW(static_cast<void>(window.Find<Label>("txtText")), Error) << "of another kind";
  EXPECT_THROW(static_cast<void>(window.Menu("mnuNone")), Error);
}

TEST_F(HeadlessDesktopTest, AUserCannotGetAtWhatIsNotThere) {
  HeadlessWindow& window = Make("dlgText");
  EXPECT_STOPS(window.Click("cmdOK"), "it is not shown");
  window.Show();
  EXPECT_STOPS(window.Click("cmdKO"), "has no control 'cmdKO'");
  EXPECT_STOPS(window.SelectRow("cmdOK", 0), "of another kind");
  window.Find<Button>("cmdOK").SetVisible(false);
  EXPECT_STOPS(window.Click("cmdOK"), "it is hidden");
}

TEST_F(HeadlessDesktopTest, TakesInitialStatesFromTheForm) {
  HeadlessWindow& records = Make("frmRecords");
  EXPECT_FALSE(records.Find<Button>("cmdAccept").Visible());
  EXPECT_FALSE(records.Find<Button>("cmdRequery").Enabled());
  EXPECT_EQ(records.Find<Button>("cmdRequery").ToolTip(), "Re-query (F5)");
  EXPECT_TRUE(records.Find<CheckBox>("chkLock").Value());
  EXPECT_TRUE(records.Find<TextBox>("txtStatus").Locked());
  EXPECT_FALSE(records.Menu("menuRecords").Enabled());
  EXPECT_EQ(records.Menu("mnuCvtCSV").Caption(), "--> &CSV");
  EXPECT_EQ(records.Find<TextBox>("txtStatus").Bounds().left, 60);
  EXPECT_EQ(Make("dlgAsync").Find<Label>("lblTimer").Caption(), "    :    :    ");
}

TEST_F(HeadlessDesktopTest, AnUnexpectedMessageEndsTheTest) {
  EXPECT_STOPS(desktop_.ShowMessage({.text = "Why?"}), "Unexpected message:\nWhy?");
  desktop_.ExpectMessage("One");
  EXPECT_STOPS(desktop_.ShowMessage({.text = "Two"}), "Two\ninstead of:\nOne");
}

TEST_F(HeadlessDesktopTest, AnsweredMessagesAreRecorded) {
  desktop_.ExpectMessage("Go on?", MessageResult::Cancel);
  const Message message{
      .text = "Go on?", .buttons = MessageButtons::OkCancel, .icon = MessageIcon::Question};
  EXPECT_EQ(desktop_.ShowMessage(message), MessageResult::Cancel);
  ASSERT_EQ(desktop_.Messages().size(), 1U);
  EXPECT_EQ(desktop_.Messages()[0].icon, MessageIcon::Question);
}

TEST_F(HeadlessDesktopTest, AnAnswerMustBeAmongTheButtons) {
  desktop_.ExpectMessage("Go on?", MessageResult::Yes);
  EXPECT_STOPS(desktop_.ShowMessage({.text = "Go on?"}), "not among the buttons");
}

TEST_F(HeadlessDesktopTest, AnswersLeftOverFailTheTest) {
  desktop_.ExpectMessage("Never");
  EXPECT_NONFATAL_FAILURE(desktop_.VerifyScript(), "expected and not shown:\nNever");
  desktop_.CancelFile();
  EXPECT_NONFATAL_FAILURE(desktop_.VerifyScript(), "A file dialog was expected");
  desktop_.OnModal("dlgText", [](HeadlessWindow&) {});
  EXPECT_NONFATAL_FAILURE(desktop_.VerifyScript(), "1 step(s) in the modal window dlgText");
}

TEST_F(HeadlessDesktopTest, AModalWithoutAStepEndsTheTest) {
  HeadlessWindow& window = Make("dlgText");
  EXPECT_STOPS(window.ShowModal(nullptr), "The modal window dlgText would wait for ever.");
  EXPECT_FALSE(window.Visible());
}

TEST_F(HeadlessDesktopTest, AModalRunsEventsBeforeSteps) {
  HeadlessWindow& window = Make("dlgText");
  std::vector<std::string> seen;
  const auto owner = std::make_shared<int>();
  desktop_.Events().Post(owner, [&] { seen.emplace_back("event"); });
  desktop_.OnModal("dlgText", [&](HeadlessWindow&) {
    seen.emplace_back("step");
    desktop_.Events().Post(owner, [&] { seen.emplace_back("second event"); });
  });
  desktop_.OnModal("dlgText", [&](HeadlessWindow& modal) {
    seen.emplace_back("last step");
    modal.CloseByControlBox();
  });
  window.ShowModal(nullptr);
  EXPECT_THAT(seen, ElementsAre("event", "step", "second event", "last step"));
  EXPECT_FALSE(window.Loaded());
}

TEST_F(HeadlessDesktopTest, AModalKeepsTheUserFromOtherWindows) {
  HeadlessWindow& below = Make("dlgConnect");
  below.Show();
  HeadlessWindow& modal = Make("dlgText");
  desktop_.OnModal("dlgText", [&](HeadlessWindow& window) {
    EXPECT_STOPS(below.Click("cmdConnect"), "behind dlgText");
    window.Hide();
  });
  modal.ShowModal(&below);
}

TEST_F(HeadlessDesktopTest, AStopInAHandlerEndsTheUsersAction) {
  HeadlessWindow& window = Make("dlgText");
  window.Find<Button>("cmdOK").Click = [&] { desktop_.ShowMessage({.text = "Surprise"}); };
  window.Show();
  EXPECT_STOPS(window.Click("cmdOK"), "Surprise");
}

TEST_F(HeadlessDesktopTest, AHandlersErrorIsShown) {
  HeadlessWindow& window = Make("dlgText");
  window.Find<Button>("cmdOK").Click = [] {
    throw Error(errorNumber::application, "Tessel", "It went wrong.");
  };
  window.Show();
  desktop_.ExpectMessage("It went wrong.");
  window.Click("cmdOK");
  EXPECT_EQ(desktop_.Messages().at(0).icon, MessageIcon::Exclamation);
}

TEST_F(HeadlessDesktopTest, FileDialogsAreAnsweredFromTheScript) {
  FileDialog& dialog = Make("frmMain").FileDialogNamed("dlgCommon");
  dialog.defaultExtension = "sql";
  dialog.filter = "Query Files (*.sql)|*.sql";
  desktop_.AnswerFile("/home/me/orders");
  EXPECT_TRUE(dialog.ShowSave());
  EXPECT_EQ(dialog.fileName, "/home/me/orders.sql");
  EXPECT_EQ(dialog.fileTitle, "orders.sql");
  desktop_.CancelFile();
  EXPECT_FALSE(dialog.ShowOpen());
  EXPECT_EQ(dialog.fileName, "/home/me/orders.sql");
  ASSERT_EQ(desktop_.FileDialogs().size(), 2U);
  EXPECT_TRUE(desktop_.FileDialogs()[0].save);
  EXPECT_EQ(desktop_.FileDialogs()[0].filter, "Query Files (*.sql)|*.sql");
  EXPECT_STOPS(static_cast<void>(dialog.ShowOpen()), "Unexpected file dialog of frmMain");
}

TEST_F(HeadlessDesktopTest, ColourDialogsAreAnsweredFromTheScript) {
  ColorDialog& dialog = Make("dlgConnect").ColorDialogNamed("dlgCommon");
  dialog.color = 0x123456;
  desktop_.AnswerColor(0x0000FF);
  EXPECT_TRUE(dialog.ShowColor());
  EXPECT_EQ(dialog.color, 0x0000FFU);
  desktop_.CancelColor();
  EXPECT_FALSE(dialog.ShowColor());
  EXPECT_EQ(dialog.color, 0x0000FFU);
  EXPECT_THAT(desktop_.ColorDialogs(), ElementsAre(0x123456U, 0x0000FFU));
}

TEST_F(HeadlessDesktopTest, PopupsAreAnsweredFromTheScript) {
  HeadlessWindow& window = Make("frmRecords");
  window.Show();
  int opened = 0;
  int saved = 0;
  window.Menu("menuBLOB").Click = [&] { ++opened; };
  window.Menu("mnuBLOBSave").Click = [&] { ++saved; };
  desktop_.ExpectPopup("menuBLOB", "mnuBLOBSave");
  window.PopupMenu(window.Menu("menuBLOB"), &window.Find<TextBox>("txtStatus"), 15, 30);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(desktop_.Popups().at(0).at, "txtStatus");
  EXPECT_STOPS(window.PopupMenu(window.Menu("menuBLOB"), nullptr, 0, 0), "Unexpected pop-up menu");
}

TEST_F(HeadlessDesktopTest, TimePassesByHand) {
  EXPECT_EQ(desktop_.TheClock().LongTime(), "12:00:00");
  desktop_.AdvanceTime(61'000);
  EXPECT_EQ(desktop_.TheClock().LongTime(), "12:01:01");
  EXPECT_EQ(desktop_.TheClock().Milliseconds(), 61'000);
}

TEST_F(HeadlessDesktopTest, DeferredActionsRunInOrder) {
  std::vector<int> seen;
  desktop_.Defer([&] {
    seen.push_back(1);
    desktop_.Defer([&] { seen.push_back(3); });
  });
  desktop_.Defer([&] { seen.push_back(2); });
  EXPECT_TRUE(seen.empty());
  desktop_.RunDeferred();
  EXPECT_THAT(seen, ElementsAre(1, 2, 3));
}

TEST_F(HeadlessDesktopTest, NoticesOfOwnersThatAreGoneAreDropped) {
  auto owner = std::make_shared<int>();
  int ran = 0;
  desktop_.Events().Post(owner, [&] { ++ran; });
  desktop_.Events().Post(std::make_shared<int>(), [&] { ran += 10; });
  desktop_.ProcessPending();
  EXPECT_EQ(ran, 1);
}

TEST_F(HeadlessDesktopTest, ProcessesAndHelpAreRecorded) {
  desktop_.StartProcess("/bin/tessel");
  EXPECT_THAT(desktop_.StartedProcesses(), ElementsAre("/bin/tessel"));
  desktop_.FailProcesses("Permission denied");
  EXPECT_THROW(desktop_.StartProcess("/bin/tessel"), Error);
  EXPECT_TRUE(desktop_.ShowHelp("Tessel.chm", 15, 9100));
  desktop_.SetHelpWorks(false);
  EXPECT_FALSE(desktop_.ShowHelp("Tessel.chm", 1, 0));
  EXPECT_EQ(desktop_.HelpRequests().at(0), (HelpRequest{"Tessel.chm", 15, 9100}));
}

TEST_F(HeadlessDesktopTest, ShiftCountsAsHeldDuringAClick) {
  HeadlessWindow& window = Make("frmMain");
  bool held = false;
  window.Find<Button>("cmdExecute").Click = [&] { held = desktop_.IsKeyDown(key::shift); };
  window.Show();
  window.Click("cmdExecute", shiftState::shift);
  EXPECT_TRUE(held);
  EXPECT_FALSE(desktop_.IsKeyDown(key::shift));
}

TEST_F(HeadlessDesktopTest, VisibleInFactLooksAtTheContainers) {
  HeadlessWindow& frame = Make("frmMDI");
  EXPECT_FALSE(frame.VisibleInFact("trvBrowser"));
  frame.Show();
  EXPECT_TRUE(frame.VisibleInFact("trvBrowser"));
  frame.Find<PictureBox>("box").SetVisible(false);
  EXPECT_TRUE(frame.Find<Control>("trvBrowser").Visible());
  EXPECT_FALSE(frame.VisibleInFact("trvBrowser"));
}

TEST_F(HeadlessDesktopTest, AWindowMustNotOutliveItsDesktop) {
  static std::unique_ptr<HeadlessDesktop> desktop;
  static std::unique_ptr<Window> window;
  desktop = std::make_unique<HeadlessDesktop>();
  window = desktop->MakeWindow("dlgText");
  EXPECT_NONFATAL_FAILURE(desktop->VerifyNoWindows(), "dlgText outlives its desktop");
  window.reset();
  desktop.reset();
}

}  // namespace tessel::test
