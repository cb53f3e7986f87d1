#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/combined/FixedRows.h"
#include "data/combined/matching/SameValue.h"

namespace tessel {

/// A column of each of two results.
struct ColumnPair {
  std::size_t a = 0;
  std::size_t b = 0;
};

/// A row of each of two results.
struct RowPair {
  std::int64_t a = 0;
  std::int64_t b = 0;
};

/// Compares rows of two results, which outlive it. Many pairs are compared column by column.
class RowSameness {
 public:
  RowSameness(const FixedRows& a, const FixedRows& b, ValueSameness values)
      : a_(a), b_(b), values_(values) {}

  /// Sets those of `differ` to 1 whose pairs differ in one of the columns; leaves the others. It is
  /// quick where pairs that follow each other are of the same chunks.
  void Compare(std::span<const RowPair> pairs, std::span<const ColumnPair> columns,
               std::span<std::uint8_t> differ) const;
  [[nodiscard]] bool Same(RowPair pair, std::span<const ColumnPair> columns) const;
  /// The numbers of those columns in which a pair differs, counted within `columns`.
  [[nodiscard]] std::vector<std::uint32_t> Differing(RowPair pair,
                                                     std::span<const ColumnPair> columns) const;

 private:
  const FixedRows& a_;
  const FixedRows& b_;
  ValueSameness values_;
};

}  // namespace tessel
