#include "results/RecordFormat.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace tessel {

RecordFormatter::RecordFormatter(const RecordFormat& format, ColumnRange columns)
    : format_(format),
      first_(static_cast<std::size_t>(columns.first)),
      values_(static_cast<std::size_t>(std::max(columns.last - columns.first + 1, 0))) {}

void RecordFormatter::FormatRecord(std::string& out, const Recordset& rows) {
  rows.ReadFields(first_, values_);
  out += format_.record.prefix;
  AppendFormattedValues(out, values_, format_.field);
  out += format_.record.suffix;
}

std::string FormatHeader(const std::vector<FieldInfo>& fields, ColumnRange columns,
                         const PieceFormat& format, bool bracketNames) {
  std::string header;
  for (int column = columns.first; column <= columns.last; ++column) {
    const std::string& name = fields.at(static_cast<std::size_t>(column)).name;
    if (column != columns.first) header += format.separator;
    header += format.prefix + (bracketNames ? QuoteIdentifier(name) : name) + format.suffix;
  }
  return header;
}

std::string TableNameIn(std::string_view sql) {
  constexpr std::string_view from = " FROM ";
  std::string text(sql);
  std::ranges::replace_if(
      text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  const std::size_t at = AsciiUpper(text).find(from);
  if (at == std::string::npos) return {};
  std::string name(TrimSpaces(std::string_view(text).substr(at + from.size())));
  for (const char* end : {";", ",", " "}) CutAtFirst(name, end);
  return name;
}

}  // namespace tessel
