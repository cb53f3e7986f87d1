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

/// The condition for database and table that the restrictions make.
std::string Where(const MariaConnection& connection, const SchemaRows& rows) {
  std::string database = rows.Restriction(0);
  if (database.empty()) database = connection.Database();
  std::string where = database.empty()
                          ? " where table_schema not in ('information_schema', 'mysql', "
                            "'performance_schema', 'sys')"
                          : " where table_schema = " + connection.Quoted(database);
  if (!rows.Restriction(2).empty())
    where += " and table_name = " + connection.Quoted(rows.Restriction(2));
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
                 Where(connection, rows) + " order by binary table_name, binary table_schema");
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
  const std::string_view place = row.TextAt(3);
  std::int64_t ordinal = 0;
  std::from_chars(place.data(), place.data() + place.size(), ordinal);
  rows.AddColumn({.catalog = Text(row, 0),
                  .schema = {},
                  .table = Text(row, 1),
                  .name = Text(row, 2),
                  .ordinal = ordinal,
                  .nullable = row.TextAt(4) == "YES",
                  .type = whole == "bit(1)" ? DataType::Boolean : MariaTypeOfName(name, isUnsigned),
                  .typeName = isUnsigned ? name + " unsigned" : name,
                  .needsSchema = row.TextAt(0) != inUse});
}

void ReadColumns(MariaConnection& connection, SchemaRows& rows) {
  const std::string inUse = connection.Database();
  connection.Run("select table_schema, table_name, column_name, ordinal_position, is_nullable,"
                 " data_type, column_type from information_schema.columns" +
                 Where(connection, rows) +
                 " order by binary table_name, binary table_schema, ordinal_position");
  MariaResult result = connection.Result();
  while (result.Fetch()) AddColumn(result, inUse, rows);
}

}  // namespace

void ReadMariaSchema(MariaConnection& connection, SchemaRows& rows) {
  switch (rows.Kind()) {
    case SchemaRowset::Catalogs: return ReadCatalogs(connection, rows);
    case SchemaRowset::Tables: return ReadTables(connection, rows);
    case SchemaRowset::Columns: return ReadColumns(connection, rows);
  }
}

}  // namespace tessel
