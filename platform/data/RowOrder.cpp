#include "platform/data/RowOrder.h"

#include <utility>

namespace tessel {

void RowOrder::Set(std::vector<std::int64_t> rows) {
  rows_ = std::move(rows);
  positions_.clear();
}

std::int64_t RowOrder::PositionOf(std::int64_t row) const {
  if (row >= Ordered()) return row;
  if (positions_.empty()) {
    positions_.resize(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i)
      positions_[static_cast<std::size_t>(rows_[i])] = static_cast<std::int64_t>(i);
  }
  return positions_[static_cast<std::size_t>(row)];
}

}  // namespace tessel
