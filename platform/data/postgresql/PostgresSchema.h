#pragma once

#include "platform/data/Operation.h"
#include "platform/data/SchemaRows.h"
#include "platform/data/postgresql/PqApi.h"

namespace tessel {

/// Adds the rows of a schema rowset, one query each: databases by name, tables by name, columns by
/// table and place. What belongs to the server itself is told when its schema is asked for. Raises
/// Error.
void ReadPostgresSchema(PqConnection& connection, SchemaRows& rows);

}  // namespace tessel
