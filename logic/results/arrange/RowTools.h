#pragma once

#include <functional>
#include <string>

#include "contract/base/Clock.h"
#include "contract/desktop/Window.h"
#include "logic/results/arrange/GridArranging.h"
#include "logic/results/arrange/GridFilter.h"
#include "logic/results/cells/GridFind.h"
#include "logic/results/cells/GridSums.h"

namespace tessel {

/// What a window does with its rows to find one's way in them: it sorts, finds, filters and sums
/// them up, and makes columns wider. The parts have a file each; this puts them together.
class RowTools {
 public:
  /// What it asks of the window.
  struct Host {
    std::function<bool()> saveChange;  ///< As ArrangingHost has it.
    /// Says on the status line what came of arranging; `isCount` for the number of rows.
    std::function<void(const std::string& text, bool isCount)> tell;
    std::function<void()> rowTextChanged;  ///< RowText has another value.
    std::function<void()> place;           ///< A line came or went: everything is placed anew.
  };

  /// The window has the lines; all outlive this object.
  RowTools(Window& window, const Clock& clock, Host host);

  /// The grid is bound to other rows, or to none.
  void ShowRecordset();
  /// The grid tells that its rows changed, or the current one.
  void NoteRows();
  /// The window's keys that have to do with it; true when it took one.
  bool TakeKey(int keyCode, int shift);

  /// Places the lines from `top` on, as wide as they may be, and tells where the grid begins.
  /// Twips.
  int Place(int left, int top, int width);
  /// What the selected cells come to; empty when there is nothing to tell.
  [[nodiscard]] const std::string& SumText() const { return sums_.Text(); }

 private:
  bool TakeControlShiftKey(int keyCode);
  void Widen(int by);
  void Arranged();

  Host host_;
  DataGrid& grid_;
  PictureBox& fraFindRows_;
  PictureBox& fraFilterRows_;
  GridArranging arranging_;
  GridFilter filter_;
  GridFind find_;
  GridSums sums_;
  std::int64_t rows_ = -1;  ///< On show when it was last told.
  bool changing_ = false;   ///< A change was pending then.
};

}  // namespace tessel
