#include "logic/results/conversions/Conversions.h"

#include <algorithm>
#include <span>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr std::string_view sqlFilter = "SQL Files (*.sql)|*.sql";
constexpr std::string_view csvFilter = "CSV Files (*.csv)|*.csv";
constexpr std::string_view cFilter = "C/C++ Files (*.c,*.cpp)|*.c;*.cpp";

constexpr Conversion conversions[] = {
    {.command = "mnuCvtCSV",
     .helpContext = 8701,
     .filter = csvFilter,
     .separator = ",",
     .recordSuffix = "\r\n",
     .hasHeader = true,
     .headerSeparator = ",",
     .afterHeader = "\r\n"},
    {.command = "mnuCvtQuotedCSV",
     .helpContext = 8701,
     .filter = csvFilter,
     .separator = ",",
     .quote = "\"",
     .recordSuffix = "\r\n",
     .hasHeader = true,
     .headerSeparator = ",",
     .afterHeader = "\r\n"},
    {.command = "mnuCvtTabDelimited",
     .helpContext = 8703,
     .separator = "\t",
     .nullText = "NULL",
     .recordSuffix = "\r\n",
     .hasHeader = true,
     .headerSeparator = "\t",
     .afterHeader = "\r\n"},
    {.command = "mnuCvtInsertSQL",
     .helpContext = 8704,
     .filter = sqlFilter,
     .separator = ", ",
     .quote = "'",
     .nullText = "NULL",
     .hexBinary = true,
     .recordSuffix = ")\r\n",
     .insertsIntoTable = true},
    {.command = "mnuCvtSetSQL",
     .helpContext = 8705,
     .filter = sqlFilter,
     .separator = ", ",
     .quote = "'",
     .nullText = "NULL",
     .hexBinary = true,
     .recordSeparator = ", ",
     .opening = "(",
     .closing = ")",
     .firstColumnOnly = true},
    {.command = "mnuCvtHTMLTable",
     .helpContext = 8706,
     .filter = "HTML Files (*.html,*.htm)|*.html;*.htm",
     .prefix = "<td>",
     .suffix = "</td>",
     .nullText = "<td></td>",
     .escape = "&",
     .recordPrefix = "<tr>",
     .recordSuffix = "</tr>",
     .recordSeparator = "\r\n",
     .opening = "<table border=\"1\">\r\n<tr>",
     .closing = "\r\n</table>\r\n",
     .hasHeader = true,
     .headerPrefix = "<th>",
     .headerSuffix = "</th>",
     .afterHeader = "</tr>\r\n"},
    {.command = "mnuCvtArrayC",
     .helpContext = 8707,
     .filter = cFilter,
     .separator = ", ",
     .quote = "\"",
     .nullText = "NULL",
     .escape = "\\",
     .recordPrefix = "{",
     .recordSuffix = "}",
     .recordSeparator = ",\r\n",
     .opening = "{\r\n",
     .closing = "\r\n}"},
};

/// The C array of one column stands in one line.
constexpr Conversion oneColumnArray{.command = "mnuCvtArrayC",
                                    .helpContext = 8707,
                                    .filter = cFilter,
                                    .quote = "\"",
                                    .nullText = "NULL",
                                    .escape = "\\",
                                    .recordSeparator = ", ",
                                    .opening = "{",
                                    .closing = "}"};

PieceFormat Piece(std::string_view separator, std::string_view prefix, std::string_view suffix) {
  return {std::string(separator), std::string(prefix), std::string(suffix)};
}

RecordFormat FormatOf(const Conversion& conversion) {
  const Conversion& c = conversion;
  return {{Piece(c.separator, c.prefix, c.suffix), std::string(c.quote), std::string(c.nullText),
           std::string(c.escape), c.hexBinary},
          Piece(c.recordSeparator, c.recordPrefix, c.recordSuffix)};
}

}  // namespace

std::vector<std::string> ConversionCommands() {
  std::vector<std::string> commands;
  for (const Conversion& conversion : conversions) commands.emplace_back(conversion.command);
  return commands;
}

const Conversion& ConversionOf(std::string_view command, bool severalColumns) {
  if (command == oneColumnArray.command && !severalColumns) return oneColumnArray;
  const auto* found = std::ranges::find(conversions, command, &Conversion::command);
  if (found == std::end(conversions))
    throw Error(errorNumber::itemNotFound, "Tessel",
                "There is no conversion '" + std::string(command) + "'.");
  return *found;
}

ConversionFrame FrameOf(const Conversion& conversion, const std::vector<FieldInfo>& fields,
                        ColumnRange columns, std::string_view tableName,
                        const NameQuoting& quoting) {
  ConversionFrame frame{std::string(conversion.opening), FormatOf(conversion),
                        std::string(conversion.closing)};
  if (conversion.hasHeader) {
    const PieceFormat names =
        Piece(conversion.headerSeparator, conversion.headerPrefix, conversion.headerSuffix);
    frame.opening += FormatHeader(fields, columns, names);
    frame.opening += conversion.afterHeader;
  }
  if (conversion.insertsIntoTable)
    frame.format.record.prefix = "INSERT INTO " + quoting.Written(tableName) + "(" +
                                 FormatHeader(fields, columns, Piece(", ", "", ""), &quoting) +
                                 ") VALUES(";
  return frame;
}

}  // namespace tessel
