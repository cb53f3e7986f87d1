#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/base/Clock.h"
#include "contract/data/RowArrangement.h"
#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/DataGrid.h"

namespace tessel {

/// What the arranging of rows asks of the window that shows them.
struct ArrangingHost {
  /// Saves a change that waits, as going to another row does. False: it still waits.
  std::function<bool()> saveChange;
  /// How far it is, or why it came to nothing.
  std::function<void(const std::string& text)> tell;
  /// The rows stand in their new order.
  std::function<void()> arranged;
};

/// The order of the rows in a grid and which of them are on show, as the user has it. Arranging is
/// done in slices, between which the window works on; the rows stay as they are until it is over.
class GridArranging {
 public:
  /// All outlive it.
  GridArranging(DataGrid& grid, Timer& timer, const Clock& clock, ArrangingHost host);

  /// Sorts by a column; once more turns the order round, and the third time it is that of opening
  /// again. `further`: beside the columns that are sorted by already.
  void SortBy(int column, bool further);
  /// Back to the order of opening.
  void SortByNothing();
  /// Shows the rows that pass all of them, `pause` milliseconds from now: who types goes on.
  void Filter(std::vector<RowCondition> conditions, int pause);
  /// Begins, ends and forgets what was wanted of other rows.
  void Forget();

  [[nodiscard]] bool Works() const { return work_ != nullptr; }
  /// Lets go of what is under way; false when nothing is, or when it only ends a filter.
  bool Stop();

 private:
  void Arrange(RowArrangement wanted, int pause);
  [[nodiscard]] RowArrangement Wanted() const;
  void RunSlice();
  void TellProgress();
  void Drop();
  [[nodiscard]] bool ShowsAllAgain() const;

  DataGrid& grid_;
  Timer& timer_;
  const Clock& clock_;
  ArrangingHost host_;
  std::unique_ptr<RowWork> work_;
  RowArrangement wanted_;  ///< What the work is to come to.
  bool sorts_ = false;     ///< The order becomes another one, not only what is on show.
  std::int64_t told_ = 0;  ///< When it was last said how far it is.
};

/// "Sorted by City, Id descending."; empty in the order of opening.
[[nodiscard]] std::string SortText(const Recordset& rows);
/// "347 of 3503 record(s)." while rows are hidden, else "3503 record(s).".
[[nodiscard]] std::string CountText(const Recordset& rows);

}  // namespace tessel
