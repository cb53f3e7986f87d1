#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "contract/data/BulkLoad.h"

namespace tessel::test {

/// Rows that a test makes, one after another. Row number n (from 0) begins at line 2 * n + 10.
class ListFeed final : public RowFeed {
 public:
  /// The row of a number; nothing behind the last one.
  using Maker = std::function<std::optional<std::vector<Value>>(std::int64_t number)>;

  explicit ListFeed(Maker make, std::size_t atOnce = 100)
      : make_(std::move(make)), atOnce_(atOnce) {}
  explicit ListFeed(std::vector<std::vector<Value>> rows)
      : ListFeed([rows = std::move(rows)](std::int64_t number) {
          return number < static_cast<std::int64_t>(rows.size())
                     ? std::optional(rows[static_cast<std::size_t>(number)])
                     : std::nullopt;
        }) {}

  [[nodiscard]] static std::int64_t LineOf(std::int64_t number) { return 2 * number + 10; }

  [[nodiscard]] bool Next(LoadBatch& batch) override {
    held_.clear();
    for (auto row = make_(next_); row && held_.size() < atOnce_; row = make_(next_)) {
      held_.push_back(std::move(*row));
      batch.lines.push_back(LineOf(next_++));
    }
    for (const auto& row : held_)
      for (const Value& value : row) batch.cells.push_back(ToView(value));
    return !held_.empty();
  }

 private:
  Maker make_;
  std::size_t atOnce_;
  std::int64_t next_ = 0;
  std::vector<std::vector<Value>> held_;
};

}  // namespace tessel::test
