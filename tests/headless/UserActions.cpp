// What a user does to a window of the twin.

#include <utility>

#include "contract/text/Ascii.h"
#include "tests/headless/HeadlessDesktop.h"
#include "tests/headless/HeadlessGrid.h"
#include "tests/headless/HeadlessListView.h"
#include "tests/headless/HeadlessLists.h"
#include "tests/headless/HeadlessText.h"
#include "tests/headless/HeadlessTreeView.h"
#include "tests/headless/HeadlessWindow.h"

namespace tessel::test {

namespace {

/// The keys of a shift state count as held for as long as this lives.
class HeldKeys {
 public:
  HeldKeys(HeadlessDesktop& desktop, int shift) : desktop_(desktop), shift_(shift) {
    ForEachKey([&](int keyCode) { desktop_.HoldKey(keyCode); });
  }
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
  ~HeldKeys() {
    ForEachKey([&](int keyCode) { desktop_.ReleaseKey(keyCode); });
  }

 private:
  template <class Action>
  void ForEachKey(Action action) const {
    if ((shift_ & shiftState::shift) != 0) action(key::shift);
    if ((shift_ & shiftState::ctrl) != 0) action(key::control);
    if ((shift_ & shiftState::alt) != 0) action(key::alt);
  }

  HeadlessDesktop& desktop_;
  int shift_;
};

/// The letter or digit marked with "&" in a caption, in upper case; 0 when none is.
int MnemonicOf(std::string_view caption) {
  for (std::size_t mark = caption.find('&');
       mark != std::string_view::npos && mark + 1 < caption.size();
       mark = caption.find('&', mark + 2))
    if (caption[mark + 1] != '&') return static_cast<unsigned char>(AsciiUpper(caption[mark + 1]));
  return 0;
}

}  // namespace

void HeadlessWindow::Act(const std::function<void()>& action) {
  HeadlessDesktop& desktop = desktop_;
  action();
  desktop.RethrowStop();
}

/// False when the window is disabled; a window that the user cannot get at fails the test.
bool HeadlessWindow::ReachWindow() {
  if (!loaded_ || !VisibleInFact())
    StopTest("The user cannot get at " + form_.name + ": it is not shown.");
  if (const HeadlessWindow* blocker = desktop_.Stack().BlockerOf(*this))
    StopTest("The user cannot get at " + form_.name + " behind " + blocker->FormName() + ".");
  if (!enabled_ || (frame_ != nullptr && !frame_->enabled_)) return false;
  desktop_.Stack().BringToFront(*this, true);
  return true;
}

HeadlessControl& HeadlessWindow::Existing(std::string_view name) const {
  HeadlessControl* control = controls_.Find(name);
  if (control == nullptr)
    StopTest("The form " + form_.name + " has no control '" + std::string(name) + "'.");
  return *control;
}

/// The control that the user acts on; null when it is disabled.
HeadlessControl* HeadlessWindow::Reach(std::string_view name) {
  HeadlessControl& control = Existing(name);
  if (!ReachWindow()) return nullptr;
  if (!control.ShowsInside())
    StopTest("The user cannot get at '" + std::string(name) + "' of " + form_.name +
             ": it is hidden.");
  return control.EnabledInside() ? &control : nullptr;
}

template <class Kind>
void HeadlessWindow::On(std::string_view name, const std::function<void(Kind&)>& action) {
  Act([&] {
    if (dynamic_cast<Kind*>(&Existing(name)) == nullptr)
      StopTest("'" + std::string(name) + "' of " + form_.name + " is of another kind.");
    HeadlessControl* control = Reach(name);
    if (control == nullptr) return;
    const std::weak_ptr<const void> token = Token();
    if (control->TakesFocusByClick()) AskForFocus(*control);
    if (!token.expired()) action(dynamic_cast<Kind&>(*control));
  });
}

void HeadlessWindow::ClickOn(HeadlessControl& control, int shift) {
  const HeldKeys held(desktop_, shift);
  const std::weak_ptr<const void> token = Token();
  const MouseEvent event{MouseButton::Left, shift, 0, 0};
  control.RaiseMouseDown(event);
  if (token.expired()) return;
  control.RaiseMouseUp(event);
  if (!token.expired() && visible_ && control.Usable()) control.Press();
}

void HeadlessWindow::Click(std::string_view name, int shift) {
  On<HeadlessControl>(name, [&](HeadlessControl& control) { ClickOn(control, shift); });
}

void HeadlessWindow::DoubleClick(std::string_view name) {
  On<HeadlessControl>(name, [](HeadlessControl& control) {
    if (dynamic_cast<HeadlessListView*>(&control) == nullptr) control.RaiseDblClick();
  });
}

void HeadlessWindow::Type(std::string_view name, std::string_view text) {
  On<Typist>(name, [&](Typist& typist) {
    AskForFocus(Existing(name));
    typist.TypeText(text);
  });
}

void HeadlessWindow::SelectItem(std::string_view name, int index) {
  On<EntryPicker>(name, [&](EntryPicker& picker) { picker.PickEntry(index); });
}

void HeadlessWindow::SelectRow(std::string_view name, int row) {
  ClickCell(name, row, 0, {MouseButton::Left, shiftState::none, 0, 0});
}

void HeadlessWindow::ClickCell(std::string_view name, int row, int column,
                               const MouseEvent& event) {
  On<HeadlessListView>(name, [&](HeadlessListView& list) {
    const HeldKeys held(desktop_, event.shift);
    const std::weak_ptr<const void> token = Token();
    list.RaiseMouseDown(event);
    if (!token.expired()) list.ClickCell(row, column, event);
    if (!token.expired()) list.RaiseMouseUp(event);
  });
}

void HeadlessWindow::DoubleClickRow(std::string_view name, int row, MouseButton button) {
  const std::weak_ptr<const void> token = Token();
  ClickCell(name, row, 0, {button, shiftState::none, 0, 0});
  if (token.expired() || button != MouseButton::Left) return;
  On<HeadlessListView>(name, [](HeadlessListView& list) { list.RaiseDblClick(); });
}

void HeadlessWindow::ScrollTo(std::string_view name, int row) {
  On<HeadlessListView>(name, [&](HeadlessListView& list) { list.ScrollUntilFirst(row); });
}

void HeadlessWindow::ClickColumn(std::string_view name, int column) {
  On<HeadlessListView>(name, [&](HeadlessListView& list) { list.ClickHeader(column); });
}

void HeadlessWindow::EditLabel(std::string_view name, const std::string& text) {
  On<HeadlessListView>(name, [&](HeadlessListView& list) { list.EndLabelEdit(text); });
}

void HeadlessWindow::CancelLabelEdit(std::string_view name) {
  On<HeadlessListView>(name, [](HeadlessListView& list) { list.CancelLabelEdit(); });
}

void HeadlessWindow::ClickNode(std::string_view name, const std::string& key) {
  On<HeadlessTreeView>(name, [&](HeadlessTreeView& tree) { tree.ClickNode(key); });
}

void HeadlessWindow::CheckNode(std::string_view name, const std::string& key) {
  On<HeadlessTreeView>(name, [&](HeadlessTreeView& tree) { tree.ClickCheck(key); });
}

void HeadlessWindow::ExpandNode(std::string_view name, const std::string& key, bool expanded) {
  On<HeadlessTreeView>(name, [&](HeadlessTreeView& tree) { tree.SetExpanded(key, expanded); });
}

void HeadlessWindow::ClickGridCell(std::string_view name, std::int64_t position, int column) {
  On<HeadlessGrid>(name, [&](HeadlessGrid& grid) { grid.ClickCell(position, column); });
}

void HeadlessWindow::DoubleClickGridCell(std::string_view name, std::int64_t position, int column) {
  On<HeadlessGrid>(name, [&](HeadlessGrid& grid) { grid.DoubleClickCell(position, column); });
}

void HeadlessWindow::ClickGridButton(std::string_view name, std::int64_t position, int column) {
  On<HeadlessGrid>(name, [&](HeadlessGrid& grid) { grid.ClickButton(position, column); });
}

void HeadlessWindow::SelectGridRows(std::string_view name,
                                    const std::vector<std::int64_t>& positions) {
  On<HeadlessGrid>(name, [&](HeadlessGrid& grid) { grid.SelectRows(positions); });
}

void HeadlessWindow::SelectGridColumns(std::string_view name, int first, int last) {
  On<HeadlessGrid>(name, [&](HeadlessGrid& grid) { grid.SelectColumns(first, last); });
}

void HeadlessWindow::GoToNewRow(std::string_view name) {
  On<HeadlessGrid>(name, [](HeadlessGrid& grid) { grid.GoToNewRow(); });
}

void HeadlessWindow::MouseDown(std::string_view name, const MouseEvent& event) {
  On<HeadlessControl>(name, [&](HeadlessControl& control) {
    const HeldKeys held(desktop_, event.shift);
    control.RaiseMouseDown(event);
  });
}

void HeadlessWindow::MouseMove(std::string_view name, const MouseEvent& event) {
  Act([&] {
    if (HeadlessControl* control = Reach(name)) control->RaiseMouseMove(event);
  });
}

void HeadlessWindow::MouseUp(std::string_view name, MouseButton button, int shift) {
  MouseUp(name, {button, shift, 0, 0});
}

void HeadlessWindow::MouseUp(std::string_view name, const MouseEvent& event) {
  Act([&] {
    const HeldKeys held(desktop_, event.shift);
    if (HeadlessControl* control = Reach(name)) control->RaiseMouseUp(event);
  });
}

void HeadlessWindow::ChooseMenu(std::string_view name) {
  Act([&] {
    HeadlessMenuItem* command = controls_.FindMenu(name);
    if (command == nullptr || command->IsTitle() || !command->InMenuBar())
      StopTest("The menus of " + form_.name + " have no command '" + std::string(name) + "'.");
    if (!ReachWindow()) return;
    const std::weak_ptr<const void> token = Token();
    command->OpenTitles(nullptr);
    if (token.expired()) return;
    if (!command->Visible())
      StopTest("The menu command '" + std::string(name) + "' of " + form_.name + " is hidden.");
    if (command->CanBeChosen(nullptr)) command->Choose();
  });
}

void HeadlessWindow::CloseByControlBox() {
  Act([&] {
    if (ReachWindow()) Unload(UnloadReason::ControlBox);
  });
}

void HeadlessWindow::ResizeTo(int width, int height) {
  Act([&] { SetBounds({bounds_.left, bounds_.top, width, height}); });
}

void HeadlessWindow::ResizeControl(std::string_view name, int width, int height) {
  Act([&] {
    Control& control = Existing(name).AsControl();
    const Rect bounds = control.Bounds();
    control.SetBounds({bounds.left, bounds.top, width, height});
  });
}

void HeadlessWindow::Minimize(bool minimized) {
  Act([&] {
    if (std::exchange(minimized_, minimized) != minimized) Resize.Raise(this);
  });
}

void HeadlessWindow::Maximize(bool maximized) {
  Act([&] {
    if (std::exchange(maximized_, maximized) != maximized) Resize.Raise(this);
  });
}

void HeadlessWindow::PressKey(int keyCode, int shift) {
  Act([&] {
    if (frame_ != nullptr || !IsFrame()) {
      if (!ReachWindow()) return;
      return HandleKey(keyCode, shift);
    }
    HeadlessWindow* focused = desktop_.Stack().KeyboardWindow();
    HeadlessWindow* target = focused != nullptr && focused->frame_ == this ? focused : this;
    if (target->ReachWindow()) target->HandleKey(keyCode, shift);
  });
}

void HeadlessWindow::HandleKey(int keyCode, int shift) {
  if (keyCode == key::f10 && shift == shiftState::shift)
    return HandleKey(key::contextMenu, shiftState::none);
  const HeldKeys held(desktop_, shift);
  if (TakeShortcut(keyCode, shift) || TakeMnemonic(keyCode, shift)) return;
  const std::weak_ptr<const void> token = Token();
  KeyEvent event{keyCode, shift, false, CharacterOfKey(keyCode, shift)};
  KeyDown.Raise(this, event);
  const auto stops = [&] { return event.handled || token.expired() || !visible_; };
  if (stops()) return;
  HeadlessControl* focus = desktop_.Stack().Focus();
  if (!Owns(focus)) focus = nullptr;
  if (focus != nullptr) focus->RaiseKeyDown(event);
  if (stops()) return;
  if (focus == nullptr || !focus->TakeKey(keyCode, shift)) TakeDialogKey(keyCode, shift);
  if (!token.expired() && visible_) ReleaseKey(keyCode, shift);
}

void HeadlessWindow::ReleaseKey(int keyCode, int shift) {
  const std::weak_ptr<const void> token = Token();
  KeyEvent event{keyCode, shift, false};
  KeyUp.Raise(this, event);
  HeadlessControl* focus = token.expired() ? nullptr : desktop_.Stack().Focus();
  if (!event.handled && focus != nullptr && Owns(focus)) focus->RaiseKeyUp(event);
}

/// The window whose menus have the keys: inside a frame the active document if it has menus of its
/// own, else the frame.
HeadlessWindow& HeadlessWindow::MenuHolder() {
  HeadlessWindow* document = IsFrame() ? desktop_.Stack().ActiveDocument(*this) : this;
  if (document != nullptr && !document->controls_.Menus().empty()) return *document;
  return frame_ != nullptr ? *frame_ : *this;
}

bool HeadlessWindow::TakeShortcut(int keyCode, int shift) {
  HeadlessMenuItem* command = MenuHolder().controls_.FindShortcut(keyCode, shift);
  if (command == nullptr && frame_ != nullptr) {
    command = frame_->controls_.FindShortcut(keyCode, shift);
    if (command != nullptr && !command->WorksEverywhere()) command = nullptr;
  }
  if (command == nullptr) return false;
  command->Choose();
  return true;
}

bool HeadlessWindow::TakeMnemonic(int keyCode, int shift) {
  if (shift != shiftState::alt) return false;
  HeadlessControl* marked = controls_.FindUsable(
      [&](HeadlessControl& control) { return MnemonicOf(control.MarkedText()) == keyCode; });
  if (marked == nullptr) return false;
  if (HeadlessControl* buddy = controls_.Find(marked->Buddy())) {
    AskForFocus(*buddy);
    return true;
  }
  if (!marked->TakesFocus()) return false;
  const std::weak_ptr<const void> token = Token();
  AskForFocus(*marked);
  if (!token.expired()) marked->Press();
  return true;
}

/// What keys do in a window when nothing in it takes them.
void HeadlessWindow::TakeDialogKey(int keyCode, int shift) {
  const bool plain = shift == shiftState::none;
  if (keyCode == key::tab && (plain || shift == shiftState::shift)) return MoveFocus(plain);
  if (!plain || frame_ != nullptr || IsFrame()) return;
  if (keyCode == key::escape) PressCancel();
  if (keyCode != key::enter) return;
  HeadlessControl* button =
      controls_.FindUsable([](HeadlessControl& control) { return control.IsDefaultButton(); });
  if (button != nullptr) button->Press();
}

/// A dialog without a cancel button is closed as by its control box.
void HeadlessWindow::PressCancel() {
  for (const auto& control : controls_.Controls()) {
    if (!control->IsCancelButton()) continue;
    if (control->Usable()) control->Press();
    return;
  }
  Unload(UnloadReason::ControlBox);
}

void HeadlessWindow::MoveFocus(bool forwards) {
  HeadlessControl* focus = desktop_.Stack().Focus();
  HeadlessControl* next = forwards ? controls_.NextFocus(focus) : controls_.PreviousFocus(focus);
  if (next != nullptr) AskForFocus(*next);
}

}  // namespace tessel::test
