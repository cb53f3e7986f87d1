#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/results/arrange/GridArranging.h"

namespace tessel {

/// The filter line above the rows of a window: while it is open only rows are on show that match
/// its text. Each result keeps its own.
class GridFilter {
 public:
  /// `window` has the line's controls; all outlive this object.
  GridFilter(Window& window, DataGrid& grid, GridArranging& arranging);

  /// Shows the line and gives it the focus.
  void Open();
  [[nodiscard]] bool IsOpen() const { return fraFilterRows_.Visible(); }
  /// Hides the line; all rows are on show again.
  void Close();
  /// Esc in the line. True when it took the key.
  bool TakeKey(int keyCode, int shift);
  /// The grid is bound to rows; the line shows what they are filtered by, and goes where they are
  /// not.
  void ShowRecordset();
  /// The rows are arranged anew, or changed in number.
  void ShowCount();

  /// Called when the line came or went.
  std::function<void()> moved;

 private:
  struct Kept {
    std::weak_ptr<Recordset> rows;
    int column = 0;  ///< As the list has it: 0 stands for all.
    std::string text;
    bool isRegex = false;
  };

  void Apply(int pause);
  void ListColumns();
  void Remember();
  void ShowLine(bool visible);
  [[nodiscard]] bool HasFocus() const;

  DataGrid& grid_;
  GridArranging& arranging_;
  PictureBox& fraFilterRows_;
  ComboBox& cboFilterColumn_;
  TextBox& txtFilterRows_;
  CheckBox& chkFilterRegex_;
  Button& cmdCloseFilter_;
  Label& labFiltered_;
  std::vector<Kept> kept_;
  bool filling_ = false;  ///< The program fills in the line: nothing is filtered by that.
};

}  // namespace tessel
