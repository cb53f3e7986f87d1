#include "data/providers/odbc/driver/OdbcProfile.h"

#include <algorithm>

#include "contract/text/Ascii.h"
#include "data/changes/WriteDialects.h"

namespace tessel::odbc {

namespace {

using CatalogChange = DriverProfile::CatalogChange;
using Server = DriverProfile::Server;

/// Without indexes of a part of the rows, of expressions and of columns that are only included.
constexpr std::string_view uniqueIndexesOfPostgreSql =
    "select i.indexrelid::text, a.attname"
    " from pg_catalog.pg_index i"
    " join pg_catalog.pg_class c on c.oid = i.indrelid"
    " join pg_catalog.pg_namespace n on n.oid = c.relnamespace"
    " join pg_catalog.pg_attribute a on a.attrelid = i.indrelid"
    " and a.attnum = any (i.indkey[0:i.indnkeyatts - 1])"
    " where i.indisunique and i.indisvalid and i.indpred is null and i.indexprs is null"
    " and n.nspname = {schema} and c.relname = {table}";

constexpr std::string_view readOnlyColumnsOfPostgreSql =
    "select a.attname"
    " from pg_catalog.pg_class c"
    " join pg_catalog.pg_namespace n on n.oid = c.relnamespace"
    " join pg_catalog.pg_attribute a on a.attrelid = c.oid and a.attnum > 0"
    " where n.nspname = {schema} and c.relname = {table}"
    " and (a.attgenerated <> '' or a.attidentity = 'a'"
    " or not pg_catalog.pg_column_is_updatable(c.oid, a.attnum, false))";

constexpr std::string_view readOnlyColumnsOfMariaDb =
    "select c.column_name"
    " from information_schema.columns c"
    " left join information_schema.views v"
    " on v.table_schema = c.table_schema and v.table_name = c.table_name"
    " where c.table_schema = {catalog} and c.table_name = {table}"
    " and (c.extra like '%GENERATED%' or v.is_updatable = 'NO')";

constexpr std::string_view readOnlyColumnsOfSqlite =
    "select name from pragma_table_xinfo({table}) where hidden > 1";

/// SQL Server has drivers of several makers; it tells its name through all of them.
WriteDialect ByServer(const Server& server) {
  if (server.name.find("SQL Server") != std::string::npos) return SqlServerDialect();
  const bool quotes = !server.quote.empty() && server.quote.front() != ' ';
  WriteDialect dialect = UnknownDialect(quotes ? server.quote.front() : '\0');
  dialect.namesCatalog = server.namesCatalog;
  return dialect;
}

/// Returns no rows of a statement that changes some.
WriteDialect SqliteWriting() {
  WriteDialect dialect = SqliteDialect();
  dialect.returnsInserted = false;
  dialect.returnsUpdated = false;
  return dialect;
}

/// Protocol: with its default the driver rolls the user's transaction back after any error. What
/// runs alone begins with its transaction; within the user's own it begins later.
DriverProfile PostgreSql() {
  return {.name = "PostgreSQL",
          .marks = {"postgres", "psqlodbc"},
          .defaults = {{"Protocol", "7.4-0"}, {"BoolsAsChar", "0"}},
          .hangsOn = "copy",
          .hangsWith = {"stdin", "stdout"},
          .joinsNotices = true,
          .severalStatements = SqlDialect::PostgreSQL,
          .isSlowToDropResults = true,
          .tellsBaseColumns = true,
          .madeUpSizes = {255, 8190},
          .typeRules = {{"money", {DataType::VarChar, CellForm::Text}},
                        {"oid", {DataType::UnsignedInt, CellForm::Integer}}},
          .uniqueIndexQuery = uniqueIndexesOfPostgreSql,
          .readOnlyColumnsQuery = readOnlyColumnsOfPostgreSql,
          .writing = [](const Server&) { return PostgresDialect(); },
          .transactionQuery = "select case when now() = statement_timestamp() then 0 else 1 end",
          .failedTransactionState = "25P02",
          .takesArrays = true,
          .textEndsAtZero = true,
          .catalogChange = CatalogChange::Reconnect,
          .catalogQuery = "select datname from pg_catalog.pg_database"
                          " where datallowconn and not datistemplate order by datname",
          .schemaPattern = true,
          .hiddenSchemas = {"pg_catalog", "information_schema", "pg_toast", "pg_temp"},
          .takesBrackets = false};
}

/// Bit 2: counts are of the rows found, not of those changed. Bit 67108864: several statements in
/// one text. The login timeout of ODBC is not obeyed, CONN_TIMEOUT is.
DriverProfile MariaDb() {
  return {.name = "MariaDB",
          .marks = {"mariadb", "maodbc", "mysql", "myodbc"},
          .defaults = {{"CONN_TIMEOUT", "15"}, {"CHARSET", "utf8mb4"}},
          .optionKey = "OPTION",
          .optionBits = 67108866,
          .warningsQuery = "show warnings",
          .warningsReset = "do (select 1 from information_schema.engines where false)",
          .looksBackWith = {"show", "diagnostics", "found_rows", "row_count", "warning_count"},
          .severalStatements = SqlDialect::MariaDB,
          .zeroIsNoCount = false,
          .tellsBaseColumns = true,
          .typeRules = {{"uuid", {DataType::Char, CellForm::Text}},
                        {"inet4", {DataType::Char, CellForm::Text}},
                        {"inet6", {DataType::Char, CellForm::Text}}},
          .readOnlyColumnsQuery = readOnlyColumnsOfMariaDb,
          .writing = [](const Server& server) { return MariaDialect(server.name, server.version); },
          .transactionQuery = "select case when @@in_transaction then 1"
                              " when @@autocommit then 0 else 2 end",
          .takesNumbers = true,
          .takesArrays = true,
          .noCatalog = "null",
          .needsCatalog = true,
          .takesBrackets = false};
}

/// Takes the alias for the base column's name.
DriverProfile Sqlite() {
  return {.name = "SQLite",
          .marks = {"sqlite"},
          .tellsBaseColumns = true,
          .madeUpSizes = {255, 65536},
          .aliasHidesColumn = true,
          .readOnlyColumnsQuery = readOnlyColumnsOfSqlite,
          .writing = [](const Server&) { return SqliteWriting(); },
          .takesNumbers = true,
          .textEndsAtZero = true,
          .catalogChange = CatalogChange::None};
}

DriverProfile FreeTds() {
  return {.name = "SQL Server",
          .marks = {"freetds", "tdsodbc"},
          .defaults = {{"TDS_Version", "7.4"}, {"ClientCharset", "UTF-8"}},
          .writing = &ByServer};
}

/// Crashes in SQLStatistics; has no reason to tell when the file is not there.
DriverProfile MdbTools() {
  return {.name = "Access",
          .marks = {"mdbtools", "mdbodbc"},
          .fileKey = "DBQ",
          .typeRules = {{"MONEY", {DataType::Currency, CellForm::Decimal}},
                        {"MEMO", {DataType::LongVarChar, CellForm::Text}}},
          .catalogChange = CatalogChange::None};
}

const std::vector<DriverProfile>& Profiles() {
  static const std::vector<DriverProfile> profiles = {PostgreSql(), MariaDb(), Sqlite(), FreeTds(),
                                                      MdbTools()};
  return profiles;
}

std::string AsciiLowerText(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char c) { return AsciiLower(c); });
  return lower;
}

}  // namespace

const DriverProfile& ProfileOf(std::string_view driver) {
  static const DriverProfile unknown = {.name = "ODBC", .writing = &ByServer};
  const std::string lower = AsciiLowerText(driver);
  const auto fits = [&](const DriverProfile& profile) {
    return std::ranges::any_of(profile.marks, [&](std::string_view mark) {
      return lower.find(mark) != std::string::npos;
    });
  };
  const auto found = std::ranges::find_if(Profiles(), fits);
  return found == Profiles().end() ? unknown : *found;
}

}  // namespace tessel::odbc
