#pragma once

#include <functional>
#include <vector>

#include "contract/desktop/Window.h"

namespace tessel {

/// The entries of a window's menus that stand for its keys, so that each key is found in a menu and
/// what it does can be done where the desktop takes it. An entry can be chosen while the control it
/// stands for can be used.
class KeyMenu {
 public:
  /// Does what that key does in the window; false when nothing comes of it.
  using Press = std::function<bool(int keyCode, int shift)>;

  /// The window outlives it.
  KeyMenu(Window& window, Press press);

  /// A menu is about to open: its entries are enabled, and ticked, as their controls are.
  void Refresh();

 private:
  Window& window_;
  std::vector<Control*> controls_;  ///< Of the entries, in their order; null: always usable.
};

}  // namespace tessel
