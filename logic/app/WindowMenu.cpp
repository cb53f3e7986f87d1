#include "logic/app/WindowMenu.h"

#include <algorithm>
#include <memory>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

namespace {

constexpr std::size_t mostListed = 9;

}  // namespace

WindowMenu::WindowMenu(const Global& global, Window& frame, Windows windows)
    : global_(global), frame_(frame), windows_(std::move(windows)) {}

void WindowMenu::Wire(Window& owner) {
  owner.Menu("mnuWindowNext").Click = [this] { Step(true); };
  owner.Menu("mnuWindowPrevious").Click = [this] { Step(false); };
  owner.Menu("mnuWindowClose").Click = [this] { CloseActive(); };
  owner.Menu("mnuWindowMore").Click = [this] { ShowAll(); };
  owner.Menu("mnuHelpWindow").Click = [this] { ShowHelpOnActive(); };
}

void WindowMenu::List(Window& owner) {
  const std::vector<Window*> windows = windows_.all();
  for (std::size_t i = 0; i < mostListed; ++i) {
    MenuItem& item = owner.Menu("mnuWindowList_" + std::to_string(i));
    item.SetVisible(i < windows.size());
    if (i >= windows.size()) continue;
    item.SetCaption("&" + std::to_string(i + 1) + " " + PlainCaption(windows[i]->Caption()));
    item.SetChecked(windows[i]->Active());
    item.Click = [this, i] { windows_.choose(i); };
  }
  owner.Menu("mnuWindowTabs").SetChecked(frame_.Tabbed());
  owner.Menu("mnuWindowMaximize").SetChecked(windows.at(ActiveOne())->Maximized());
  owner.Menu("mnuWindowMore").SetVisible(windows.size() > mostListed);
  owner.Menu("mnuWindowClose").SetEnabled(MayClose());
}

bool WindowMenu::HandleKey(int keyCode, int shift) {
  if ((shift & ~shiftState::shift) != shiftState::ctrl) return false;
  const bool plain = shift == shiftState::ctrl;
  if (keyCode == key::f6 || keyCode == key::tab) Step(plain);
  else if (keyCode == key::f4 && plain) CloseActive();
  else return false;
  return true;
}

/// The query window where none is active.
std::size_t WindowMenu::ActiveOne() const {
  const std::vector<Window*> windows = windows_.all();
  const auto active = std::ranges::find_if(windows, &Window::Active);
  return active == windows.end() ? 0 : static_cast<std::size_t>(active - windows.begin());
}

void WindowMenu::Step(bool forwards) {
  const std::size_t count = windows_.all().size();
  windows_.choose((ActiveOne() + (forwards ? 1 : count - 1)) % count);
}

/// The query window stays.
void WindowMenu::CloseActive() {
  if (MayClose()) windows_.all().at(ActiveOne())->Unload(UnloadReason::ControlBox);
}

void WindowMenu::ShowHelpOnActive() {
  global_.TheDesktop().ShowHelpOn(*windows_.all().at(ActiveOne()));
}

void WindowMenu::ShowAll() {
  const std::unique_ptr<Window> dialog = global_.TheDesktop().MakeWindow("dlgWindows");
  auto& list = dialog->Find<ListBox>("lstWindows");
  for (const Window* window : windows_.all()) list.AddItem(window->Caption());
  list.SetListIndex(static_cast<int>(ActiveOne()));
  bool accepted = false;
  const auto accept = [&] {
    accepted = true;
    dialog->Hide();
  };
  list.DblClick = accept;
  dialog->Find<Button>("cmdOK").Click = accept;
  dialog->Find<Button>("cmdCancel").Click = [&] { dialog->Unload(); };
  list.SetFocus();
  dialog->ShowModal(&frame_);
  if (accepted) windows_.choose(static_cast<std::size_t>(list.ListIndex()));
}

}  // namespace tessel
