#include "logic/results/export/formats/RecordWriter.h"

#include <utility>

#include "contract/base/Error.h"

namespace tessel {

std::unique_ptr<RecordWriter> MakeWriter(const ExportChoices& choices,
                                         std::vector<FieldInfo> fields) {
  switch (choices.format) {
    case ExportFormat::Csv:
    case ExportFormat::Tabs: return MakeDelimitedWriter(choices, std::move(fields));
    case ExportFormat::JsonArray:
    case ExportFormat::JsonLines: return MakeJsonWriter(choices, std::move(fields));
    case ExportFormat::Markdown: return MakeMarkdownWriter(choices, std::move(fields));
    case ExportFormat::Sql: return MakeSqlWriter(choices, std::move(fields));
    case ExportFormat::Sheets: break;
  }
  throw Error(errorNumber::notSupported, "Tessel", "Sheets are no text.");
}

std::string_view EndingOf(ExportFormat format) {
  switch (format) {
    case ExportFormat::Csv: return "csv";
    case ExportFormat::Tabs: return "tsv";
    case ExportFormat::JsonArray: return "json";
    case ExportFormat::JsonLines: return "jsonl";
    case ExportFormat::Markdown: return "md";
    case ExportFormat::Sheets: return "xlsx";
    case ExportFormat::Sql: return "sql";
  }
  return "txt";
}

}  // namespace tessel
