#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "data/combined/MergedRows.h"

namespace tessel {

/// The rows in which two results differ, behind the fields "State", "Connection" and "Changed".
/// They take 8 bytes each beside the rows that they refer to. The first part is A, the second B.
class DifferingRows final : public CombinedRows {
 public:
  explicit DifferingRows(std::vector<NamedPart> parts);

  [[nodiscard]] std::int64_t Count() const override {
    return static_cast<std::int64_t>(picks_.size());
  }
  /// Whether a cell differs from the one of the other row of its pair.
  [[nodiscard]] bool IsChanged(std::int64_t row, std::size_t field) const;

  // --- while they are found ---------------------------------------------------------------------
  using Row = std::uint32_t;
  void AddOnly(std::size_t part, Row row) { picks_.push_back({row, 0, part}); }
  /// A pair that differs in these columns, of those of both parts that UniteColumns gives, in
  /// order.
  void AddChanged(Row a, Row b, std::vector<std::uint32_t> columns);

 private:
  struct Pick {
    Row row = 0;
    std::uint32_t change : 31 = 0;  ///< In `changes_`; 0: the row is of its part only.
    std::uint32_t part : 1 = 0;
    Pick(Row row_, std::uint32_t change_, std::size_t part_)
        : row(row_), change(change_), part(part_ & 1U) {}
  };
  /// Columns that pairs differ in; many pairs differ in the same.
  struct Change {
    const std::vector<std::uint32_t>* columns = nullptr;
    std::string names;
  };

  [[nodiscard]] const Pick& PickOf(std::int64_t row) const {
    return picks_[static_cast<std::size_t>(row)];
  }
  [[nodiscard]] Place PlaceOf(std::int64_t row) const override;
  [[nodiscard]] ValueView LeadAt(std::int64_t row, const Place& place,
                                 std::size_t field) const override;
  [[nodiscard]] Change ChangeOf(const std::vector<std::uint32_t>& columns) const;

  std::vector<std::string> onlyIn_;
  std::deque<Pick> picks_;  ///< It grows without moving what it has.
  std::deque<Change> changes_{1};
  std::map<std::vector<std::uint32_t>, std::uint32_t>
      numbers_;  ///< Of `changes_`, by their columns.
};

}  // namespace tessel
