#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "logic/results/export/formats/ExportChoices.h"
#include "logic/results/export/formats/TextSink.h"
#include "logic/results/stream/RecordBatch.h"

namespace tessel {

/// Writes records as text of one format, in UTF-8. It keeps nothing between calls: several threads
/// may write different batches at the same time, and their texts are put one behind the other.
/// What the format has no form for raises Error(application), with the record and the column.
class RecordWriter {
 public:
  RecordWriter() = default;
  RecordWriter(const RecordWriter&) = delete;
  RecordWriter& operator=(const RecordWriter&) = delete;
  virtual ~RecordWriter() = default;

  /// What stands before the first record.
  virtual void Open(TextSink& sink) const = 0;
  virtual void Write(TextSink& sink, const RecordBatch& batch) const = 0;
  /// What stands behind the last one; `records` is how many there were.
  virtual void Close(TextSink& sink, std::int64_t records) const = 0;
};

/// The writer of the format chosen, which is one of text, for columns of these fields.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeWriter(const ExportChoices& choices,
                                                       std::vector<FieldInfo> fields);

// One of each format.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeDelimitedWriter(const ExportChoices& choices,
                                                                std::vector<FieldInfo> fields);
[[nodiscard]] std::unique_ptr<RecordWriter> MakeJsonWriter(const ExportChoices& choices,
                                                           std::vector<FieldInfo> fields);
[[nodiscard]] std::unique_ptr<RecordWriter> MakeMarkdownWriter(const ExportChoices& choices,
                                                               std::vector<FieldInfo> fields);
[[nodiscard]] std::unique_ptr<RecordWriter> MakeSqlWriter(const ExportChoices& choices,
                                                          std::vector<FieldInfo> fields);

}  // namespace tessel
