#pragma once

#include <string>

#include "data/providers/SchemaRows.h"
#include "data/providers/WorkContext.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// The query that tells the rows of a schema rowset. Of tables and columns its $1 is a schema, or
/// empty for all but the server's own, and $2 a table, or empty for all.
[[nodiscard]] std::string PostgresSchemaQuery(SchemaRowset kind);

/// Adds the rows of a schema rowset, one query each: databases by name, tables by name, columns by
/// table and place. What belongs to the server itself is told when its schema is asked for. Raises
/// Error.
void ReadPostgresSchema(PqConnection& connection, SchemaRows& rows);

}  // namespace tessel
