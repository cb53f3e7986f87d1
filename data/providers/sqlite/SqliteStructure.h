#pragma once

#include "data/providers/SchemaRows.h"
#include "data/providers/sqlite/SqliteApi.h"

namespace tessel {

/// Adds the rows of a schema rowset that tells how tables are built: keys, indexes, definitions. A
/// foreign key is named by its number in its table ("foreign key 1"). There are no routines. Raises
/// Error.
void ReadSqliteStructure(SqliteDatabase& database, SchemaRows& rows);

}  // namespace tessel
