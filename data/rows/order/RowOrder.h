#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessel {

/// Which row stands at which position. Without an order of its own every row stands at its own
/// number; rows that came after the order was made stand behind it, by their numbers.
class RowOrder {
 public:
  /// `rows` holds the rows there are; rows to come have numbers from `next` on. Both empty: the
  /// order of opening.
  void Set(std::vector<std::int64_t> rows, std::int64_t next);

  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const {
    return position < Ordered() ? rows_[static_cast<std::size_t>(position)]
                                : position - Ordered() + next_;
  }
  /// Of a row that is there.
  [[nodiscard]] std::int64_t PositionOf(std::int64_t row) const;

  /// Adds `row`, a number larger than any before, behind the `count` rows there are.
  void Append(std::int64_t row, std::int64_t count);
  /// Takes the row at `position` out of the `count` rows there are.
  void Remove(std::int64_t position, std::int64_t count);

 private:
  [[nodiscard]] std::int64_t Ordered() const { return static_cast<std::int64_t>(rows_.size()); }
  void SpellOut(std::int64_t count);

  std::vector<std::int64_t> rows_;
  std::int64_t next_ = 0;  ///< The number of the first row behind `rows_`.
  bool ascending_ = true;  ///< `rows_` goes up: positions are looked for in it.
  mutable std::vector<std::int64_t> positions_;  ///< Else the inverse, made when first asked for.
};

}  // namespace tessel
