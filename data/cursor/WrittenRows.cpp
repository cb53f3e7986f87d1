#include "data/cursor/WrittenRows.h"

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

RowRun WrittenRows::RunAt(std::int64_t row) const {
  const std::int64_t number = NumberOf(row);
  if (!IsAsStored(number)) return {};
  const RowStore::Spot spot = result_->store.SpotOf(number);
  RowRun run{spot.chunk, spot.row, 1};
  const auto inChunk = static_cast<std::int64_t>(spot.chunk->rows - spot.row);
  if (numbers_.empty() && overlay_.empty()) {
    run.rows = std::min(inChunk, count_ - row);
  } else {
    while (run.rows < inChunk && row + run.rows < count_ &&
           NumberOf(row + run.rows) == number + run.rows && IsAsStored(number + run.rows))
      ++run.rows;
  }
  return run;
}

}  // namespace tessel
