// JSON and XML in the text window.

#include "contract/desktop/controls/EditorBox.h"
#include "logic/text/SqlTarget.h"
#include "logic/text/frmText.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

struct Target : SqlTarget {
  void InsertText(std::string_view text) override { inserted += text; }
  std::string inserted;
};

class StructuredTextTest : public test::LogicFixture {
 protected:
  using Step = std::function<void(HeadlessWindow&)>;

  /// True when the text was confirmed; `text` is then what came back.
  bool ShowIt(const Step& step, bool editable = true) {
    desktop.OnModal("frmText", [&](HeadlessWindow& w) {
      step(w);
      if (w.Loaded() && w.Visible()) w.PressKey(key::escape);
    });
    TextViewOptions options;
    options.editable = editable;
    options.structured = true;
    return ShowText(global, target, text, options);
  }
  [[nodiscard]] static std::string Shown(HeadlessWindow& w) {
    return w.Find<EditorBox>("txtText").Text();
  }

  Target target;
  std::string text = "{\"a\":1.50}";
  const std::string indented = "{\n  \"a\": 1.50\n}";
};

TEST_F(StructuredTextTest, JsonIsShownIndentedAndComesBackAsItWas) {
  EXPECT_TRUE(ShowIt([&](HeadlessWindow& w) {
    EXPECT_EQ(Shown(w), indented);
    EXPECT_EQ(w.Find<EditorBox>("txtText").Syntax(), TextSyntax::Json);
    EXPECT_TRUE(w.Find<CheckBox>("chkIndented").Value());
    EXPECT_EQ(w.Find<Label>("lblStructure").Caption(), "JSON");
    w.Click("cmdOK");
  }));
  EXPECT_EQ(text, "{\"a\":1.50}");
}

TEST_F(StructuredTextTest, WhatTheUserChangesComesBackAsHeSeesIt) {
  EXPECT_TRUE(ShowIt([&](HeadlessWindow& w) {
    w.Find<EditorBox>("txtText").SetText("{\n  \"a\": 2\n}");
    w.Click("cmdOK");
  }));
  EXPECT_EQ(text, "{\n  \"a\": 2\n}");
}

TEST_F(StructuredTextTest, TheUsersChoiceIsKept) {
  ShowIt([&](HeadlessWindow& w) {
    w.PressKey('I', shiftState::ctrl);
    EXPECT_EQ(Shown(w), text);
    w.PressKey('I', shiftState::ctrl);
    EXPECT_EQ(Shown(w), indented);
    w.Click("chkIndented");
  });
  ShowIt([&](HeadlessWindow& w) {
    EXPECT_EQ(Shown(w), text);
    EXPECT_TRUE(w.Find<Control>("chkIndented").Visible());
  });
}

TEST_F(StructuredTextTest, WhatIsSavedAndCopiedIsTheTextAsItWas) {
  ShowIt(
      [&](HeadlessWindow& w) {
        w.Click("cmdCopy");
        w.Click("cmdCopyToSQLWindow");
        desktop.AnswerFile(folder.File("saved.json"));
        w.Click("cmdSave");
      },
      false);
  EXPECT_EQ(desktop.TheClipboard().Text(), text);
  EXPECT_EQ(target.inserted, text);
  EXPECT_EQ(Content("saved.json"), text);
}

TEST_F(StructuredTextTest, ABrokenTextIsShownAsItIsWithThePlace) {
  text = "{\"a\" 1}";
  ShowIt([&](HeadlessWindow& w) {
    EXPECT_EQ(Shown(w), text);
    EXPECT_EQ(w.Find<Label>("lblStructure").Caption(),
              "No JSON at line 1, column 6: a colon is missing");
  });
}

TEST_F(StructuredTextTest, AnyOtherTextHasNoBoxForIt) {
  for (const char* other : {"plain", "", "12", "SELECT 1"}) {
    text = other;
    ShowIt([&](HeadlessWindow& w) {
      EXPECT_EQ(Shown(w), other);
      EXPECT_FALSE(w.Find<Control>("chkIndented").Visible());
      EXPECT_EQ(w.Find<EditorBox>("txtText").Syntax(), TextSyntax::Plain);
      w.PressKey('I', shiftState::ctrl);
      EXPECT_EQ(Shown(w), other);
    });
  }
}

TEST_F(StructuredTextTest, ALongTextIsIndentedWhenAskedForAndInSlices) {
  text = "[" + std::string(3'000'000, ' ') + "1]";
  ShowIt([&](HeadlessWindow& w) {
    EXPECT_EQ(Shown(w), text);
    w.Click("chkIndented");
    EXPECT_EQ(Shown(w), text) << "the window is not held up";
    EXPECT_TRUE(w.Find<EditorBox>("txtText").Locked());
    desktop.AdvanceTime(1);
    EXPECT_EQ(Shown(w), "[\n  1\n]");
    EXPECT_FALSE(w.Find<EditorBox>("txtText").Locked());
    EXPECT_EQ(w.Find<Label>("lblStructure").Caption(), "JSON");
  });
}

TEST_F(StructuredTextTest, EscStopsTheIndentingAndLeavesTheText) {
  text = "[" + std::string(300'000, ' ') + "1]";
  ShowIt([&](HeadlessWindow& w) {
    EXPECT_EQ(Shown(w), text) << "it is shown before it is indented";
    w.PressKey(key::escape);
    EXPECT_TRUE(w.Visible()) << "the window stays";
    desktop.AdvanceTime(100);
    EXPECT_EQ(Shown(w), text);
    EXPECT_FALSE(w.Find<CheckBox>("chkIndented").Value());
    EXPECT_FALSE(w.Find<EditorBox>("txtText").Locked());
    EXPECT_EQ(w.Find<Label>("lblStructure").Caption(), "JSON");
  });
  text = "[1]";
  ShowIt([&](HeadlessWindow& w) { EXPECT_EQ(Shown(w), "[\n  1\n]") << "the next one is"; });
}

TEST_F(StructuredTextTest, ATextThatIsConfirmedMeanwhileIsTheOneItWas) {
  text = "[" + std::string(300'000, ' ') + "1]";
  const std::string before = text;
  EXPECT_TRUE(ShowIt([&](HeadlessWindow& w) { w.Click("cmdOK"); }));
  EXPECT_EQ(text, before);
}

TEST_F(StructuredTextTest, TheFaultOfALongTextIsFoundInItsSlice) {
  text = "<a>" + std::string(300'000, ' ') + "</b>";
  ShowIt([&](HeadlessWindow& w) {
    desktop.AdvanceTime(1);
    EXPECT_EQ(Shown(w), text);
    EXPECT_TRUE(w.Find<Label>("lblStructure").Caption().starts_with("No XML at line 1, column"));
  });
}

}  // namespace
}  // namespace tessel
