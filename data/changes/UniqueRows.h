#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// A primary key, or a unique index of columns that are never null: the names of its columns.
using TableKey = std::vector<std::string>;

/// The first field of the one base table that fields come from; null when there is none, when there
/// are several, or when a column of it is among the fields more than once.
[[nodiscard]] const FieldInfo* OneBaseTable(const std::vector<FieldInfo>& fields);

/// The fields that all columns of one of `keys`, those of the one base table, are shown by; none
/// when no key is shown whole. The first such key counts.
[[nodiscard]] std::vector<std::size_t> KeyFields(const std::vector<FieldInfo>& fields,
                                                 const std::vector<TableKey>& keys);

}  // namespace tessel
