#pragma once

#include <string>
#include <vector>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"

namespace tessel {

/// "row 3 of 347" of the rows in a grid, "new row" on the one that is not there yet; empty when it
/// shows none.
[[nodiscard]] std::string RowText(const DataGrid& grid);

/// The controls above the status line of a records window: some from the left, in groups, the
/// others at the window's right end. What is hidden leaves no hole, except at the end of the left
/// ones, where something comes and goes while the user types. Where there is no room for all, the
/// number of the row goes, the list of catalogs becomes narrower, then the right ones go to rows of
/// their own; in a very narrow window all of them are broken into rows. They keep their order and
/// never overlap. Twips.
class TopRow {
 public:
  /// The controls stand as the form has them, and live as long as the window.
  explicit TopRow(Window& window);

  /// Shows which row is the current one, where there is room. True when the controls have to be
  /// placed anew for it.
  bool ShowRow(const std::string& text);

  /// Places them in a window that is so wide inside. Tells by how much what stands below them is to
  /// stand lower than with a single row.
  int Place(int width);
  /// Whether one of its boxes or buttons has the keyboard, or the status line below.
  [[nodiscard]] bool HasFocus() const;

 private:
  struct Item {
    Control* control;
    Rect home;         ///< As the form has it.
    bool beginsGroup;  ///< It stands a little apart from those before it.
    bool keepsRoom;    ///< It takes room while it is hidden too.
  };

  [[nodiscard]] bool TakesRoom(const Item& item) const;
  [[nodiscard]] int WidthOf(const Item& item) const;
  [[nodiscard]] int WidthAtLeft() const;
  [[nodiscard]] int WidthAtRight() const;
  [[nodiscard]] bool FitsOneRow();
  void Narrow(int tooMuch);
  int PlaceLeft();
  int PlaceRight(int row);
  [[nodiscard]] std::vector<std::vector<const Item*>> RowsAtRight() const;
  void PlaceRightRow(const std::vector<const Item*>& items, int row) const;
  void Put(const Item& item, int left, int row) const;

  std::vector<Item> left_;
  std::vector<Item> right_;
  Control* status_;
  Label* row_;
  Label* transaction_;
  Control* catalog_;
  std::string rowText_;
  bool rowFits_ = true;
  int width_ = 0;
  int catalogWidth_ = 0;
};

}  // namespace tessel
