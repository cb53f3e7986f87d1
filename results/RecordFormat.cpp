#include "results/RecordFormat.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace tessel {

namespace {

/// Asked for every cell that is converted: mostly a single character, which needs no call.
inline void AppendSeparator(std::string& out, const std::string& separator) {
  if (separator.size() == 1) out += separator.front();
  else out += separator;
}

}  // namespace

void FormatRecord(std::string& out, const Recordset& rows, ColumnRange columns,
                  const RecordFormat& format) {
  out += format.record.prefix;
  for (int column = columns.first; column <= columns.last; ++column) {
    if (column != columns.first) AppendSeparator(out, format.field.delimiters.separator);
    AppendFormattedValue(out, rows.FieldValue(static_cast<std::size_t>(column)), format.field);
  }
  out += format.record.suffix;
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
