// What MariaDB tells of its databases, tables and columns, and of how the tables are built: keys,
// indexes, routines, and the SQL that makes an object, which the server writes itself; that of an
// index is put together from its columns.

#include "data/providers/mariadb/MariaSchema.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

#include "data/providers/mariadb/MariaTypes.h"

namespace tessel {

namespace {

std::string Text(const MariaResult& row, unsigned column) {
  return std::string(row.TextAt(column));
}

std::int64_t Number(const MariaResult& row, unsigned column) {
  const std::string_view text = row.TextAt(column);
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// " where ..." for the columns table_schema and table_name: of that database, or else of the one
/// in use, or else of all but the server's own; and of that table, unless it is empty.
std::string TableCondition(const MariaConnection& connection, std::string database,
                           const std::string& table) {
  if (database.empty()) database = connection.Database();
  std::string where = database.empty()
                          ? " where table_schema not in ('information_schema', 'mysql', "
                            "'performance_schema', 'sys')"
                          : " where table_schema = " + connection.Quoted(database);
  if (!table.empty()) where += " and table_name = " + connection.Quoted(table);
  return where;
}

void ReadCatalogs(MariaConnection& connection, SchemaRows& rows) {
  connection.Run("show databases");
  MariaResult result = connection.Result();
  std::vector<std::string> names;
  while (result.Fetch()) names.push_back(Text(result, 0));
  std::ranges::sort(names);
  for (const std::string& name : names) rows.AddCatalog(name, {});
}

std::string TableType(std::string_view type) {
  if (type == "BASE TABLE" || type == "SYSTEM VERSIONED") return "TABLE";
  return std::string(type);
}

/// The comment of a view is always "VIEW".
OptionalText Comment(const MariaResult& row, unsigned column) {
  const std::string_view comment = row.IsNullAt(column) ? "" : row.TextAt(column);
  if (comment.empty() || comment == "VIEW") return std::nullopt;
  return std::string(comment);
}

void ReadTables(MariaConnection& connection, SchemaRows& rows) {
  const std::string inUse = connection.Database();
  connection.Run("select table_schema, table_name, table_type, table_comment"
                 " from information_schema.tables" +
                 TableCondition(connection, rows.Restriction(0), rows.Restriction(2)) +
                 " order by binary table_name, binary table_schema");
  MariaResult result = connection.Result();
  while (result.Fetch())
    rows.AddTable({.catalog = Text(result, 0),
                   .schema = {},
                   .name = Text(result, 1),
                   .type = TableType(result.TextAt(2)),
                   .description = Comment(result, 3),
                   .needsSchema = result.TextAt(0) != inUse});
}

void AddColumn(const MariaResult& row, const std::string& inUse, SchemaRows& rows) {
  const std::string name = Text(row, 5);
  const std::string_view whole = row.TextAt(6);
  const bool isUnsigned = whole.find(" unsigned") != std::string_view::npos;
  rows.AddColumn({.catalog = Text(row, 0),
                  .schema = {},
                  .table = Text(row, 1),
                  .name = Text(row, 2),
                  .ordinal = Number(row, 3),
                  .nullable = row.TextAt(4) == "YES",
                  .type = whole == "bit(1)" ? DataType::Boolean : MariaTypeOfName(name, isUnsigned),
                  .typeName = isUnsigned ? name + " unsigned" : name,
                  .needsSchema = row.TextAt(0) != inUse});
}

void ReadColumns(MariaConnection& connection, SchemaRows& rows) {
  const std::string inUse = connection.Database();
  connection.Run("select table_schema, table_name, column_name, ordinal_position, is_nullable,"
                 " data_type, column_type from information_schema.columns" +
                 TableCondition(connection, rows.Restriction(0), rows.Restriction(2)) +
                 " order by binary table_name, binary table_schema, ordinal_position");
  MariaResult result = connection.Result();
  while (result.Fetch()) AddColumn(result, inUse, rows);
}

// --- keys, indexes, routines ---------------------------------------------------------------------

OptionalText MaybeText(const MariaResult& row, unsigned column) {
  if (row.IsNullAt(column)) return std::nullopt;
  return Text(row, column);
}

/// `name` as an identifier, in backquotes.
std::string Identifier(const std::string& name) {
  std::string quoted = "`";
  for (const char c : name) quoted.append(c == '`' ? 2U : 1U, c);
  return quoted + "`";
}

void ReadPrimaryKeys(MariaConnection& connection, SchemaRows& rows) {
  connection.Run("select table_schema, table_name, column_name, seq_in_index"
                 " from information_schema.statistics" +
                 TableCondition(connection, rows.Restriction(0), rows.Restriction(2)) +
                 " and index_name = 'PRIMARY'"
                 " order by binary table_name, binary table_schema, seq_in_index");
  MariaResult result = connection.Result();
  while (result.Fetch())
    rows.AddKeyColumn({.catalog = Text(result, 0),
                       .schema = {},
                       .table = Text(result, 1),
                       .column = Text(result, 2),
                       .ordinal = Number(result, 3)});
}

void ReadForeignKeys(MariaConnection& connection, SchemaRows& rows) {
  connection.Run("select table_schema, table_name, column_name, referenced_table_schema,"
                 " referenced_table_name, referenced_column_name, ordinal_position,"
                 " constraint_name from information_schema.key_column_usage" +
                 TableCondition(connection, rows.Restriction(3), rows.Restriction(5)) +
                 " and referenced_table_name is not null"
                 " order by binary table_name, binary table_schema, constraint_name,"
                 " ordinal_position");
  MariaResult result = connection.Result();
  while (result.Fetch())
    rows.AddForeignColumn({.catalog = Text(result, 0),
                           .schema = {},
                           .table = Text(result, 1),
                           .column = Text(result, 2),
                           .toCatalog = Text(result, 3),
                           .toSchema = {},
                           .toTable = Text(result, 4),
                           .toColumn = MaybeText(result, 5),
                           .ordinal = Number(result, 6),
                           .key = Text(result, 7)});
}

void ReadIndexes(MariaConnection& connection, SchemaRows& rows) {
  connection.Run("select table_schema, table_name, index_name, non_unique, seq_in_index,"
                 " column_name from information_schema.statistics" +
                 TableCondition(connection, rows.Restriction(0), rows.Restriction(2)) +
                 " order by binary table_name, binary table_schema, index_name <> 'PRIMARY',"
                 " index_name, seq_in_index");
  MariaResult result = connection.Result();
  while (result.Fetch())
    rows.AddIndexColumn({.catalog = Text(result, 0),
                         .schema = {},
                         .table = Text(result, 1),
                         .index = Text(result, 2),
                         .unique = Number(result, 3) == 0,
                         .ordinal = Number(result, 4),
                         .column = MaybeText(result, 5)});
}

void ReadRoutines(MariaConnection& connection, SchemaRows& rows) {
  std::string database = rows.Restriction(0);
  if (database.empty()) database = connection.Database();
  connection.Run("select routine_schema, routine_name, routine_type"
                 " from information_schema.routines where " +
                 (database.empty() ? "routine_schema not in ('mysql', 'sys')"
                                   : "routine_schema = " + connection.Quoted(database)) +
                 " and routine_type in ('FUNCTION', 'PROCEDURE')"
                 " order by binary routine_name, binary routine_schema");
  MariaResult result = connection.Result();
  while (result.Fetch())
    rows.AddRoutine({.catalog = Text(result, 0),
                     .schema = {},
                     .name = Text(result, 1),
                     .type = Text(result, 2)});
}

// --- definitions ---------------------------------------------------------------------------------

/// The name behind its database, where one is given.
std::string FullName(const std::string& database, const std::string& name) {
  return (database.empty() ? "" : Identifier(database) + ".") + Identifier(name);
}

/// `type` is a word of SHOW CREATE; the server tells the text in the column of that number.
void ShowCreate(MariaConnection& connection, SchemaRows& rows, const std::string& type,
                unsigned column) {
  connection.Run("show create " + type + " " + FullName(rows.Restriction(0), rows.Restriction(2)));
  MariaResult result = connection.Result();
  while (result.Fetch())
    if (!result.IsNullAt(column)) rows.AddDefinition(Text(result, column) + ";");
}

/// The key of a table has no statement of its own.
void ComposeIndex(MariaConnection& connection, SchemaRows& rows) {
  const std::string name = rows.Restriction(2);
  const std::string table = rows.Restriction(4);
  connection.Run("select non_unique, column_name, sub_part from information_schema.statistics" +
                 TableCondition(connection, rows.Restriction(0), table) +
                 " and index_name = " + connection.Quoted(name) + " order by seq_in_index");
  std::string columns;
  bool unique = false;
  MariaResult result = connection.Result();
  while (result.Fetch()) {
    unique = Number(result, 0) == 0;
    columns += (columns.empty() ? "" : ", ") + Identifier(Text(result, 1));
    if (!result.IsNullAt(2)) columns += "(" + Text(result, 2) + ")";
  }
  if (columns.empty()) return;
  const std::string onTable = FullName(rows.Restriction(0), table);
  if (name == "PRIMARY")
    return rows.AddDefinition("ALTER TABLE " + onTable + " ADD PRIMARY KEY (" + columns + ");");
  rows.AddDefinition(std::string("CREATE ") + (unique ? "UNIQUE " : "") + "INDEX " +
                     Identifier(name) + " ON " + onTable + " (" + columns + ");");
}

void ReadDefinition(MariaConnection& connection, SchemaRows& rows) {
  const std::string& type = rows.Restriction(3);
  if (type == "INDEX") return ComposeIndex(connection, rows);
  if (type == "TABLE" || type == "VIEW") return ShowCreate(connection, rows, type, 1);
  if (type == "FUNCTION" || type == "PROCEDURE") return ShowCreate(connection, rows, type, 2);
}

}  // namespace

void ReadMariaSchema(MariaConnection& connection, SchemaRows& rows) {
  switch (rows.Kind()) {
    case SchemaRowset::Catalogs: return ReadCatalogs(connection, rows);
    case SchemaRowset::Tables: return ReadTables(connection, rows);
    case SchemaRowset::Columns: return ReadColumns(connection, rows);
    case SchemaRowset::PrimaryKeys: return ReadPrimaryKeys(connection, rows);
    case SchemaRowset::ForeignKeys: return ReadForeignKeys(connection, rows);
    case SchemaRowset::Indexes: return ReadIndexes(connection, rows);
    case SchemaRowset::Procedures: return ReadRoutines(connection, rows);
    case SchemaRowset::Definitions: return ReadDefinition(connection, rows);
  }
}

}  // namespace tessel
