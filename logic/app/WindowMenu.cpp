#include "logic/app/WindowMenu.h"

#include <string>

#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

namespace {

constexpr std::size_t mostListed = 9;

}  // namespace

void ListWindows(Window& owner, const std::vector<Window*>& windows,
                 const std::function<void(std::size_t)>& choose) {
  for (std::size_t i = 0; i < mostListed; ++i) {
    MenuItem& item = owner.Menu("mnuWindowList_" + std::to_string(i));
    item.SetVisible(i < windows.size());
    if (i >= windows.size()) continue;
    item.SetCaption("&" + std::to_string(i + 1) + " " + PlainCaption(windows[i]->Caption()));
    item.SetChecked(windows[i]->Active());
    item.Click = [choose, i] { choose(i); };
  }
}

}  // namespace tessel
