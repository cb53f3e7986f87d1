#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// The columns of several results under one set of names, as DataAccess::MergeRows unites them.
struct UnitedColumns {
  /// The column of a part that does not have it.
  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

  std::vector<FieldInfo> fields;
  /// For each part, which of its columns stands in each field.
  std::vector<std::vector<std::size_t>> columns;
};

/// Unites the fields of the parts. What is said of a field is what holds for all of them; none can
/// be changed.
[[nodiscard]] UnitedColumns UniteColumns(const std::vector<const std::vector<FieldInfo>*>& parts);

/// The most particular type that holds the values of both: a wider number, a longer text. Variant
/// where they are of unlike kinds.
[[nodiscard]] DataType CommonType(DataType a, DataType b);

}  // namespace tessel
