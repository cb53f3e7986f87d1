#pragma once

#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/changes/RowStatement.h"
#include "data/providers/odbc/driver/OdbcApi.h"

namespace tessel::odbc {

/// Finds out what table and columns the fields of a query come from, with a driver that is not
/// known to tell it: of a query that names plain columns of one table by its text and the columns
/// of that table; else as the driver has told it, when it sees through an alias of one of them. The
/// others are left without a table.
void FindBaseColumns(const Dbc& dbc, CancelSwitch& cancel, const WriteDialect& dialect,
                     const std::string& sql, std::vector<FieldInfo>& fields);

}  // namespace tessel::odbc
