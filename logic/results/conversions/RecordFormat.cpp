#include "logic/results/conversions/RecordFormat.h"

#include <algorithm>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// Whether a word holds neither quotes nor parentheses and begins no comment.
bool IsBareTableName(std::string_view word) {
  return word.find_first_of("[]\"`'()") == std::string_view::npos && !word.starts_with("--") &&
         !word.starts_with("/*");
}

/// The table's name at the start of `text`, with its quotes; empty when there is none, or something
/// else follows it at once.
std::string_view WholeTableName(std::string_view text) {
  const std::size_t length = TableNameLength(text);
  const bool ends = length == text.size() ||
                    std::string_view(";, \t\r\n").find(text[length]) != std::string_view::npos;
  return ends ? text.substr(0, length) : std::string_view();
}

}  // namespace

void AppendRecords(std::string& out, const RecordFormat& format, const RecordBatch& batch) {
  for (std::size_t i = 0; i < batch.Records(); ++i) {
    if (batch.first != 0 || i != 0) out += format.record.separator;
    out += format.record.prefix;
    AppendFormattedValues(out, batch.Record(i), format.field);
    out += format.record.suffix;
  }
}

std::string FormatHeader(const std::vector<FieldInfo>& fields, ColumnRange columns,
                         const PieceFormat& format, const NameQuoting* quoting) {
  std::string header;
  for (int column = columns.first; column <= columns.last; ++column) {
    const std::string& name = fields.at(static_cast<std::size_t>(column)).name;
    if (column != columns.first) header += format.separator;
    header += format.prefix + (quoting != nullptr ? quoting->Name(name) : name) + format.suffix;
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
  const std::string_view rest = TrimSpaces(std::string_view(text).substr(at + from.size()));
  const std::string_view word = rest.substr(0, std::min(rest.find_first_of(";, "), rest.size()));
  const auto start = static_cast<std::size_t>(rest.data() - text.data());
  return std::string(IsBareTableName(word) ? word : WholeTableName(sql.substr(start)));
}

}  // namespace tessel
