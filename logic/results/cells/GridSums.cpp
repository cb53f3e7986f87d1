#include "logic/results/cells/GridSums.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

#include "contract/text/Fnv.h"

namespace tessel {

namespace {

constexpr int betweenSlices = 1;  ///< Milliseconds.
constexpr std::int64_t cellsOfSlice = 20'000;
constexpr std::int64_t mostDistinct = 1'000'000;

/// 1.50 is 1.5, and 5.00 is 5.
void DropEndingZeros(std::string& number) {
  if (number.find('.') == std::string::npos || number.find_first_of("eE") != std::string::npos)
    return;
  number.erase(number.find_last_not_of('0') + 1);
  if (number.ends_with('.')) number.pop_back();
}

bool IsNumber(const ValueView& value) {
  return std::holds_alternative<std::int64_t>(value) ||
         std::holds_alternative<std::uint64_t>(value) || std::holds_alternative<float>(value) ||
         std::holds_alternative<double>(value) || std::holds_alternative<DecimalView>(value);
}

}  // namespace

// --- different values ----------------------------------------------------------------------------

DistinctValues::DistinctValues(std::int64_t most) : limit_(std::min(most, mostDistinct)) {
  prints_.resize(std::bit_ceil(static_cast<std::size_t>(limit_) * 2 + 1));
}

/// Values are told apart by 128 bits made of them; a place that holds none is all zeros.
void DistinctValues::Add(std::string_view value) {
  if (IsFull() && limit_ == mostDistinct) return;
  const Print print{std::hash<std::string_view>()(value), Fnv1a(value) | 1U};
  std::size_t at = print.first & (prints_.size() - 1);
  for (; prints_[at] != Print(); at = (at + 1) & (prints_.size() - 1))
    if (prints_[at] == print) return;
  prints_[at] = print;
  ++count_;
}

// --- the selected cells --------------------------------------------------------------------------

GridSums::GridSums(DataGrid& grid, Timer& timer, std::function<void()> changed)
    : grid_(grid), timer_(timer), changed_(std::move(changed)) {
  timer_.SetInterval(betweenSlices);
  timer_.Tick = [this] { RunSlice(); };
}

/// None when there are fewer than two.
GridSums::Cells GridSums::SelectedCells() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr || (rows->State() & objectState::open) == 0 || !grid_.Visible()) return {};
  Cells cells;
  const GridCells block = grid_.SelCells();
  if (!block.IsEmpty()) {
    cells.firstRow = block.firstRow;
    cells.rowCount = std::min(block.lastRow + 1, rows->RecordCount()) - block.firstRow;
    cells.firstColumn = block.firstColumn;
    cells.columns = block.lastColumn - block.firstColumn + 1;
    return cells;
  }
  cells.rows = grid_.SelBookmarks();
  const bool hasColumns = grid_.SelStartCol() >= 0;
  if (cells.rows.empty() && !hasColumns) return {};
  cells.rowCount = cells.rows.empty() ? rows->RecordCount() : std::ssize(cells.rows);
  cells.firstColumn = hasColumns ? grid_.SelStartCol() : 0;
  cells.columns = hasColumns ? grid_.SelEndCol() - cells.firstColumn + 1 : grid_.ColumnCount();
  return cells;
}

void GridSums::Look() {
  timer_.SetEnabled(false);
  source_.reset();
  cells_ = SelectedCells();
  const std::int64_t count = cells_.rowCount * cells_.columns;
  if (count < 2) return Say("");
  source_ = grid_.DataSource();
  done_ = numbers_ = unsummed_ = nulls_ = 0;
  sum_ = {};
  distinct_ = std::make_unique<DistinctValues>(count);
  values_.resize(static_cast<std::size_t>(cells_.columns));
  timer_.SetEnabled(true);
}

void GridSums::RunSlice() {
  if (source_ == nullptr || (source_->State() & objectState::open) == 0) {
    source_.reset();
    return timer_.SetEnabled(false);
  }
  const std::int64_t rows = std::max<std::int64_t>(cellsOfSlice / cells_.columns, 1);
  const std::int64_t end = std::min(done_ + rows, cells_.rowCount);
  for (; done_ < end; ++done_) AddRow(done_);
  if (done_ < cells_.rowCount) return;
  timer_.SetEnabled(false);
  source_.reset();
  Say(Sentence());
  distinct_.reset();
}

/// A row that has gone meanwhile is passed by.
void GridSums::AddRow(std::int64_t number) {
  std::optional<std::int64_t> position = cells_.firstRow + number;
  if (!cells_.rows.empty())
    position = source_->PositionOf(cells_.rows[static_cast<std::size_t>(number)]);
  if (!position || *position >= source_->RecordCount()) return;
  source_->ReadFieldsAt(*position, static_cast<std::size_t>(cells_.firstColumn), values_);
  for (const ValueView& value : values_) AddValue(value);
}

/// Values of different kinds are different, whatever they read.
void GridSums::AddValue(const ValueView& value) {
  if (IsNull(value)) {
    ++nulls_;
    return;
  }
  if (const auto* binary = std::get_if<BinaryView>(&value)) {
    const auto* bytes = reinterpret_cast<const char*>(binary->bytes.data());
    return distinct_->Add(std::string_view(bytes, binary->bytes.size()));
  }
  written_.clear();
  AppendText(value, written_);
  if (IsNumber(value)) AddNumber(value);
  else written_ += static_cast<char>(value.index());
  distinct_->Add(written_);
}

void GridSums::AddNumber(const ValueView& value) {
  ++numbers_;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) sum_.Add(*whole);
  else if (!sum_.Add(written_)) ++unsummed_;
  DropEndingZeros(written_);
}

void GridSums::Say(std::string text) {
  if (std::exchange(text_, std::move(text)) != text_) changed_();
}

std::string GridSums::Sentence() const {
  std::string text = std::to_string(cells_.rowCount * cells_.columns) + " cells: ";
  if (numbers_ > 0) text += "sum " + (unsummed_ > 0 ? "NaN" : sum_.Text()) + ", ";
  const bool full = distinct_->IsFull() && distinct_->Count() == mostDistinct;
  text += (full ? "more than " : "") + std::to_string(distinct_->Count()) + " distinct";
  return nulls_ == 0 ? text : text + ", " + std::to_string(nulls_) + " NULL";
}

}  // namespace tessel
