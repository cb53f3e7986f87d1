#pragma once

#include <vector>

#include "data/providers/SchemaRows.h"
#include "data/providers/odbc/driver/OdbcApi.h"
#include "data/providers/odbc/driver/OdbcProfile.h"

namespace tessel::odbc {

/// Adds the rows of a schema rowset: tables sorted by name, columns by table and place. Throws
/// Failure.
void ReadSchemaRows(const Dbc& dbc, const DriverProfile& profile, CancelSwitch& cancel,
                    SchemaRows& rows);

/// The fields that make the whole primary key, or a whole unique index of columns that are never
/// null, of their one base table, each column once; none when they hold no such key. Throws
/// Failure.
[[nodiscard]] std::vector<std::size_t> FindUniqueKey(const Dbc& dbc, const DriverProfile& profile,
                                                     CancelSwitch& cancel,
                                                     const std::vector<FieldInfo>& fields);

/// Says of the fields of one base table which of them cannot be written. Throws Failure.
void FindReadOnlyColumns(const Dbc& dbc, const DriverProfile& profile, CancelSwitch& cancel,
                         std::vector<FieldInfo>& fields);

}  // namespace tessel::odbc
