#pragma once

#include <vector>

#include "platform/Recordset.h"
#include "platform/data/UniqueRows.h"
#include "platform/data/mariadb/MariaApi.h"

namespace tessel {

/// The keys of the table that `field` comes from. Raises Error.
[[nodiscard]] std::vector<TableKey> ReadMariaKeys(MariaConnection& connection,
                                                  const FieldInfo& field);

}  // namespace tessel
