#pragma once

#include <optional>
#include <string>

#include "contract/base/Error.h"

namespace tessel {

/// Where rows were read, which is where a change of them has to go.
struct RowOrigin {
  std::string connectionString;
  std::string catalog;  ///< In use when their command ended; empty: none was.
};

/// Why rows from the catalog `from` cannot be written while the catalog `inUse` is in use; nothing
/// when the two are the same. Either may be empty: no catalog.
[[nodiscard]] std::optional<ErrorInfo> WhyOtherCatalog(const std::string& from,
                                                       const std::string& inUse);
/// Why rows from one origin cannot be written while the other one is open; nothing when they can.
[[nodiscard]] std::optional<ErrorInfo> WhyOtherOrigin(const RowOrigin& from,
                                                      const RowOrigin& inUse);

}  // namespace tessel
