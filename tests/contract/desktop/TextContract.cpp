// Text boxes of one line, of several lines, and the large editor.

#include <string>

#include <gtest/gtest.h>

#include "contract/desktop/controls/TextBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

using namespace std::string_literals;

/// One byte, two bytes, four bytes, one byte.
constexpr const char* mixedText = "a\xC3\xA9\xF0\x9F\x98\x80z";

/// A text control in its window, and a count of its Changes.
struct Box {
  ContractHost& host;
  Window& window;
  const std::string name;
  TextControl& control;
  int changes = 0;

  [[nodiscard]] int TakeChanges() { return std::exchange(changes, 0); }
  void Type(std::string_view text) { host.Type(window, name, text); }
};

using BoxBody = void (*)(Box&);

void ForBox(ContractHost& host, const std::string& form, const std::string& name, BoxBody body) {
  SCOPED_TRACE(form + "." + name);
  const auto window = ShowForm(host, form);
  Box box{host, *window, name, window->Find<TextControl>(name)};
  box.control.Change = [&box] { ++box.changes; };
  body(box);
}

/// The rule holds for every kind of text box.
void ForEachBox(ContractHost& host, BoxBody body) {
  ForBox(host, "dlgText", "txtText", body);
  ForBox(host, "dlgConnect", "txtCnStr", body);
  ForBox(host, "frmText", "txtText", body);
}

void ChangeFollowsEveryChange(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("one");
    EXPECT_EQ(box.TakeChanges(), 1);
    box.control.SetText("one");
    EXPECT_EQ(box.TakeChanges(), 0) << "the same text";
    box.control.Select(0, 3);
    EXPECT_EQ(box.TakeChanges(), 0) << "a selection";
    box.control.SetSelText("two");
    EXPECT_EQ(box.TakeChanges(), 1);
    box.control.SetSelText("");
    EXPECT_EQ(box.TakeChanges(), 0) << "nothing to replace";
    box.control.SetText("");
    EXPECT_EQ(box.TakeChanges(), 1);
  });
}

void TypingChangesTheText(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("ab");
    box.control.Select(1, 0);
    box.changes = 0;
    box.Type("xy");
    EXPECT_EQ(box.control.Text(), "axyb");
    EXPECT_EQ(box.TakeChanges(), 2);
    EXPECT_EQ(box.control.SelStart(), 3U);
  });
}

void TypingReplacesTheSelection(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("abcd");
    box.control.Select(1, 2);
    box.Type("x");
    EXPECT_EQ(box.control.Text(), "axd");
    EXPECT_EQ(box.control.SelLength(), 0U);
  });
}

void ANewTextPutsTheCaretToItsStart(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("first");
    box.control.Select(2, 2);
    box.control.SetText("second");
    EXPECT_EQ(box.control.SelStart(), 0U);
    EXPECT_EQ(box.control.SelLength(), 0U);
    box.Type("x");
    EXPECT_EQ(box.control.Text(), "xsecond");
  });
}

void SelectionsCountBytes(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText(mixedText);
    box.control.Select(1, 6);
    EXPECT_EQ(box.control.SelStart(), 1U);
    EXPECT_EQ(box.control.SelLength(), 6U);
    EXPECT_EQ(box.control.SelText(), "\xC3\xA9\xF0\x9F\x98\x80");
    box.control.Select(7, 1);
    EXPECT_EQ(box.control.SelText(), "z");
  });
}

void PositionsInsideACharacterGoBackToItsStart(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText(mixedText);
    box.control.Select(2, 3);
    EXPECT_EQ(box.control.SelStart(), 1U);
    EXPECT_EQ(box.control.SelText(), "\xC3\xA9");
    box.control.Select(5, 0);
    EXPECT_EQ(box.control.SelStart(), 3U);
  });
}

void PositionsBeyondTheEndAreTheEnd(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("abc");
    box.control.Select(100, 5);
    EXPECT_EQ(box.control.SelStart(), 3U);
    EXPECT_EQ(box.control.SelLength(), 0U);
    box.control.Select(1, 100);
    EXPECT_EQ(box.control.SelText(), "bc");
  });
}

void ReplacingPutsTheCaretBehind(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("select 1");
    box.control.Select(7, 1);
    box.control.SetSelText("\xC3\xA9\xC3\xA9");
    EXPECT_EQ(box.control.Text(), "select \xC3\xA9\xC3\xA9");
    EXPECT_EQ(box.control.SelStart(), 11U);
    EXPECT_EQ(box.control.SelLength(), 0U);
    box.control.SetSelText("!");
    EXPECT_EQ(box.control.Text(), "select \xC3\xA9\xC3\xA9!");
  });
}

void ALockedTextIsChangedByCodeOnly(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("old");
    box.control.SetLocked(true);
    EXPECT_TRUE(box.control.Locked());
    box.changes = 0;
    box.Type("x");
    EXPECT_EQ(box.control.Text(), "old");
    box.control.SetText("new");
    EXPECT_EQ(box.control.Text(), "new");
    EXPECT_EQ(box.TakeChanges(), 1);
    box.control.Select(0, 2);
    EXPECT_EQ(box.control.SelText(), "ne");
  });
}

void KeysHeldWithCtrlOrAltTypeNothing(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    constexpr int shifted = shiftState::ctrl | shiftState::shift;
    box.control.SetText("select 1");
    box.control.SetFocus();
    box.control.Select(0, 8);
    box.changes = 0;
    for (int digit = '0'; digit <= '9'; ++digit)
      for (const int held : {shiftState::ctrl, shifted, shiftState::alt})
        box.host.PressKey(box.window, digit, held);
    for (const int keyCode : {key::equals, key::fullStop, key::apostrophe, key::space})
      for (const int held : {shiftState::ctrl, shifted, shiftState::ctrl | shiftState::alt})
        box.host.PressKey(box.window, keyCode, held);
    for (const char letter : {'G', 'J', 'Q'})
      box.host.PressKey(box.window, letter, shiftState::alt);
    EXPECT_EQ(box.control.Text(), "select 1");
    EXPECT_EQ(box.control.SelText(), "select 1");
    EXPECT_EQ(box.TakeChanges(), 0);
  });
}

void BackspaceTakesAWholeCharacter(ContractHost& host) {
  ForEachBox(host, [](Box& box) {
    box.control.SetText("a\xF0\x9F\x98\x80");
    box.control.SetFocus();
    box.control.Select(5, 0);
    box.changes = 0;
    box.host.PressKey(box.window, key::back);
    EXPECT_EQ(box.control.Text(), "a");
    EXPECT_EQ(box.TakeChanges(), 1);
  });
}

void TheEditorKeepsEveryByte(ContractHost& host) {
  ForBox(host, "frmText", "txtText", [](Box& box) {
    const std::string text = "a\0b\r\nc\nd\te\r\n"s;
    box.control.SetText(text);
    EXPECT_EQ(box.control.Text(), text);
    box.control.Select(5, 100);
    EXPECT_EQ(box.control.SelText(), text.substr(5));
    box.control.Select(text.size(), 0);
    box.control.SetSelText("end\n");
    EXPECT_EQ(box.control.Text(), text + "end\n");
  });
}

void TheEditorKeepsItsMargin(ContractHost& host) {
  const auto window = ShowForm(host, "frmText");
  auto& box = window->Find<RichTextBox>("txtText");
  box.SetRightMargin(960000);
  EXPECT_EQ(box.RightMargin(), 960000);
  box.SetRightMargin(0);
  EXPECT_EQ(box.RightMargin(), 0);
}

void TheCaretHasAPlace(ContractHost& host) {
  const auto window = ShowForm(host, "frmText");
  auto& box = window->Find<RichTextBox>("txtText");
  box.SetText("first\nsecond");
  const Rect start = box.CaretBounds();
  box.Select(8, 0);
  const Rect later = box.CaretBounds();
  EXPECT_GT(start.height, 0);
  EXPECT_GT(later.top, start.top);
  EXPECT_GT(later.left, start.left);
}

void LinesAreCounted(ContractHost& host) {
  const auto window = ShowForm(host, "dlgConnect");
  auto& box = window->Find<TextBox>("txtCnStr");
  EXPECT_EQ(box.LineCount(), 1) << "an empty box";
  box.SetText("one\ntwo\nthree");
  EXPECT_EQ(box.LineCount(), 3);
  auto& single = window->Find<TextBox>("txtCaption");
  single.SetText("one");
  EXPECT_EQ(single.LineCount(), 1);
}

void LongLinesCountAsWrapped(ContractHost& host) {
  const auto window = ShowForm(host, "dlgConnect");
  auto& box = window->Find<TextBox>("txtCnStr");
  std::string text;
  for (int i = 0; i < 400; ++i) text += "word ";
  box.SetBounds({0, 0, 3000, 900});
  box.SetText(text);
  EXPECT_GT(box.LineCount(), 3);
}

}  // namespace

std::vector<ContractCase> TextContract() {
  return {{"ChangeFollowsEveryChange", &ChangeFollowsEveryChange},
          {"TypingChangesTheText", &TypingChangesTheText},
          {"TypingReplacesTheSelection", &TypingReplacesTheSelection},
          {"ANewTextPutsTheCaretToItsStart", &ANewTextPutsTheCaretToItsStart},
          {"SelectionsCountBytes", &SelectionsCountBytes},
          {"PositionsInsideACharacterGoBackToItsStart", &PositionsInsideACharacterGoBackToItsStart},
          {"PositionsBeyondTheEndAreTheEnd", &PositionsBeyondTheEndAreTheEnd},
          {"ReplacingPutsTheCaretBehind", &ReplacingPutsTheCaretBehind},
          {"ALockedTextIsChangedByCodeOnly", &ALockedTextIsChangedByCodeOnly},
          {"KeysHeldWithCtrlOrAltTypeNothing", &KeysHeldWithCtrlOrAltTypeNothing},
          {"BackspaceTakesAWholeCharacter", &BackspaceTakesAWholeCharacter},
          {"TheEditorKeepsEveryByte", &TheEditorKeepsEveryByte},
          {"TheEditorKeepsItsMargin", &TheEditorKeepsItsMargin},
          {"TheCaretHasAPlace", &TheCaretHasAPlace},
          {"LinesAreCounted", &LinesAreCounted},
          {"LongLinesCountAsWrapped", &LongLinesCountAsWrapped}};
}

}  // namespace tessel::test
