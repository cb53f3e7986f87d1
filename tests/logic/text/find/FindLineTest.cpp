// The find line as a person uses it, in the query window and in a text window.

#include "logic/text/find/FindLine.h"

#include "logic/text/SqlTarget.h"
#include "logic/text/frmText.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class FindLineTest : public test::LogicFixture {
 protected:
  FindLineTest() {
    frame->Show();
    window.Show();
    window.KeyDown = [this](KeyEvent& event) { event.handled = line.TakeKey(event); };
    box.Change = [this] { line.NoteChange(); };
    box.SetFocus();
  }

  void Open(const std::string& what) {
    line.Open(true);
    window.Find<TextBox>("txtFind").SetText(what);
  }
  void Tick(const std::string& name) { window.Find<CheckBox>(name).SetValue(true); }
  std::string Said() { return window.Find<Label>("labFound").Caption(); }
  std::pair<std::size_t, std::string> Found() { return {box.SelStart(), box.SelText()}; }

  using Place = std::pair<std::size_t, std::string>;

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  std::unique_ptr<Window> query = desktop.MakeWindow("frmMain");
  test::HeadlessWindow& window = desktop.WindowOf("frmMain");
  EditorBox& box = window.Find<EditorBox>("txtQuery");
  FindLine line{window, box};
};

TEST_F(FindLineTest, EnterFindsTheNextAndShiftEnterThePrevious) {
  box.SetText("a id, b ID");
  Open("id");
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(2, "id"));
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(8, "ID"));
  EXPECT_EQ(Said(), "");
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(2, "id"));
  EXPECT_EQ(Said(), "Went on from the top.");
  window.PressKey(key::enter, shiftState::shift);
  EXPECT_EQ(Found(), Place(8, "ID"));
  EXPECT_EQ(Said(), "Went on from the end.");
  EXPECT_EQ(window.FocusName(), "txtFind") << "the next Enter goes on";
}

TEST_F(FindLineTest, F3GoesOnFromTheText) {
  box.SetText("id id id");
  Open("id");
  box.SetFocus();
  window.PressKey(key::f3);
  EXPECT_EQ(Found(), Place(0, "id"));
  window.PressKey(key::f3);
  EXPECT_EQ(Found(), Place(3, "id"));
  window.PressKey(key::f3, shiftState::shift);
  EXPECT_EQ(Found(), Place(0, "id"));
}

TEST_F(FindLineTest, F3WithNothingToFindOpensTheLine) {
  window.PressKey(key::f3);
  EXPECT_TRUE(window.VisibleInFact("txtFind"));
  EXPECT_EQ(window.FocusName(), "txtFind");
}

TEST_F(FindLineTest, TheSelectionIsWhatIsLookedFor) {
  box.SetText("select id");
  box.Select(7, 2);
  line.Open(false);
  EXPECT_EQ(window.Find<TextBox>("txtFind").Text(), "id");
  EXPECT_FALSE(window.VisibleInFact("txtReplace"));
}

TEST_F(FindLineTest, ASelectionOfLinesIsWhereIsLooked) {
  box.SetText("id\nid\nid\nid");
  Open("id");
  box.SetFocus();
  box.Select(3, 5);
  line.Open(false);
  EXPECT_TRUE(window.Find<CheckBox>("chkFindSelection").Value());
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(3, "id")) << "from the end of the selection round to its beginning";
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(6, "id"));
  window.PressKey(key::enter);
  EXPECT_EQ(Found(), Place(3, "id"));
}

TEST_F(FindLineTest, WordsCaseAndExpressionsAreChoices) {
  box.SetText("idx ID id i.d");
  Open("id");
  Tick("chkFindWords");
  window.Click("cmdFindNext");
  EXPECT_EQ(Found(), Place(4, "ID"));
  Tick("chkFindCase");
  window.Click("cmdFindNext");
  EXPECT_EQ(Found(), Place(7, "id"));
  Tick("chkFindRegex");
  window.Find<TextBox>("txtFind").SetText("i.d");
  window.Click("cmdFindNext");
  EXPECT_EQ(Found(), Place(10, "i.d"));
}

TEST_F(FindLineTest, WhatIsNotThereIsSaid) {
  box.SetText("select 1");
  box.Select(3, 2);
  Open("nothing");
  window.PressKey(key::enter);
  EXPECT_EQ(Said(), "Not found.");
  EXPECT_EQ(Found(), Place(3, "ec")) << "the selection stays";
}

TEST_F(FindLineTest, AWrongExpressionIsSaid) {
  box.SetText("select 1");
  Open("(");
  Tick("chkFindRegex");
  window.PressKey(key::enter);
  EXPECT_EQ(Said(), "There is a ( without its ).");
}

TEST_F(FindLineTest, EscClosesTheLineAndLeadsBack) {
  Open("x");
  window.PressKey(key::escape);
  EXPECT_FALSE(window.VisibleInFact("fraFind"));
  EXPECT_EQ(window.FocusName(), "txtQuery");
}

TEST_F(FindLineTest, OneIsReplacedAfterTheOther) {
  box.SetText("a1 a2 a3");
  Open("a(\\d)");
  Tick("chkFindRegex");
  window.Find<TextBox>("txtReplace").SetText("<$1>");
  window.Click("cmdReplace");
  EXPECT_EQ(box.Text(), "a1 a2 a3") << "first it is shown";
  EXPECT_EQ(Found(), Place(0, "a1"));
  window.Click("cmdReplace");
  EXPECT_EQ(box.Text(), "<1> a2 a3");
  EXPECT_EQ(Found(), Place(4, "a2"));
  window.Click("cmdReplace");
  window.Click("cmdReplace");
  EXPECT_EQ(box.Text(), "<1> <2> <3>");
  EXPECT_EQ(Said(), "Not found.");
}

TEST_F(FindLineTest, AllAreReplacedAsOneChange) {
  box.SetText("id, id, ID");
  Open("id");
  window.Find<TextBox>("txtReplace").SetText("key");
  window.Click("cmdReplaceAll");
  EXPECT_EQ(box.Text(), "key, key, key");
  EXPECT_EQ(Said(), "3 replaced.");
  box.Undo();
  EXPECT_EQ(box.Text(), "id, id, ID");
}

TEST_F(FindLineTest, OnlyTheSelectionIsReplacedAndItGrowsAlong) {
  box.SetText("a a a a");
  box.Select(2, 3);
  line.Open(true);
  Tick("chkFindSelection");
  window.Find<TextBox>("txtFind").SetText("a");
  window.Find<TextBox>("txtReplace").SetText("bbb");
  window.Click("cmdReplaceAll");
  EXPECT_EQ(box.Text(), "a bbb bbb a");
  window.Find<TextBox>("txtFind").SetText("b");
  window.Find<TextBox>("txtReplace").SetText("");
  window.Click("cmdReplaceAll");
  EXPECT_EQ(box.Text(), "a   a");
}

TEST_F(FindLineTest, NothingSelectedIsNoPartToSearchIn) {
  box.SetText("a");
  Open("a");
  window.Click("chkFindSelection");
  EXPECT_FALSE(window.Find<CheckBox>("chkFindSelection").Value());
  EXPECT_EQ(Said(), "Select the text to search in first.");
}

TEST_F(FindLineTest, TypingEndsTheSearchInASelection) {
  box.SetText("a a a");
  box.Select(0, 3);
  line.Open(false);
  Tick("chkFindSelection");
  box.SetFocus();
  box.Select(5, 0);
  window.Type("txtQuery", "x");
  EXPECT_FALSE(window.Find<CheckBox>("chkFindSelection").Value());
}

/// Much text takes many slices, and between them the program works on.
class LongFindTest : public FindLineTest {
 protected:
  LongFindTest() {
    std::string text;
    while (text.size() < 2'000'000) text += "select ssss from ssss where ssss = ssss;\n";
    box.SetText(text + "needle");
    Open("(s|e)*needle");
    Tick("chkFindRegex");
    window.PressKey(key::enter);
  }
};

TEST_F(LongFindTest, ASearchGoesOnInSlices) {
  ASSERT_TRUE(line.Searching());
  EXPECT_TRUE(Said().starts_with("Searching... ")) << Said();
  for (int i = 0; i < 10'000 && line.Searching(); ++i) desktop.AdvanceTime(1);
  EXPECT_FALSE(line.Searching());
  EXPECT_EQ(box.SelText(), "needle");
}

TEST_F(LongFindTest, EscStopsIt) {
  ASSERT_TRUE(line.Searching());
  window.PressKey(key::escape);
  EXPECT_FALSE(line.Searching());
  EXPECT_EQ(Said(), "Stopped.");
  EXPECT_TRUE(window.VisibleInFact("fraFind")) << "the next Esc closes the line";
  desktop.AdvanceTime(1000);
  EXPECT_EQ(Said(), "Stopped.");
}

TEST_F(LongFindTest, AChangeOfTheTextStopsIt) {
  ASSERT_TRUE(line.Searching());
  box.SetSelText("x");
  EXPECT_FALSE(line.Searching());
}

class TextWindowTarget : public SqlTarget {
 public:
  void InsertText(std::string_view /*text*/) override {}
};

class FindInViewerTest : public test::LogicFixture {
 protected:
  TextWindowTarget target;
};

TEST_F(FindInViewerTest, CtrlFOpensTheLineAndEscLeavesItFirst) {
  desktop.OnModal("frmText", [](test::HeadlessWindow& window) {
    window.PressKey('F', shiftState::ctrl);
    EXPECT_EQ(window.FocusName(), "txtFind");
    EXPECT_FALSE(window.VisibleInFact("txtReplace")) << "the text is locked";
    window.Type("txtFind", "two");
    window.PressKey(key::enter);
    EXPECT_EQ(window.Find<EditorBox>("txtText").SelText(), "two");
    window.PressKey(key::escape);
    EXPECT_FALSE(window.VisibleInFact("fraFind"));
    EXPECT_TRUE(window.Loaded());
    window.PressKey(key::escape);
    EXPECT_FALSE(window.Loaded());
  });
  std::string text = "one two";
  ShowText(global, target, text, {});
}

TEST_F(FindInViewerTest, AnEditableTextIsReplacedIn) {
  desktop.OnModal("frmText", [](test::HeadlessWindow& window) {
    window.PressKey('H', shiftState::ctrl);
    window.Type("txtFind", "one");
    window.Type("txtReplace", "1");
    window.Click("cmdReplaceAll");
    window.Click("cmdOK");
  });
  std::string text = "one two one";
  EXPECT_TRUE(ShowText(global, target, text, {0, "", 9600, 6300, true}));
  EXPECT_EQ(text, "1 two 1");
}

TEST_F(FindInViewerTest, ItsZoomIsRemembered) {
  std::string text = "one";
  desktop.OnModal("frmText", [](test::HeadlessWindow& window) {
    window.PressKey(key::equals, shiftState::ctrl);
    window.PressKey(key::equals, shiftState::ctrl | shiftState::shift);
    EXPECT_EQ(window.Find<EditorBox>("txtText").Zoom(), 2);
    window.Unload();
  });
  ShowText(global, target, text, {});
  desktop.OnModal("frmText", [](test::HeadlessWindow& window) {
    EXPECT_EQ(window.Find<EditorBox>("txtText").Zoom(), 2);
    window.PressKey(key::hyphen, shiftState::ctrl);
    EXPECT_EQ(window.Find<EditorBox>("txtText").Zoom(), 1);
    window.PressKey('0', shiftState::ctrl);
    EXPECT_EQ(window.Find<EditorBox>("txtText").Zoom(), 0);
    window.Unload();
  });
  ShowText(global, target, text, {});
}

}  // namespace
}  // namespace tessel
