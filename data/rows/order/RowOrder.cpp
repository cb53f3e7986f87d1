#include "data/rows/order/RowOrder.h"

#include <algorithm>
#include <utility>

namespace tessel {

void RowOrder::Set(std::vector<std::int64_t> rows, std::int64_t next) {
  ascending_ = std::ranges::is_sorted(rows);
  rows_ = std::move(rows);
  next_ = next;
  hidden_ = 0;
  positions_.clear();
}

void RowOrder::Take(ArrangedRows arranged, std::int64_t next) {
  rows_ = std::move(arranged.rows);
  next_ = next;
  hidden_ = arranged.hidden;
  positions_ = std::move(arranged.positions);
  ascending_ = positions_.empty();
}

std::optional<std::int64_t> RowOrder::PositionOf(std::int64_t row) const {
  if (row >= next_) return row - next_ + Ordered();
  if (ascending_) {
    const auto found = std::ranges::lower_bound(rows_, row);
    if (found == rows_.end() || *found != row) return std::nullopt;
    return found - rows_.begin();
  }
  if (positions_.empty()) Invert();
  const std::int32_t position = positions_[static_cast<std::size_t>(row)];
  return position == hiddenRow ? std::nullopt : std::optional<std::int64_t>(position);
}

void RowOrder::Invert() const {
  positions_.assign(static_cast<std::size_t>(next_), hiddenRow);
  for (std::size_t i = 0; i < rows_.size(); ++i)
    positions_[static_cast<std::size_t>(rows_[i])] = static_cast<std::int32_t>(i);
}

/// Every one of the rows on show stands in the list.
void RowOrder::SpellOut(std::int64_t shown) {
  while (Ordered() < shown) rows_.push_back(next_++);
  positions_.clear();
}

void RowOrder::Append(std::int64_t row, std::int64_t shown) {
  if (RowAt(shown) == row) return;
  SpellOut(shown);
  rows_.push_back(row);
  next_ = row + 1;
}

void RowOrder::Remove(std::int64_t position, std::int64_t shown) {
  SpellOut(shown);
  rows_.erase(rows_.begin() + position);
}

}  // namespace tessel
