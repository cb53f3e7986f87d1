#pragma once

#include "data/providers/SchemaRows.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// Adds the rows of a schema rowset that tells how tables are built: keys, indexes, routines,
/// definitions, one query each. What belongs to the server itself is told when its schema is asked
/// for, and what an extension made is not told. Raises Error.
void ReadPostgresStructure(PqConnection& connection, SchemaRows& rows);

}  // namespace tessel
