// How the tables of SQLite are built: keys and indexes by its pragmas, and the SQL that made an
// object, which the file itself keeps.

#include "data/providers/sqlite/SqliteStructure.h"

namespace tessel {

namespace {

/// ?1: a catalog, ?2: a table; empty for all. SQLite's own tables are left out.
constexpr const char* whereTable =
    " where t.type = 'table' and t.name not like 'sqlite\\_%' escape '\\'"
    " and (?1 = '' or t.schema = ?1) and (?2 = '' or t.name = ?2)";
constexpr const char* byTable = " order by upper(t.name), t.schema, ";

std::string Text(const SqliteStatement& statement, int column) {
  return std::string(statement.TextAt(column));
}

OptionalText MaybeText(const SqliteStatement& statement, int column) {
  if (statement.StorageAt(column) == SqliteStorage::Null) return std::nullopt;
  return Text(statement, column);
}

SqliteStatement Query(SqliteDatabase& database, const std::string& sql, const std::string& catalog,
                      const std::string& table) {
  SqliteStatement statement = database.PrepareOne(sql);
  statement.Bind(1, catalog);
  statement.Bind(2, table);
  return statement;
}

void ReadPrimaryKeys(SqliteDatabase& database, SchemaRows& rows) {
  SqliteStatement keys = Query(database,
                               "select t.schema, t.name, c.name, c.pk from pragma_table_list t"
                               " cross join pragma_table_xinfo(t.name, t.schema) c" +
                                   std::string(whereTable) + " and c.pk > 0" + byTable + "c.pk",
                               rows.Restriction(0), rows.Restriction(2));
  while (keys.Step())
    rows.AddKeyColumn({.catalog = Text(keys, 0),
                       .schema = {},
                       .table = Text(keys, 1),
                       .column = Text(keys, 2),
                       .ordinal = keys.IntegerAt(3)});
}

/// A key that names no columns refers to the primary key.
void ReadForeignKeys(SqliteDatabase& database, SchemaRows& rows) {
  SqliteStatement keys = Query(
      database,
      "select t.schema, t.name, f.\"from\", f.\"table\", coalesce(f.\"to\", (select c.name from"
      " pragma_table_xinfo(f.\"table\", t.schema) c where c.pk = f.seq + 1)), f.seq + 1,"
      " 'foreign key ' || (f.id + 1) from pragma_table_list t"
      " cross join pragma_foreign_key_list(t.name, t.schema) f" +
          std::string(whereTable) + byTable + "f.id, f.seq",
      rows.Restriction(3), rows.Restriction(5));
  while (keys.Step())
    rows.AddForeignColumn({.catalog = Text(keys, 0),
                           .schema = {},
                           .table = Text(keys, 1),
                           .column = Text(keys, 2),
                           .toCatalog = Text(keys, 0),
                           .toSchema = {},
                           .toTable = Text(keys, 3),
                           .toColumn = MaybeText(keys, 4),
                           .ordinal = keys.IntegerAt(5),
                           .key = Text(keys, 6)});
}

void ReadIndexes(SqliteDatabase& database, SchemaRows& rows) {
  SqliteStatement indexes =
      Query(database,
            "select t.schema, t.name, i.name, i.\"unique\", c.seqno + 1, c.name"
            " from pragma_table_list t"
            " cross join pragma_index_list(t.name, t.schema) i cross join"
            " pragma_index_info(i.name, t.schema) c" +
                std::string(whereTable) + byTable + "i.name, c.seqno",
            rows.Restriction(0), rows.Restriction(2));
  while (indexes.Step())
    rows.AddIndexColumn({.catalog = Text(indexes, 0),
                         .schema = {},
                         .table = Text(indexes, 1),
                         .index = Text(indexes, 2),
                         .unique = indexes.IntegerAt(3) != 0,
                         .ordinal = indexes.IntegerAt(4),
                         .column = MaybeText(indexes, 5)});
}

std::string InQuotes(const std::string& name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2U : 1U, c);
  return quoted + "\"";
}

/// With a table stand its indexes and triggers.
void ReadDefinition(SqliteDatabase& database, SchemaRows& rows) {
  const std::string& catalog = rows.Restriction(0);
  const std::string from = catalog.empty() ? "main" : catalog;
  SqliteStatement parts =
      Query(database,
            "select sql from " + InQuotes(from) +
                ".sqlite_master where sql is not null and (type = lower(?1) and name = ?2"
                " or ?1 = 'TABLE' and tbl_name = ?2 and type in ('index', 'trigger'))"
                " order by type <> lower(?1), type, name",
            rows.Restriction(3), rows.Restriction(2));
  std::string definition;
  while (parts.Step()) definition += (definition.empty() ? "" : "\n") + Text(parts, 0) + ";";
  if (!definition.empty()) rows.AddDefinition(definition);
}

}  // namespace

void ReadSqliteStructure(SqliteDatabase& database, SchemaRows& rows) {
  switch (rows.Kind()) {
    case SchemaRowset::PrimaryKeys: return ReadPrimaryKeys(database, rows);
    case SchemaRowset::ForeignKeys: return ReadForeignKeys(database, rows);
    case SchemaRowset::Indexes: return ReadIndexes(database, rows);
    case SchemaRowset::Procedures: return;
    case SchemaRowset::Definitions: return ReadDefinition(database, rows);
    default: RaiseNoRowset("SQLite");
  }
}

}  // namespace tessel
