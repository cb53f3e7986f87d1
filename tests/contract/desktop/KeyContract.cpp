// Keys, the keyboard focus and the mouse.

#include <gtest/gtest.h>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

std::string Describe(const std::string& who, const KeyEvent& event) {
  return who + " " + std::to_string(event.keyCode) + " " + std::to_string(event.shift);
}

/// A small dialog with the focus in its text box, all keys noted.
struct KeyFixture {
  explicit KeyFixture(ContractHost& contractHost)
      : host(contractHost),
        window(ShowForm(host, "dlgText")),
        box(window->Find<TextBox>("txtText")) {
    window->KeyDown = [this](KeyEvent& event) { Note("window", event, windowTakes); };
    box.KeyDown = [this](KeyEvent& event) { Note("box", event, boxTakes); };
    box.SetFocus();
    host.Settle();
  }

  void Note(const std::string& who, KeyEvent& event, bool takes) {
    record.Add(Describe(who, event));
    event.handled = takes;
  }

  ContractHost& host;
  std::unique_ptr<Window> window;
  TextBox& box;
  bool windowTakes = false;
  bool boxTakes = false;
  Record record;
};

void TheWindowSeesKeysFirst(ContractHost& host) {
  KeyFixture test(host);
  host.PressKey(*test.window, key::f2);
  EXPECT_EQ(test.record.Take(), (Seen{"window 113 0", "box 113 0"}));
}

void AKeyTakenByTheWindowGoesNoFurther(ContractHost& host) {
  KeyFixture test(host);
  test.windowTakes = true;
  host.PressKey(*test.window, 'A');
  EXPECT_EQ(test.record.Take(), Seen{"window 65 0"});
  EXPECT_EQ(test.box.Text(), "");
}

void AKeyTakenByTheControlHasNoEffect(ContractHost& host) {
  KeyFixture test(host);
  test.boxTakes = true;
  host.PressKey(*test.window, 'A');
  EXPECT_EQ(test.record.Take(), (Seen{"window 65 0", "box 65 0"}));
  EXPECT_EQ(test.box.Text(), "");
}

void AKeyThatNobodyTakesIsTyped(ContractHost& host) {
  KeyFixture test(host);
  host.PressKey(*test.window, 'A');
  host.PressKey(*test.window, 'B', shiftState::shift);
  host.PressKey(*test.window, key::space);
  EXPECT_EQ(test.box.Text(), "aB ");
  EXPECT_EQ(test.record.Take(), (Seen{"window 65 0", "box 65 0", "window 66 1", "box 66 1",
                                      "window 32 0", "box 32 0"}));
}

void KeysHaveTheirCodes(ContractHost& host) {
  KeyFixture test(host);
  test.windowTakes = true;
  for (const int code :
       {key::back,     key::enter,      key::escape,      key::space, key::pageUp, key::pageDown,
        key::end,      key::home,       key::left,        key::up,    key::right,  key::down,
        key::insert,   key::del,        key::contextMenu, key::f1,    key::f2,     key::f3,
        key::f4,       key::f5,         key::f6,          key::f7,    key::f8,     key::equals,
        key::fullStop, key::apostrophe, int{'0'},         int{'9'},   int{'A'},    int{'Z'}}) {
    host.PressKey(*test.window, code);
    EXPECT_EQ(test.record.Take(), Seen{"window " + std::to_string(code) + " 0"});
  }
}

void KeysTellTheirShiftState(ContractHost& host) {
  KeyFixture test(host);
  test.windowTakes = true;
  for (const int shift :
       {shiftState::shift, shiftState::ctrl, shiftState::alt, shiftState::ctrl | shiftState::shift,
        shiftState::ctrl | shiftState::alt}) {
    for (const int code : {key::f2, key::left, int{'J'}, key::equals}) {
      if (shift == shiftState::shift && code == key::equals) continue;  // Types another character.
      host.PressKey(*test.window, code, shift);
      EXPECT_EQ(test.record.Take(),
                Seen{"window " + std::to_string(code) + " " + std::to_string(shift)});
    }
  }
}

void ShiftF10IsTheContextMenuKey(ContractHost& host) {
  KeyFixture test(host);
  test.windowTakes = true;
  host.PressKey(*test.window, key::f10, shiftState::shift);
  EXPECT_EQ(test.record.Take(), Seen{"window 93 0"});
  host.PressKey(*test.window, key::f10);
  EXPECT_EQ(test.record.Take(), Seen{"window 121 0"});
}

void KeysComeUpAgain(ContractHost& host) {
  KeyFixture test(host);
  test.window->KeyUp = [&](KeyEvent& event) { test.record.Add(Describe("window up", event)); };
  test.box.KeyUp = [&](KeyEvent& event) { test.record.Add(Describe("box up", event)); };
  host.PressKey(*test.window, key::f2);
  EXPECT_EQ(test.record.Take(),
            (Seen{"window 113 0", "box 113 0", "window up 113 0", "box up 113 0"}));
}

void EnterPressesTheDefaultButton(ContractHost& host) {
  KeyFixture test(host);
  int clicks = 0;
  test.window->Find<Button>("cmdOK").Click = [&] { ++clicks; };
  host.PressKey(*test.window, key::enter);
  EXPECT_EQ(clicks, 1);
  test.windowTakes = true;
  host.PressKey(*test.window, key::enter);
  EXPECT_EQ(clicks, 1) << "the window took the key";
}

void EscapePressesTheCancelButton(ContractHost& host) {
  KeyFixture test(host);
  int clicks = 0;
  test.window->Find<Button>("cmdCancel").Click = [&] { ++clicks; };
  host.PressKey(*test.window, key::escape);
  EXPECT_EQ(clicks, 1);
  EXPECT_TRUE(test.window->Loaded());
  EXPECT_TRUE(test.window->Visible());
}

void EscapeAloneClosesNothing(ContractHost& host) {
  KeyFixture test(host);
  auto& cancel = test.window->Find<Button>("cmdCancel");
  int clicks = 0;
  cancel.Click = [&] { ++clicks; };
  cancel.SetEnabled(false);
  host.PressKey(*test.window, key::escape);
  EXPECT_EQ(clicks, 0);
  EXPECT_TRUE(test.window->Visible());
}

void TheFocusMovesOnce(ContractHost& host) {
  KeyFixture test(host);
  auto& button = test.window->Find<Button>("cmdOK");
  EXPECT_TRUE(test.box.HasFocus());
  test.box.LostFocus = test.record.Noting("box lost");
  button.GotFocus = test.record.Noting("button got");
  button.SetFocus();
  host.Settle();
  EXPECT_TRUE(button.HasFocus());
  EXPECT_FALSE(test.box.HasFocus());
  EXPECT_EQ(test.record.Take(), (Seen{"box lost", "button got"}));
  button.SetFocus();
  host.Settle();
  EXPECT_EQ(test.record.Take(), Seen{});
}

void HiddenAndDisabledControlsTakeNoFocus(ContractHost& host) {
  KeyFixture test(host);
  auto& button = test.window->Find<Button>("cmdOK");
  button.SetEnabled(false);
  button.SetFocus();
  EXPECT_FALSE(button.HasFocus());
  button.SetEnabled(true);
  button.SetVisible(false);
  button.SetFocus();
  EXPECT_FALSE(button.HasFocus());
  EXPECT_TRUE(test.box.HasFocus());
}

void AClickMovesTheFocus(ContractHost& host) {
  const auto window = ShowForm(host, "dlgConnect");
  window->Find<Control>("txtCaption").SetFocus();
  host.Settle();
  host.Click(*window, "txtUsername");
  EXPECT_TRUE(window->Find<Control>("txtUsername").HasFocus());
}

void TheMouseIsReported(ContractHost& host) {
  const auto window = ShowForm(host, "dlgConnect");
  Record record;
  const auto note = [&](const std::string& what) {
    return [&record, what](const MouseEvent& event) {
      record.Add(what + " " + std::to_string(static_cast<int>(event.button)) + " " +
                 std::to_string(event.shift));
    };
  };
  auto& sample = window->Find<Label>("labColor");
  sample.MouseDown = note("down");
  sample.MouseUp = note("up");
  host.ClickMouse(*window, "labColor", MouseButton::Left, shiftState::none);
  EXPECT_EQ(record.Take(), (Seen{"down 1 0", "up 1 0"}));
  host.ClickMouse(*window, "labColor", MouseButton::Right, shiftState::ctrl);
  EXPECT_EQ(record.Take(), (Seen{"down 2 2", "up 2 2"}));
}

void ADoubleClickIsReported(ContractHost& host) {
  const Framed windows(host, "frmRecords");
  auto& warning = windows.document->Find<Label>("lblWarning");
  int count = 0;
  warning.DblClick = [&] { ++count; };
  warning.SetVisible(true);
  host.Settle();
  host.DoubleClick(*windows.document, "lblWarning");
  EXPECT_EQ(count, 1);
}

}  // namespace

std::vector<ContractCase> KeyContract() {
  return {{"TheWindowSeesKeysFirst", &TheWindowSeesKeysFirst},
          {"AKeyTakenByTheWindowGoesNoFurther", &AKeyTakenByTheWindowGoesNoFurther},
          {"AKeyTakenByTheControlHasNoEffect", &AKeyTakenByTheControlHasNoEffect},
          {"AKeyThatNobodyTakesIsTyped", &AKeyThatNobodyTakesIsTyped},
          {"KeysHaveTheirCodes", &KeysHaveTheirCodes},
          {"KeysTellTheirShiftState", &KeysTellTheirShiftState},
          {"ShiftF10IsTheContextMenuKey", &ShiftF10IsTheContextMenuKey},
          {"KeysComeUpAgain", &KeysComeUpAgain},
          {"EnterPressesTheDefaultButton", &EnterPressesTheDefaultButton},
          {"EscapePressesTheCancelButton", &EscapePressesTheCancelButton},
          {"EscapeAloneClosesNothing", &EscapeAloneClosesNothing},
          {"TheFocusMovesOnce", &TheFocusMovesOnce},
          {"HiddenAndDisabledControlsTakeNoFocus", &HiddenAndDisabledControlsTakeNoFocus},
          {"AClickMovesTheFocus", &AClickMovesTheFocus},
          {"TheMouseIsReported", &TheMouseIsReported},
          {"ADoubleClickIsReported", &ADoubleClickIsReported}};
}

}  // namespace tessel::test
