#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "data/combined/FixedRows.h"
#include "data/cursor/rows/ResultRows.h"

namespace tessel {

/// The rows of a result as the database was last seen to hold them at one moment: without what is
/// pending, and without what comes, changes or goes later. It refers to the store and has but the
/// changes made by then for itself; 8 bytes a row when some were deleted or added.
class WrittenRows final : public FixedRows {
 public:
  explicit WrittenRows(std::shared_ptr<const ResultRows> result);

  [[nodiscard]] std::int64_t Count() const override { return count_; }
  [[nodiscard]] ValueView At(std::int64_t row, std::size_t field) const override;
  void Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const override;
  [[nodiscard]] RowRun RunAt(std::int64_t row) const override;

 private:
  /// The number of a row within the result.
  [[nodiscard]] std::int64_t NumberOf(std::int64_t row) const {
    return numbers_.empty() ? row : numbers_[static_cast<std::size_t>(row)];
  }
  [[nodiscard]] bool IsAsStored(std::int64_t number) const {
    return overlay_.empty() || !overlay_.contains(number);
  }

  std::shared_ptr<const ResultRows> result_;
  std::int64_t count_;
  std::vector<std::int64_t> numbers_;  ///< Empty: each row has its own.
  RowOverlay overlay_;
};

}  // namespace tessel
