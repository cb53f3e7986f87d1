#pragma once

#include <vector>

#include "contract/data/Recordset.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/mariadb/MariaApi.h"

namespace tessel {

/// The keys of the table that `field` comes from. Raises Error.
[[nodiscard]] std::vector<TableKey> ReadMariaKeys(MariaConnection& connection,
                                                  const FieldInfo& field);

/// Says of each field whether its column can be written, as far as the tables tell it. Raises
/// nothing but what says that the session is lost.
void CompleteMariaFields(MariaConnection& connection, std::vector<FieldInfo>& fields);

}  // namespace tessel
