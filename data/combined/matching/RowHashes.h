#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/combined/FixedRows.h"
#include "data/combined/matching/SameValue.h"

namespace tessel {

/// Puts the hashes of the rows from `first` on, as many as `hashes` has room for, taken over these
/// columns.
void HashRows(const FixedRows& rows, const std::vector<std::size_t>& columns,
              const ValueSameness& sameness, std::int64_t first, std::span<std::uint64_t> hashes);

/// Bytes of texts and the like in the rows from `first` to before `end`, where that is known at
/// once.
[[nodiscard]] std::size_t LongBytes(const FixedRows& rows, std::int64_t first, std::int64_t end);

}  // namespace tessel
