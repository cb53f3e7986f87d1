#pragma once

#include <vector>

#include "contract/data/Recordset.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// Adds base names, types' names and what the catalog knows of the base columns to `fields`, whose
/// columns were `columns`. Raises Error.
void CompletePostgresFields(PqConnection& connection, const std::vector<PqColumn>& columns,
                            std::vector<FieldInfo>& fields);

/// The keys of the table with that number. Raises Error.
[[nodiscard]] std::vector<TableKey> ReadPostgresKeys(PqConnection& connection, Oid table);

}  // namespace tessel
