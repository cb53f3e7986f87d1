#pragma once

#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/providers/memory/MemoryServer.h"
#include "logic/results/stream/RecordBatch.h"

namespace tessel::test {

/// Rows of values, and batches that look at them.
struct ExportRows {
  std::vector<FieldInfo> fields;
  std::vector<std::vector<Value>> rows;

  /// The records from `from` up to `to`.
  [[nodiscard]] RecordBatch Batch(std::size_t from, std::size_t to) const {
    RecordBatch batch;
    batch.first = static_cast<std::int64_t>(from);
    batch.columns = fields.size();
    for (std::size_t row = from; row < to; ++row)
      for (const Value& value : rows[row]) batch.values.push_back(ToView(value));
    return batch;
  }
};

/// One column "c" of these values.
[[nodiscard]] inline ExportRows ColumnOf(DataType type, const std::vector<Value>& values) {
  ExportRows column;
  column.fields.push_back(MemoryField("c", type));
  for (const Value& value : values) column.rows.push_back({value});
  return column;
}

[[nodiscard]] inline Value TextValue(std::string text) { return Value(std::move(text)); }
[[nodiscard]] inline Value WholeValue(std::int64_t number) { return Value(number); }

}  // namespace tessel::test
