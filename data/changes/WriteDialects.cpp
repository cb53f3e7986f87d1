#include "data/changes/WriteDialects.h"

#include <charconv>

namespace tessel {

namespace {

/// INSERT ... RETURNING came with this version of MariaDB.
constexpr int returningMajor = 10;
constexpr int returningMinor = 5;

bool KnowsReturning(std::string_view server, std::string_view version) {
  if (server != "MariaDB") return false;
  const char* end = version.data() + version.size();
  int major = 0;
  int minor = 0;
  const auto [dot, error] = std::from_chars(version.data(), end, major);
  if (error != std::errc() || dot == end) return false;
  std::from_chars(dot + 1, end, minor);
  return major > returningMajor || (major == returningMajor && minor >= returningMinor);
}

}  // namespace

/// A savepoint is a transaction of its own where there is none. With the collation of the column
/// two texts might be the same that are not. A name in quotation marks that is none, because
/// somebody renamed the column, would be taken for a text.
WriteDialect SqliteDialect() {
  return {.quote = '`',
          .namesCatalog = true,
          .sameOrNull = "{column} collate binary is {value}",
          .returnsInserted = true,
          .returnsUpdated = true,
          .lastKey = "select last_insert_rowid()"};
}

/// What is shown as text is compared as such: many types have no "=", or one that does not say that
/// two values are the same. Blanks at the end of a "character" are no part of its text, and an
/// address is shown without what its text says of its net.
WriteDialect PostgresDialect() {
  WriteDialect dialect = {.sameOrNull = "{column} is not distinct from {value}",
                          .returnsInserted = true,
                          .returnsUpdated = true,
                          .begin = "begin"};
  dialect.comparisons.push_back({.typeName = "inet", .pattern = dialect.sameOrNull});
  for (const DataType type :
       {DataType::VarChar, DataType::VarWChar, DataType::LongVarChar, DataType::LongVarWChar})
    dialect.comparisons.push_back(
        {.type = type, .pattern = "{column}::text is not distinct from {value}"});
  return dialect;
}

/// Of a number of single precision a server may show fewer digits than it has.
WriteDialect UnknownDialect(char quote) {
  WriteDialect dialect = {.quote = quote, .sameOrNull = "{column} = {value}", .needsKey = true};
  dialect.comparisons.push_back({.type = DataType::Single, .pattern = {}});
  return dialect;
}

/// With the collation of the column two texts might be the same that are not; old types of texts
/// have no "=". A moment is read in the form that does not depend on the language of the session.
WriteDialect SqlServerDialect() {
  WriteDialect dialect = UnknownDialect('"');
  dialect.namesCatalog = true;
  for (const std::string_view type : {"image", "geography", "geometry", "hierarchyid"})
    dialect.comparisons.push_back({.typeName = type, .pattern = {}});
  for (const std::string_view type : {"datetime", "smalldatetime"})
    dialect.comparisons.push_back(
        {.typeName = type, .pattern = "{column} = convert(datetime, {value}, 121)"});
  for (const DataType type : {DataType::Char, DataType::WChar, DataType::VarChar,
                              DataType::VarWChar, DataType::LongVarChar, DataType::LongVarWChar})
    dialect.comparisons.push_back(
        {.type = type,
         .pattern = "cast({column} as nvarchar(max)) collate Latin1_General_BIN2 = {value}"});
  return dialect;
}

/// Texts are compared byte by byte: with the collation of the column two might be the same that are
/// not. An exact number is compared as one of double precision with anything that is none. Of one
/// of single precision the server shows fewer digits than it has. Places on a map cannot be
/// compared. Tables of some engines know no transactions.
WriteDialect MariaDialect(std::string_view server, std::string_view version) {
  constexpr std::string_view byBytes =
      "cast(convert({column} using utf8mb4) as binary) <=> cast({value} as binary)";
  WriteDialect dialect = {.quote = '`',
                          .namesCatalog = true,
                          .sameOrNull = "{column} <=> {value}",
                          .insertDefaults = "() values ()",
                          .returnsInserted = KnowsReturning(server, version),
                          .lastKey = "select last_insert_id()",
                          .begin = "start transaction",
                          .countsFirst = true,
                          .definesAtOnce = true};
  for (const std::string_view type : {"geometry", "point", "linestring", "polygon"})
    dialect.comparisons.push_back({.typeName = type, .pattern = {}});
  dialect.comparisons.push_back(
      {.type = DataType::Single,
       .pattern = "cast(cast({column} as char) as float) <=> cast({value} as float)"});
  dialect.comparisons.push_back(
      {.type = DataType::Numeric, .pattern = "cast({column} as char) <=> {value}"});
  dialect.comparisons.push_back(
      {.type = DataType::Binary, .pattern = "cast({column} as binary) <=> {value}"});
  for (const DataType type : {DataType::Char, DataType::WChar, DataType::VarChar,
                              DataType::VarWChar, DataType::LongVarChar, DataType::LongVarWChar})
    dialect.comparisons.push_back({.type = type, .pattern = byBytes});
  return dialect;
}

}  // namespace tessel
