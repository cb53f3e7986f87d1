#pragma once

#include <string_view>
#include <vector>

#include "contract/base/Error.h"
#include "data/providers/odbc/driver/OdbcApi.h"
#include "data/providers/odbc/driver/OdbcProfile.h"

namespace tessel::odbc {

/// The records of a failed call, as the program reports them. `driver` is named as their source.
[[nodiscard]] std::vector<ErrorInfo> ToErrors(const Diagnostics& records, std::string_view driver);

/// Notices and warnings; several that the driver joined are told apart.
[[nodiscard]] std::vector<ErrorInfo> ToNotices(const Diagnostics& records, std::string_view driver,
                                               const DriverProfile& profile);

/// True when a record says that the session is lost, or was never there.
[[nodiscard]] bool SaysSessionIsLost(const Diagnostics& records);

}  // namespace tessel::odbc
