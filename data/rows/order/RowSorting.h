#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "data/rows/order/KeyColumn.h"

namespace tessel {

/// Sorts rows by their keys in small steps: short runs first, which are then merged two by two.
/// Rows that are equal keep their order.
class RowSorting {
 public:
  /// Compares two rows whose keys in that column are equal by their whole values.
  using CompareWhole = std::function<int(std::size_t column, std::size_t a, std::size_t b)>;

  /// Each column has the keys of rows 0 to `rows` - 1. All outlive it.
  RowSorting(const std::vector<KeyColumn>& columns, std::size_t rows, CompareWhole whole);

  /// In places that rows are put to, all times together; never 0.
  [[nodiscard]] std::int64_t Total() const { return total_; }
  [[nodiscard]] std::int64_t Done() const { return done_; }
  /// Goes on for a while that nobody notices, not after the end.
  void Step();
  /// The row at a place, when all is done.
  [[nodiscard]] std::size_t RowAt(std::size_t place) const { return items_[place].row; }

 private:
  struct Item {
    std::uint64_t head;
    std::uint32_t rank;
    std::uint32_t row;
  };
  /// Nothing is written into them at first: to fill them takes longer than a step may.
  using Items = std::unique_ptr<Item[]>;

  [[nodiscard]] bool Before(const Item& a, const Item& b) const;
  [[nodiscard]] bool BeforeBehindHead(std::uint32_t a, std::uint32_t b) const;
  [[nodiscard]] int CompareIn(std::size_t column, std::uint32_t a, std::uint32_t b) const;
  [[nodiscard]] Item ItemOf(std::size_t row) const;
  void SortRun();
  void MergeSome();
  void BeginMerge();
  void EndPass();

  const std::vector<KeyColumn>& columns_;
  CompareWhole whole_;
  std::size_t count_;
  Items items_;
  Items merged_;
  std::size_t sorted_ = 0;  ///< Rows in sorted runs.
  std::size_t run_;         ///< How long the runs are that are merged.
  // The runs that are being merged, and where their items go.
  std::size_t left_ = 0;
  std::size_t leftEnd_ = 0;
  std::size_t right_ = 0;
  std::size_t rightEnd_ = 0;
  std::size_t to_ = 0;
  std::int64_t total_ = 1;
  std::int64_t done_ = 0;
};

}  // namespace tessel
