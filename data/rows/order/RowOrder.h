#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessel {

/// Instead of the position of a row that is not on show.
inline constexpr std::int32_t hiddenRow = -1;

/// An order that was made with its inverse.
struct ArrangedRows {
  std::vector<std::int64_t> rows;       ///< Those on show.
  std::vector<std::int32_t> positions;  ///< Of each row by its number; empty where `rows` goes up.
  std::int64_t hidden = 0;              ///< How many others there are.
};

/// Which row stands at which position. Without an order of its own every row stands at its own
/// number; rows that came after the order was made stand behind it, by their numbers. An order may
/// leave rows out: they are hidden.
class RowOrder {
 public:
  /// `rows` holds all rows that there are; those to come have numbers from `next` on. Nothing of
  /// all: the order of opening.
  void Set(std::vector<std::int64_t> rows, std::int64_t next);
  /// The same for an order that knows already where each row stands, and what is hidden.
  void Take(ArrangedRows arranged, std::int64_t next);

  /// Of so many rows there are.
  [[nodiscard]] std::int64_t Shown(std::int64_t count) const { return count - hidden_; }
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const {
    return position < Ordered() ? rows_[static_cast<std::size_t>(position)]
                                : position - Ordered() + next_;
  }
  /// Of a row that is there; nothing when it is hidden.
  [[nodiscard]] std::optional<std::int64_t> PositionOf(std::int64_t row) const;

  /// Adds `row`, a number larger than any before, behind the `shown` rows on show.
  void Append(std::int64_t row, std::int64_t shown);
  /// Takes the row at `position` out of the `shown` rows on show.
  void Remove(std::int64_t position, std::int64_t shown);
  /// A row that is hidden goes.
  void RemoveHidden() { --hidden_; }

 private:
  [[nodiscard]] std::int64_t Ordered() const { return static_cast<std::int64_t>(rows_.size()); }
  void SpellOut(std::int64_t shown);
  void Invert() const;

  std::vector<std::int64_t> rows_;
  std::int64_t next_ = 0;  ///< The number of the first row behind `rows_`.
  std::int64_t hidden_ = 0;
  bool ascending_ = true;  ///< `rows_` goes up: positions are looked for in it.
  mutable std::vector<std::int32_t> positions_;  ///< Else the inverse, made when first asked for.
};

}  // namespace tessel
