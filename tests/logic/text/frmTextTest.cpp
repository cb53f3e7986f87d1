#include "logic/text/frmText.h"

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/text/SqlTarget.h"
#include "logic/text/dlgText.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class FakeSqlWindow : public SqlTarget {
 public:
  void InsertText(std::string_view text) override { inserted.emplace_back(text); }
  std::vector<std::string> inserted;
};

class frmTextTest : public test::LogicFixture {
 protected:
  bool Show(const TextViewOptions& options, test::DesktopScript::Step step) {
    desktop.OnModal("frmText", std::move(step));
    return ShowText(global, sqlWindow, text, options);
  }

  FakeSqlWindow sqlWindow;
  std::string text = "some text";
};

TEST_F(frmTextTest, AReadOnlyViewerHasNoOkCancelOrOpenAndReturnsFalse) {
  const bool accepted = Show({8404, "", 9600, 6300, false, true}, [](test::HeadlessWindow& w) {
    for (const char* button : {"cmdOK", "cmdCancel", "cmdOpen"})
      EXPECT_FALSE(w.VisibleInFact(button)) << button;
    for (const char* button : {"cmdSave", "cmdCopy", "cmdCopyToSQLWindow", "chkWordWrap"})
      EXPECT_TRUE(w.VisibleInFact(button)) << button;
    EXPECT_TRUE(w.Find<RichTextBox>("txtText").Locked());
    EXPECT_EQ(w.HelpContext(), 8404);
    EXPECT_EQ(w.Bounds().width, 9600);
    EXPECT_EQ(w.Bounds().height, 6300);
    w.PressKey('O', shiftState::ctrl);
    w.Find<RichTextBox>("txtText").SetFocus();
    w.PressKey(key::enter);
    EXPECT_TRUE(w.Visible()) << "there is no default button that could be seen";
    w.CloseByControlBox();
  });
  EXPECT_FALSE(accepted);
  EXPECT_EQ(text, "some text");
  EXPECT_TRUE(desktop.FileDialogs().empty());
}

TEST_F(frmTextTest, OkHandsTheEditedTextBack) {
  const bool accepted = Show({0, "", 9600, 6300, true, false}, [](test::HeadlessWindow& w) {
    EXPECT_FALSE(w.Find<RichTextBox>("txtText").Locked());
    w.Find<RichTextBox>("txtText").SetText("edited");
    w.Click("cmdOK");
  });
  EXPECT_TRUE(accepted);
  EXPECT_EQ(text, "edited");
}

TEST_F(frmTextTest, CancelAndEscapeLeaveTheCallersText) {
  for (const int key : {0, static_cast<int>(key::escape)}) {
    const bool accepted = Show({0, "", 9600, 6300, true, false}, [key](test::HeadlessWindow& w) {
      w.Find<RichTextBox>("txtText").SetText("edited");
      if (key == 0) w.Click("cmdCancel");
      else w.PressKey(key);
    });
    EXPECT_FALSE(accepted);
    EXPECT_EQ(text, "some text");
  }
}

TEST_F(frmTextTest, TheCallersFileTypesComeFirst) {
  Show({0, "CSV Files (*.csv)|*.csv", 9600, 6300, false, false}, [&](test::HeadlessWindow& w) {
    desktop.AnswerFile(folder.File("a.csv"));
    w.Click("cmdSave");
    w.CloseByControlBox();
  });
  EXPECT_TRUE(desktop.FileDialogs().at(0).filter.starts_with("CSV Files (*.csv)|*.csv|"));
  EXPECT_EQ(Content("a.csv"), "some text");
}

TEST_F(frmTextTest, OpensAFileInPlaceOfTheText) {
  folder.Write("b.txt", "from file\r\n");
  Show({0, "", 9600, 6300, true, false}, [&](test::HeadlessWindow& w) {
    desktop.AnswerFile(folder.File("b.txt"));
    w.PressKey('O', shiftState::ctrl);
    w.Click("cmdOK");
  });
  EXPECT_EQ(text, "from file\r\n");
}

TEST_F(frmTextTest, AFileErrorIsShownAndLeavesTheText) {
  Show({0, "", 9600, 6300, true, false}, [&](test::HeadlessWindow& w) {
    desktop.AnswerFile(folder.File("none.txt"));
    desktop.ExpectMessage("Error opening " + folder.File("none.txt") +
                              ": No such file or directory",
                          MessageResult::Ok);
    w.Click("cmdOpen");
    w.Click("cmdOK");
  });
  EXPECT_EQ(text, "some text");
}

TEST_F(frmTextTest, CopiesToTheClipboardAndToTheQueryWindowByButtonAndKey) {
  Show({}, [&](test::HeadlessWindow& w) {
    w.Click("cmdCopy");
    EXPECT_EQ(desktop.TheClipboard().Text(), "some text");
    desktop.TheClipboard().SetText("");
    w.PressKey('C', shiftState::ctrl | shiftState::alt);
    EXPECT_EQ(desktop.TheClipboard().Text(), "some text");
    w.Click("cmdCopyToSQLWindow");
    w.PressKey('C', shiftState::ctrl | shiftState::shift);
    w.CloseByControlBox();
  });
  EXPECT_EQ(sqlWindow.inserted, (std::vector<std::string>{"some text", "some text"}));
}

TEST_F(frmTextTest, ControlWFlipsTheWordWrap) {
  Show({0, "", 9600, 6300, false, true}, [](test::HeadlessWindow& w) {
    auto& box = w.Find<RichTextBox>("txtText");
    EXPECT_EQ(box.RightMargin(), 0);
    w.PressKey('W', shiftState::ctrl);
    EXPECT_EQ(box.RightMargin(), 960000);
    EXPECT_FALSE(w.Find<CheckBox>("chkWordWrap").Value());
    EXPECT_EQ(w.FocusName(), "txtText");
    w.CloseByControlBox();
  });
}

TEST_F(frmTextTest, ControlSSaves) {
  Show({}, [&](test::HeadlessWindow& w) {
    desktop.AnswerFile(folder.File("c.txt"));
    w.PressKey('S', shiftState::ctrl);
    w.CloseByControlBox();
  });
  EXPECT_EQ(Content("c.txt"), "some text");
}

TEST_F(frmTextTest, GetTextProposesAndReturnsTheAnswer) {
  std::string answer = "orders";
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<TextBox>("txtText").SelText(), "orders");
    EXPECT_EQ(w.HelpContext(), 8705);
    w.Type("txtText", "customers");
    w.PressKey(key::enter);
  });
  EXPECT_TRUE(GetText(global, 8705, "Table name:-", answer));
  EXPECT_EQ(answer, "customers");
}

TEST_F(frmTextTest, GetTextCancelledKeepsTheProposal) {
  std::string answer = "orders";
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    w.Type("txtText", "customers");
    w.PressKey(key::escape);
  });
  EXPECT_FALSE(GetText(global, 1, "Table name:-", answer));
  EXPECT_EQ(answer, "orders");
}

TEST_F(frmTextTest, AGivenTitleIsShownAndTheFirstTypesEndingIsAdded) {
  TextViewOptions options;
  options.filter = "HTML Files (*.html,*.htm)|*.html;*.htm";
  options.title = "HTML of Shop";
  Show(options, [&](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Caption(), "HTML of Shop");
    desktop.AnswerFile(folder.File("page"));
    w.Click("cmdSave");
    w.CloseByControlBox();
  });
  EXPECT_EQ(Content("page.html"), "some text");
}

TEST_F(frmTextTest, WithoutTitleAndTypesTheWindowIsAsItWas) {
  const std::string own = desktop.MakeWindow("frmText")->Caption();
  for (const char* filter : {"", "All Files (*.*)|*.*"}) {
    TextViewOptions options;
    options.filter = filter;
    Show(options, [&](test::HeadlessWindow& w) {
      EXPECT_EQ(w.Caption(), own);
      EXPECT_EQ(w.FileDialogNamed("dlgCommon").defaultExtension, "");
      w.CloseByControlBox();
    });
  }
}

TEST_F(frmTextTest, CtrlEnterIsOkWhereEnterGoesIntoTheText) {
  Show({0, "", 9600, 6300, true, false}, [](test::HeadlessWindow& w) {
    w.Type("txtText", "x");
    w.PressKey(key::enter, shiftState::ctrl);
    EXPECT_FALSE(w.Visible());
  });
  Show({0, "", 9600, 6300, false, false}, [](test::HeadlessWindow& w) {
    w.PressKey(key::enter, shiftState::ctrl);
    EXPECT_TRUE(w.Visible()) << "there is nothing to confirm";
    w.CloseByControlBox();
  });
}

TEST_F(frmTextTest, CtrlTabLeavesTheText) {
  Show({0, "", 9600, 6300, true, false}, [](test::HeadlessWindow& w) {
    w.Find<Control>("txtText").SetFocus();
    w.PressKey(key::tab, shiftState::ctrl);
    EXPECT_EQ(w.FocusName(), "chkWordWrap");
    w.PressKey(key::escape);
  });
}

}  // namespace
}  // namespace tessel
