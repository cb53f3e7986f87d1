#pragma once

#include "data/providers/SchemaRows.h"
#include "data/providers/mariadb/MariaApi.h"

namespace tessel {

/// Adds the rows of a schema rowset, one query each: databases by name, tables by name, columns,
/// keys and indexes by table and place. They are those of the database in use unless another is
/// asked for; when none is in use, those of all but the server's own. Raises Error.
void ReadMariaSchema(MariaConnection& connection, SchemaRows& rows);

}  // namespace tessel
