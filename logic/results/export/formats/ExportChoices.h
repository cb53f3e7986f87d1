#pragma once

#include <string>
#include <string_view>

#include "contract/sql/SqlDialect.h"

namespace tessel {

enum class ExportFormat { Csv, Tabs, JsonArray, JsonLines, Markdown, Sheets, Sql };

/// Which values stand in quotes in text with delimiters. A null never does.
enum class QuoteRule {
  WhereNeeded,  ///< Those that would be read as something else without.
  Texts,        ///< Texts, moments and binary values, and others where needed.
  All
};

/// The bytes that characters become.
enum class TextCode { Utf8, Utf8WithMark, Utf16, Latin1 };

enum class BinaryForm { Hexadecimal, Base64 };

/// How records are exported, as the user chose. Not every choice has a meaning in every format.
struct ExportChoices {
  ExportFormat format = ExportFormat::Csv;
  char delimiter = ',';
  QuoteRule quotes = QuoteRule::WhereNeeded;
  TextCode code = TextCode::Utf8;
  bool lineEndWithReturn = true;  ///< CR and LF; else LF alone.
  std::string nullText;
  bool header = true;  ///< The names of the columns come first.
  char decimalSign = '.';
  BinaryForm binary = BinaryForm::Hexadecimal;
  SqlDialect database = SqlDialect::Standard;
  std::string table;  ///< As a person writes its name.
  bool createTable = false;
  int rowsPerInsert = 100;  ///< At least 1.

  bool operator==(const ExportChoices&) const = default;
};

/// What can be chosen in a list, in the order of the list.
inline constexpr char exportDelimiters[] = {',', ';', '\t', '|'};
inline constexpr std::string_view exportNullTexts[] = {"", "NULL", "null", "\\N", "-", "N/A"};
inline constexpr SqlDialect exportDatabases[] = {SqlDialect::SQLite, SqlDialect::PostgreSQL,
                                                 SqlDialect::MariaDB, SqlDialect::SqlServer,
                                                 SqlDialect::Standard};

/// The ending of file names of a format, without the dot.
[[nodiscard]] std::string_view EndingOf(ExportFormat format);

}  // namespace tessel
