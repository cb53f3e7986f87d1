#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "contract/data/RowArrangement.h"
#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/results/cells/CellHits.h"

namespace tessel {

/// The find line above the rows of a window: it goes to the cells that hold a text, counts them,
/// and marks them. The rows on show are looked through in slices, from the current one on and
/// round, so the next cell is found before all are counted.
class GridFind {
 public:
  /// `window` has the line's controls; it and the grid outlive this object.
  GridFind(Window& window, DataGrid& grid);

  /// Shows the line and gives it the focus; the text of the current cell is proposed when
  /// `propose`.
  void Open(bool propose);
  [[nodiscard]] bool IsOpen() const { return fraFindRows_.Visible(); }
  void Close();
  void FindNext() { Find(Way::Next); }
  void FindPrevious() { Find(Way::Previous); }
  /// F3 and Shift+F3 while the line is open, Enter in its box, Esc. True when it took the key.
  bool TakeKey(int keyCode, int shift);
  /// Other rows, or in another order, or changed: what was found counts no more.
  void Forget();

  /// Called when the line came or went.
  std::function<void()> moved;

 private:
  enum class Way { Next, Previous };

  void Find(Way way);
  bool Begin();
  void MarkHits();
  void RunSlice();
  void Settle();
  void GoTo(std::size_t cell, bool cameRound);
  void Tell(const std::string& more = {});
  void Stop();
  [[nodiscard]] bool HasFocus() const;
  [[nodiscard]] std::optional<std::size_t> CurrentCell() const;
  [[nodiscard]] std::optional<std::size_t> Target(Way way, bool& cameRound) const;

  DataGrid& grid_;
  Timer& timer_;
  PictureBox& fraFindRows_;
  TextBox& txtFindRows_;
  CheckBox& chkFindRowsCase_;
  CheckBox& chkFindRowsRegex_;
  Button& cmdFindRowsNext_;
  Button& cmdFindRowsPrevious_;
  Button& cmdCloseFindRows_;
  Label& labFoundRows_;

  std::unique_ptr<RowWork> work_;   ///< Looks for them still.
  std::shared_ptr<CellHits> hits_;  ///< Null: nothing was looked for.
  std::optional<Way> waiting_;      ///< Goes to one as soon as it is found.
  std::size_t columns_ = 0;
  std::int64_t from_ = 0;  ///< The row at which the search began.
};

}  // namespace tessel
