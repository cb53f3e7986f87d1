#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Help.h"

namespace tessel {

class SqlTarget;

/// What the keys do to the current cell of a grid: F3 shows it, F4 edits it in a window, F2 in its
/// place, Ctrl+A selects its text, Ctrl+0 makes it null.
class CellCommands {
 public:
  /// The current cell, as the user and the database name it.
  struct Cell {
    const FieldInfo* field = nullptr;  ///< Null: there is none.
    std::string name = {};             ///< "Orders.Note, row 3".
  };

  /// All outlive it. `cell` tells of the grid's current cell, `changed` follows when one was given
  /// a text in a window.
  CellCommands(const Global& global, SqlTarget& sqlWindow, DataGrid& grid,
               std::function<Cell()> cell, std::function<void()> changed);

  /// True when the key was one of them.
  bool TakeKey(int keyCode, int shift);

 private:
  bool TakePlainKey(int keyCode);
  void EnterNull();
  void View();
  void ViewText();
  void EditInWindow();
  void EditInWindow(const std::shared_ptr<Recordset>& rows);
  bool ShowCellText(std::string& text, bool editable);
  /// Null on a row that is not there yet.
  [[nodiscard]] ValueView CurrentValue() const;

  const Global& global_;
  Help help_;
  SqlTarget& sqlWindow_;
  DataGrid& grid_;
  std::function<Cell()> cell_;
  std::function<void()> changed_;
};

}  // namespace tessel
