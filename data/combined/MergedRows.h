#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "data/combined/FixedRows.h"
#include "data/combined/UnitedColumns.h"

namespace tessel {

/// Rows, and what a person calls the place that they came from.
struct NamedPart {
  std::string name;
  std::shared_ptr<const FixedRows> rows;
};

/// Unites the columns of the parts.
[[nodiscard]] UnitedColumns UniteColumns(const std::vector<NamedPart>& parts);

/// Rows of several parts, each behind leading fields that tell of it. It refers to the parts and
/// copies no value.
class CombinedRows : public FixedRows {
 public:
  [[nodiscard]] ValueView At(std::int64_t row, std::size_t field) const final;
  void Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const final;

 protected:
  /// Where a row stands.
  struct Place {
    std::size_t part = 0;
    std::int64_t row = 0;
  };

  /// `leading` fields stand before those of the parts; all are text.
  CombinedRows(const std::vector<const char*>& leading, std::vector<NamedPart> parts);

  [[nodiscard]] virtual Place PlaceOf(std::int64_t row) const = 0;
  /// A leading cell of a row.
  [[nodiscard]] virtual ValueView LeadAt(std::int64_t row, const Place& place,
                                         std::size_t field) const = 0;
  [[nodiscard]] const std::vector<NamedPart>& Parts() const { return parts_; }

 private:
  [[nodiscard]] ValueView CellAt(std::int64_t row, const Place& place, std::size_t field) const;
  [[nodiscard]] std::size_t ReadNeighbours(const Place& place, std::size_t field,
                                           std::span<ValueView> values) const;

  std::size_t leading_;
  std::vector<NamedPart> parts_;
  std::vector<std::vector<std::size_t>> columns_;  ///< As in UnitedColumns.
};

/// All rows of the parts, one part behind the other, behind a field "Connection".
class MergedRows final : public CombinedRows {
 public:
  explicit MergedRows(std::vector<NamedPart> parts);

  [[nodiscard]] std::int64_t Count() const override { return starts_.back(); }

 private:
  [[nodiscard]] Place PlaceOf(std::int64_t row) const override;
  [[nodiscard]] ValueView LeadAt(std::int64_t row, const Place& place,
                                 std::size_t field) const override;

  std::vector<std::int64_t> starts_;  ///< The first row of each part, and the count of all.
  mutable std::size_t last_ = 0;      ///< Most rows looked at are of the same part again.
};

}  // namespace tessel
