#pragma once

#include <vector>

#include "contract/desktop/Window.h"

namespace tessel {

/// The controls above the status line of a records window: some on the left, where the form has
/// them, the others at the window's right end. Where there is no room for both, first the list of
/// catalogs becomes narrower, then the right ones go to rows of their own; in a very narrow window
/// all of them are broken into rows. They keep their order and never overlap. Twips.
class TopRow {
 public:
  /// The controls stand as the form has them, and live as long as the window.
  explicit TopRow(Window& window);

  /// Places them in a window that is so wide inside. Tells by how much what stands below them is to
  /// stand lower than with a single row.
  int Place(int width);
  /// Whether one of its boxes or buttons has the keyboard, or the status line below.
  [[nodiscard]] bool HasFocus() const;

 private:
  struct Item {
    Control* control;
    Rect home;      ///< As the form has it.
    bool isSeldom;  ///< It takes room while it shows only.
  };

  [[nodiscard]] static bool TakesRoom(const Item& item);
  [[nodiscard]] int WidthOf(const Item& item) const;
  [[nodiscard]] int WidthAtRight() const;
  void Narrow(int tooMuch);
  int PlaceLeft();
  int PlaceRight(int row);
  void PlaceRightRow(const std::vector<const Item*>& items, int row) const;
  void Put(const Item& item, int left, int row) const;

  std::vector<Item> left_;
  std::vector<Item> right_;
  Control* status_;
  Control* transaction_;
  Control* catalog_;
  int width_ = 0;
  int catalogWidth_ = 0;
};

}  // namespace tessel
