#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/DataGrid.h"
#include "logic/results/cells/ExactSum.h"

namespace tessel {

/// Different values, each counted once. Up to a million are told apart.
class DistinctValues {
 public:
  /// `most`: so many values will come at most.
  explicit DistinctValues(std::int64_t most);
  void Add(std::string_view value);
  [[nodiscard]] std::int64_t Count() const { return count_; }
  /// Whether there may be more than are counted.
  [[nodiscard]] bool IsFull() const { return count_ >= limit_; }

 private:
  struct Print {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    bool operator==(const Print&) const = default;
  };

  std::vector<Print> prints_;
  std::int64_t limit_;
  std::int64_t count_ = 0;
};

/// What the values of the cells selected in a grid come to: the sum of the numbers, how many values
/// are different, how many are null. They are looked at in slices.
class GridSums {
 public:
  /// All outlive it; `changed` is called when there is another text.
  GridSums(DataGrid& grid, Timer& timer, std::function<void()> changed);

  /// "12 cells: sum 340.5, 9 distinct, 2 NULL"; empty while fewer than two cells are selected, and
  /// until all are looked at.
  [[nodiscard]] const std::string& Text() const { return text_; }
  /// Other cells are selected, or hold other values.
  void Look();

 private:
  /// The cells that are summed up.
  struct Cells {
    std::vector<Bookmark> rows;  ///< Empty: those of the positions.
    std::int64_t firstRow = 0;
    std::int64_t rowCount = 0;
    int firstColumn = 0;
    int columns = 0;
  };

  [[nodiscard]] Cells SelectedCells() const;
  void RunSlice();
  void AddRow(std::int64_t number);
  void AddValue(const ValueView& value);
  void AddNumber(const ValueView& value);
  void Say(std::string text);
  [[nodiscard]] std::string Sentence() const;

  DataGrid& grid_;
  Timer& timer_;
  std::function<void()> changed_;
  std::string text_;

  std::shared_ptr<Recordset> source_;  ///< Null: nothing is under way.
  Cells cells_;
  std::int64_t done_ = 0;
  std::vector<ValueView> values_;
  std::string written_;
  ExactSum sum_;
  std::int64_t numbers_ = 0;
  std::int64_t unsummed_ = 0;  ///< Numbers that are none to be added, such as NaN.
  std::int64_t nulls_ = 0;
  std::unique_ptr<DistinctValues> distinct_;
};

}  // namespace tessel
