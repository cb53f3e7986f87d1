#pragma once

#include <cstddef>
#include <string>

namespace tessel::bench {

/// What keeping the rows of `orders` in typed arrays takes at the least: one loop over libsqlite3
/// that knows the columns. The floor that the data layer is measured against.
/// Returns the bytes of the arrays, as allocated.
[[nodiscard]] std::size_t ReadOrdersRaw(const std::string& file);

}  // namespace tessel::bench
