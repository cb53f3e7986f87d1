#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// A value for each field, or nothing where nothing is said of it.
using FieldValues = std::vector<std::optional<Value>>;

/// One change of one row, as it goes to the worker.
struct RowChange {
  enum class Kind { Update, Insert, Delete };

  Kind kind = Kind::Update;
  std::string catalog;            ///< In use when the row was read; it must be so again.
  std::vector<FieldInfo> fields;  ///< All of the recordset; there is one base table.
  /// The fields of a whole unique key; empty: none is known, and all original values find the row.
  std::vector<std::size_t> key;
  FieldValues originals;  ///< As they were last read; of an insert none.
  FieldValues changes;    ///< What is to be written; of a delete none.
  /// Tells of each field whether its value is long: such a one is read back only when it changes.
  std::vector<bool> isLong;
};

/// A field's column is one of the base table.
[[nodiscard]] inline bool HasColumn(const FieldInfo& field) { return !field.baseTable.empty(); }

}  // namespace tessel
