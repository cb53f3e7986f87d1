#pragma once

#include <cstdint>
#include <vector>

namespace tessel {

/// Which row stands at which position. Without an order of its own every row stands at its own
/// number; rows that came after the order was made stand behind it.
class RowOrder {
 public:
  /// `rows` holds every row number from 0 to its size - 1 once; empty: the order of opening.
  void Set(std::vector<std::int64_t> rows);

  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const {
    return position < Ordered() ? rows_[static_cast<std::size_t>(position)] : position;
  }
  [[nodiscard]] std::int64_t PositionOf(std::int64_t row) const;

 private:
  [[nodiscard]] std::int64_t Ordered() const { return static_cast<std::int64_t>(rows_.size()); }

  std::vector<std::int64_t> rows_;
  mutable std::vector<std::int64_t> positions_;  ///< The inverse, made when first asked for.
};

}  // namespace tessel
