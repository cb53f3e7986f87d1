#include "data/rows/order/RowOrder.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr std::int32_t isHidden = -1;

}  // namespace

void RowOrder::Set(std::vector<std::int64_t> rows, std::int64_t next, std::int64_t hidden) {
  rows_ = std::move(rows);
  next_ = next;
  hidden_ = hidden;
  ascending_ = std::ranges::is_sorted(rows_);
  positions_.clear();
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
  return position == isHidden ? std::nullopt : std::optional<std::int64_t>(position);
}

void RowOrder::Invert() const {
  positions_.assign(static_cast<std::size_t>(next_), isHidden);
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
