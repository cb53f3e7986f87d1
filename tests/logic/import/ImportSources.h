#pragma once

#include <memory>
#include <string>
#include <vector>

#include "logic/import/guessing/ImportFormat.h"

namespace tessel::test {

/// A source that holds `text`.
[[nodiscard]] inline ImportSource SourceOf(std::string text) {
  const auto held = std::make_shared<const std::string>(std::move(text));
  return {"the test", [held] { return std::make_unique<TextReader>(held); }};
}

/// All records, their values joined by "|": null as "NULL", in quotes what stood in quotes. Reads
/// `piece` bytes at once.
[[nodiscard]] inline std::vector<std::string>
RecordsOf(const ImportSource& source, const ImportFormat& format, std::size_t piece = 7) {
  std::vector<std::string> records;
  const auto reader = MakeReader(source, format, {}, piece);
  ImportRecord record;
  while (true) {
    const RecordReader::Step step = reader->Next(record);
    if (step == RecordReader::Step::End) return records;
    if (step == RecordReader::Step::NeedsMore) {
      reader->ReadMore();
      continue;
    }
    std::string& line = records.emplace_back(std::to_string(record.line));
    for (const ImportCell& cell : record.cells) {
      const std::string text(cell.View());
      const bool quoted = cell.form == ImportForm::Quoted;
      line += "|" + (cell.form == ImportForm::Null ? "NULL" : quoted ? "'" + text + "'" : text);
    }
  }
}

}  // namespace tessel::test
