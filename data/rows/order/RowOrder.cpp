#include "data/rows/order/RowOrder.h"

#include <algorithm>
#include <utility>

namespace tessel {

void RowOrder::Set(std::vector<std::int64_t> rows, std::int64_t next) {
  rows_ = std::move(rows);
  next_ = next;
  ascending_ = std::ranges::is_sorted(rows_);
  positions_.clear();
}

std::int64_t RowOrder::PositionOf(std::int64_t row) const {
  if (row >= next_) return row - next_ + Ordered();
  if (ascending_) return std::ranges::lower_bound(rows_, row) - rows_.begin();
  if (positions_.empty()) {
    positions_.resize(static_cast<std::size_t>(next_));
    for (std::size_t i = 0; i < rows_.size(); ++i)
      positions_[static_cast<std::size_t>(rows_[i])] = static_cast<std::int64_t>(i);
  }
  return positions_[static_cast<std::size_t>(row)];
}

/// Every one of the `count` rows stands in the list.
void RowOrder::SpellOut(std::int64_t count) {
  while (Ordered() < count) rows_.push_back(next_++);
  positions_.clear();
}

void RowOrder::Append(std::int64_t row, std::int64_t count) {
  if (RowAt(count) == row) return;
  SpellOut(count);
  rows_.push_back(row);
  next_ = row + 1;
}

void RowOrder::Remove(std::int64_t position, std::int64_t count) {
  SpellOut(count);
  rows_.erase(rows_.begin() + position);
}

}  // namespace tessel
