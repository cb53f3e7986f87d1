#include "logic/results/stream/RecordBatch.h"

#include <algorithm>
#include <span>
#include <utility>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr std::size_t mostValues = 32768;
constexpr std::size_t mostBytes = std::size_t{1} << 20U;

std::size_t BytesOf(const ValueView& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return text->size();
  if (const auto* binary = std::get_if<BinaryView>(&value)) return binary->bytes.size();
  return 0;
}

}  // namespace

BatchReader::BatchReader(std::shared_ptr<Recordset> rows, std::size_t firstColumn,
                         std::size_t columns, std::vector<Bookmark> chosen)
    : rows_(std::move(rows)),
      kept_(rows_->Clone(LockType::ReadOnly)),
      firstColumn_(firstColumn),
      columns_(columns),
      count_(rows_->RecordCount()) {
  if (chosen.empty()) return;
  const auto count = static_cast<std::int64_t>(chosen.size());
  TakeBy(count, [this, chosen = std::move(chosen)](std::int64_t number) {
    return PositionNow(*rows_, chosen[static_cast<std::size_t>(number)]);
  });
}

BatchReader::~BatchReader() { kept_->Close(); }

void BatchReader::TakeBy(std::int64_t count, std::function<std::int64_t(std::int64_t)> positionOf) {
  count_ = count;
  positionOf_ = std::move(positionOf);
}

void BatchReader::ReadInto(RecordBatch& batch) {
  const std::int64_t position = positionOf_ ? positionOf_(next_) : next_;
  const std::size_t before = batch.values.size();
  batch.values.resize(before + columns_);
  const std::span record(batch.values.data() + before, columns_);
  rows_->ReadFieldsAt(position, firstColumn_, record);
  for (const ValueView& value : record) batch.bytes += BytesOf(value);
  ++next_;
}

std::shared_ptr<RecordBatch> BatchReader::NewBatch() const {
  static_cast<void>(rows_->RecordCount());  // Raises when they were closed.
  auto batch = std::make_shared<RecordBatch>();
  batch->first = next_;
  batch->columns = columns_;
  batch->values.reserve(std::min(mostValues, static_cast<std::size_t>(count_ - next_) * columns_));
  return batch;
}

std::int64_t PositionNow(const Recordset& rows, Bookmark record) {
  const auto position = rows.PositionOf(record);
  if (!position)
    throw Error(errorNumber::noCurrentRecord, "Tessel", "The record is not there any more.");
  return *position;
}

bool IsFull(const RecordBatch& batch) {
  return batch.bytes >= mostBytes || batch.values.size() + batch.columns > mostValues;
}

}  // namespace tessel
