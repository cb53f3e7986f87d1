#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"
#include "contract/data/RowArrangement.h"

namespace tessel {

/// What kind of value it is, in sorted order.
enum class ValueRank : std::uint8_t { Null, Boolean, Number, Text, Moment, Binary };
[[nodiscard]] ValueRank RankOf(const ValueView& value);

/// Less than, equal to or greater than 0 as `a` stands before, with or behind `b` in sorted order:
/// null, booleans, numbers by value whatever their kind (not-a-number first, decimals exactly),
/// text by code point without regard to ASCII case, moments by their text, bytes. The same
/// everywhere, in every locale.
[[nodiscard]] int CompareValues(const ValueView& a, const ValueView& b);

/// One field to sort by.
using SortField = SortKey;

/// Reads the text of Recordset::SetSort. `find` gives the number of a field by its name. Raises
/// Error(itemNotFound).
[[nodiscard]] std::vector<SortField>
ParseSort(std::string_view text,
          const std::function<std::optional<std::size_t>(std::string_view)>& find);

/// Sorts `rows`, numbers that go up, by the fields of what `at` gives; rows that compare equal keep
/// their order. Takes next to no time when they stand in order already.
void SortRows(std::vector<std::int64_t>& rows, const std::vector<SortField>& fields,
              const std::function<ValueView(std::int64_t, std::size_t)>& at);

}  // namespace tessel
