#include "data/combined/FixedRows.h"

#include <numeric>

namespace tessel {

std::vector<std::int64_t> FixedRows::Numbers() const {
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(Count()));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

RowRun FixedRows::RunAt(std::int64_t row) const {
  return {.chunk = nullptr, .start = row, .end = row + 1, .first = 0};
}

}  // namespace tessel
