#pragma once

#include <functional>

#include "contract/desktop/Window.h"

namespace tessel {

/// Does what a key does in a window; false when nothing comes of it.
using KeyPress = std::function<bool(int keyCode, int shift)>;

/// Lets the entries that find, sort and filter rows and widen columns press their keys. For a
/// window that has only these.
void WireArrangingMenu(Window& window, const KeyPress& press);

/// The entries of a window's menus that stand for its keys, so that each key is found in a menu and
/// what it does can be done where the desktop takes it. An entry can be chosen while the control it
/// stands for can be used.
class KeyMenu {
 public:
  /// The window outlives it.
  KeyMenu(Window& window, const KeyPress& press);

  /// A menu is about to open: its entries are enabled, and ticked, as their controls are.
  void Refresh();

 private:
  Window& window_;
};

}  // namespace tessel
