#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"
#include "contract/data/Recordset.h"

namespace tessel {

// What lists of what was run are made of: the run summary, the statements of a text.

/// A column of such a list, to be read only.
[[nodiscard]] FieldInfo ListColumn(std::string name, DataType type);

/// A count as a cell; null where there is none to tell, which is below 0.
[[nodiscard]] Value CountOrNull(std::int64_t count);

/// How many lines of a list are in a state.
struct StateCount {
  std::string_view state;
  std::int64_t count = 0;
};

/// "3 connections: 2 done, 1 failed"; states that no line is in are left out.
[[nodiscard]] std::string WithStates(std::string lines, const std::vector<StateCount>& states);

}  // namespace tessel
