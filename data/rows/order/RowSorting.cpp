#include "data/rows/order/RowSorting.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr std::size_t rowsOfRun = 2048;
constexpr std::size_t mergedAtOnce = 16384;

std::int64_t PassesOf(std::size_t rows) {
  std::int64_t passes = 1;
  for (std::size_t run = rowsOfRun; run < rows; run *= 2) ++passes;
  return passes;
}

}  // namespace

RowSorting::RowSorting(const std::vector<KeyColumn>& columns, std::size_t rows, CompareWhole whole)
    : columns_(columns),
      whole_(std::move(whole)),
      count_(rows),
      items_(std::make_unique_for_overwrite<Item[]>(rows)),
      run_(rowsOfRun) {
  total_ = std::max<std::int64_t>(PassesOf(rows) * static_cast<std::int64_t>(rows), 1);
  if (rows == 0) done_ = total_;
}

void RowSorting::Step() {
  if (done_ == total_) return;
  if (sorted_ < count_) SortRun();
  else MergeSome();
}

// --- comparing -----------------------------------------------------------------------------------

/// In a column that goes down all is turned over.
RowSorting::Item RowSorting::ItemOf(std::size_t row) const {
  const KeyColumn::Head head = columns_.front().HeadOf(row);
  const bool down = columns_.front().Descending();
  return {down ? ~head.bytes : head.bytes, down ? ~head.rank : head.rank,
          static_cast<std::uint32_t>(row)};
}

bool RowSorting::Before(const Item& a, const Item& b) const {
  if (a.rank != b.rank) return a.rank < b.rank;
  if (a.head != b.head) return a.head < b.head;
  return BeforeBehindHead(a.row, b.row);
}

bool RowSorting::BeforeBehindHead(std::uint32_t a, std::uint32_t b) const {
  for (std::size_t column = 0; column < columns_.size(); ++column)
    if (const int way = CompareIn(column, a, b))
      return columns_[column].Descending() ? way > 0 : way < 0;
  return a < b;
}

int RowSorting::CompareIn(std::size_t column, std::uint32_t a, std::uint32_t b) const {
  const KeyColumn& keys = columns_[column];
  const int way = column == 0 ? keys.CompareBehindHead(a, b) : keys.Compare(a, b);
  return way == 0 && keys.HasCutKeys() ? whole_(column, a, b) : way;
}

// --- sorting -------------------------------------------------------------------------------------

void RowSorting::SortRun() {
  const std::size_t end = std::min(sorted_ + rowsOfRun, count_);
  for (std::size_t row = sorted_; row < end; ++row) items_[row] = ItemOf(row);
  std::sort(items_.get() + sorted_, items_.get() + end,
            [this](const Item& a, const Item& b) { return Before(a, b); });
  done_ += static_cast<std::int64_t>(end - sorted_);
  sorted_ = end;
  if (sorted_ < count_ || done_ == total_) return;
  merged_ = std::make_unique_for_overwrite<Item[]>(count_);
  BeginMerge();
}

/// Of the two runs behind those that are merged already.
void RowSorting::BeginMerge() {
  left_ = to_;
  leftEnd_ = std::min(left_ + run_, count_);
  right_ = leftEnd_;
  rightEnd_ = std::min(right_ + run_, count_);
}

void RowSorting::MergeSome() {
  const std::size_t before = to_;
  const std::size_t end = std::min({to_ + mergedAtOnce, rightEnd_});
  while (to_ < end) {
    const bool takesLeft =
        right_ == rightEnd_ || (left_ < leftEnd_ && !Before(items_[right_], items_[left_]));
    merged_[to_++] = items_[takesLeft ? left_++ : right_++];
  }
  done_ += static_cast<std::int64_t>(to_ - before);
  if (to_ == count_) EndPass();
  else if (to_ == rightEnd_) BeginMerge();
}

void RowSorting::EndPass() {
  std::swap(items_, merged_);
  run_ *= 2;
  to_ = 0;
  if (done_ < total_) BeginMerge();
  else merged_.reset();
}

}  // namespace tessel
