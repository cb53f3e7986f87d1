#include "data/cursor/rows/WrittenRows.h"

#include <algorithm>
#include <utility>

namespace tessel {

WrittenRows::WrittenRows(std::shared_ptr<const ResultRows> result)
    : result_(std::move(result)), count_(result_->Count()), overlay_(result_->Overlay()) {
  fields = result_->fields;
  if (result_->NextNumber() != count_) numbers_ = result_->Numbers();
}

ValueView WrittenRows::At(std::int64_t row, std::size_t field) const {
  const std::int64_t number = NumberOf(row);
  return WrittenCell(result_->store, overlay_, number, field);
}

void WrittenRows::Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const {
  const std::int64_t number = NumberOf(row);
  if (IsAsStored(number)) [[likely]] {
    result_->store.Read(number, first, values);
  } else {
    for (ValueView& value : values) value = WrittenCell(result_->store, overlay_, number, first++);
  }
}

/// Where rows have gaps or were changed, runs are kept short: who jumps about asks for many of
/// them.
RowRun WrittenRows::RunAt(std::int64_t row) const {
  constexpr std::int64_t longest = 64;
  const std::int64_t number = NumberOf(row);
  if (!IsAsStored(number)) return FixedRows::RunAt(row);
  const auto [chunk, place] = result_->store.SpotOf(number);
  const auto behind = static_cast<std::int64_t>(chunk->rows - place);
  if (numbers_.empty() && overlay_.empty())
    return {chunk, row - static_cast<std::int64_t>(place), std::min(row + behind, count_), 0};
  std::int64_t end = row + 1;
  const std::int64_t most = std::min({row + behind, row + longest, count_});
  while (end < most && NumberOf(end) == number + (end - row) && IsAsStored(NumberOf(end))) ++end;
  return {chunk, row, end, place};
}

}  // namespace tessel
