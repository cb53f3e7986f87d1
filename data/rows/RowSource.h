#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "contract/base/Value.h"
#include "contract/data/Recordset.h"

namespace tessel {

/// Rows that cursors move over, each named by a number from 0 that stays its own. UI thread.
class RowSource {
 public:
  RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;

  std::vector<FieldInfo> fields;

  /// Without a new row that is pending.
  [[nodiscard]] virtual std::int64_t Count() const = 0;
  /// Larger than the number of any row.
  [[nodiscard]] virtual std::int64_t NextNumber() const = 0;
  [[nodiscard]] virtual bool Contains(std::int64_t row) const = 0;
  /// The numbers of all rows, going up.
  [[nodiscard]] virtual std::vector<std::int64_t> Numbers() const = 0;
  /// The number of a new row that is pending.
  [[nodiscard]] virtual std::optional<std::int64_t> NewRow() const = 0;

  /// A cell as it is to be seen, with what is pending. Of a row that is there or pending.
  [[nodiscard]] virtual ValueView At(std::int64_t row, std::size_t field) const = 0;
  /// As many cells of a row as `values` has room for, from field `first` on, each as by At.
  virtual void Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const = 0;
};

}  // namespace tessel
