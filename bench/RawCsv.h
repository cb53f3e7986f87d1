#pragma once

#include <string>

#include "data/rows/RowStore.h"

namespace tessel::bench {

/// What writing the rows as CSV takes at the least: one loop over the cells of the store that looks
/// at each kind once, into a text whose size is known beforehand. The floor that the conversions
/// are measured against.
[[nodiscard]] std::string RawCsv(const RowStore& store, std::size_t bytes);

}  // namespace tessel::bench
