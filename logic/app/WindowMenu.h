#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "contract/base/Keys.h"
#include "contract/desktop/Window.h"
#include "logic/program/Global.h"

namespace tessel {

/// The program's windows as its Window menus list them, and the ways between them: the next and the
/// previous one, closing the active one, and all of them in a list of their own where there are
/// more than a menu holds.
class WindowMenu {
 public:
  struct Windows {
    /// In the order of the list; the query window first.
    std::function<std::vector<Window*>()> all;
    /// Goes to the one of that index.
    std::function<void(std::size_t)> choose;
  };

  /// `frame` is what the list of all windows stands above.
  WindowMenu(const Global& global, Window& frame, Windows windows);

  /// Makes the entries of that window's Window menu, and its help on the window, do their work.
  void Wire(Window& owner);
  /// That window's menu is about to open: lists the first nine windows each with its digit, the
  /// active one checked; checks what holds of the frame and of the active one.
  void List(Window& owner);
  /// Ctrl+F6 and Ctrl+Tab go to the next window, with Shift to the previous one, and Ctrl+F4 closes
  /// the active one. False for any other key.
  bool HandleKey(int keyCode, int shift);

 private:
  [[nodiscard]] std::size_t ActiveOne() const;
  [[nodiscard]] bool MayClose() const { return ActiveOne() != 0; }
  void Step(bool forwards);
  void CloseActive();
  void ShowHelpOnActive();
  void ShowAll();

  const Global& global_;
  Window& frame_;
  Windows windows_;
};

}  // namespace tessel
