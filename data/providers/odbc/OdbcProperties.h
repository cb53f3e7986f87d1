#pragma once

#include "contract/base/Properties.h"
#include "data/providers/odbc/driver/OdbcApi.h"

namespace tessel::odbc {

/// What the driver tells of itself and its database, under readable names.
[[nodiscard]] Properties ReadDriverProperties(const Dbc& dbc);

}  // namespace tessel::odbc
