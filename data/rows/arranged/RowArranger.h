#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "contract/data/RowArrangement.h"
#include "data/rows/RowSource.h"
#include "data/rows/arranged/RowTest.h"
#include "data/rows/order/RowOrder.h"
#include "data/rows/order/RowSorting.h"

namespace tessel {

/// So long may work over rows take before the interface has its turn again.
inline constexpr std::chrono::milliseconds workSlice{8};

/// Finds out which rows are on show and in which order, in slices: first it tests each row, then it
/// makes the keys of those that pass, then it sorts them. The rows stay as they are meanwhile. UI
/// thread.
class RowArranger {
 public:
  /// Both outlive it.
  RowArranger(const RowSource& rows, const RowArrangement& wanted);

  [[nodiscard]] std::int64_t Total() const;
  [[nodiscard]] std::int64_t Done() const { return done_; }
  [[nodiscard]] bool HasEnded() const { return phase_ == Phase::Ended; }
  /// Goes on for a slice of time.
  void Work();
  /// When it has ended.
  [[nodiscard]] ArrangedRows TakeRows() { return std::move(arranged_); }

 private:
  enum class Phase { Test, Keys, Sort, Gather, Release, Ended };

  void Enter(Phase phase);
  void DoSome();
  void TestSome();
  void MakeSomeKeys();
  void GatherSome();
  void ReleaseSome();
  void EndKeysOfField();
  [[nodiscard]] std::int64_t ShownCount() const {
    return static_cast<std::int64_t>(arranged_.rows.size());
  }

  const RowSource& rows_;
  const RowArrangement& wanted_;
  RowTest test_;
  std::optional<TextKeys> texts_;
  Phase phase_ = Phase::Test;
  std::int64_t next_;     ///< The number to be tested next, or the place.
  std::int64_t numbers_;  ///< Rows have numbers below it.
  ArrangedRows arranged_;
  std::vector<KeyColumn> keys_;
  std::optional<RowSorting> sorting_;
  std::vector<std::int64_t> sorted_;
  std::int64_t done_ = 0;
};

}  // namespace tessel
