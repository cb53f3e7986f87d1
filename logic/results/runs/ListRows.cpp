#include "logic/results/runs/ListRows.h"

#include <utility>

namespace tessel {

FieldInfo ListColumn(std::string name, DataType type) {
  FieldInfo field;
  field.name = std::move(name);
  field.type = type;
  return field;
}

Value CountOrNull(std::int64_t count) { return count < 0 ? Value() : Value(count); }

std::string WithStates(std::string lines, const std::vector<StateCount>& states) {
  std::string separator = ": ";
  for (const auto& [state, count] : states) {
    if (count == 0) continue;
    lines += std::exchange(separator, ", ") + std::to_string(count) + " ";
    lines += state;
  }
  return lines;
}

}  // namespace tessel
