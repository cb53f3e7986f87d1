#pragma once

#include "data/providers/SchemaRows.h"
#include "data/providers/WorkContext.h"
#include "data/providers/sqlite/SqliteApi.h"

namespace tessel {

/// Fills a schema rowset. The catalogs are the databases of the session: "main", "temp" when used,
/// attached ones. A view that cannot be resolved has no columns; why is reported.
void ReadSqliteSchema(SqliteDatabase& database, SchemaRows& rows, WorkContext& context);

}  // namespace tessel
