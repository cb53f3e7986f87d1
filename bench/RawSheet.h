#pragma once

#include <string>

#include "data/rows/RowStore.h"

namespace tessel::bench {

/// A sheet of all rows by the library alone, in constant memory: numbers as numbers, all else as
/// texts.
void RawSheet(const RowStore& store, const std::string& path);

}  // namespace tessel::bench
