#include "data/providers/sqlite/SqliteSchema.h"

#include "data/providers/sqlite/SqliteTypes.h"

namespace tessel {

namespace {

SqliteStatement Catalogs(SqliteDatabase& database) {
  return database.PrepareOne("select name, file from pragma_database_list order by seq");
}

/// Catalog, name and type of all tables and views, in the given order.
SqliteStatement Tables(SqliteDatabase& database, const std::string& order) {
  return database.PrepareOne(
      "select schema, name, case when name like 'sqlite\\_%' escape '\\' or type = 'shadow' "
      "then 'SYSTEM TABLE' when type = 'view' then 'VIEW' else 'TABLE' end as kind "
      "from pragma_table_list order by " +
      order);
}

std::string Text(const SqliteStatement& statement, int column) {
  return std::string(statement.TextAt(column));
}

/// `columns` is told the table and its catalog.
void AddColumns(SqliteStatement& columns, const std::string& catalog, const std::string& table,
                SchemaRows& rows) {
  columns.Reset();
  columns.Bind(1, table);
  columns.Bind(2, catalog);
  while (columns.Step()) {
    FieldInfo field;
    ApplyDeclaredType(columns.TextAt(2), field);
    rows.AddColumn({.catalog = catalog,
                    .schema = {},
                    .table = table,
                    .name = Text(columns, 0),
                    .ordinal = columns.IntegerAt(1) + 1,
                    .nullable = columns.IntegerAt(3) == 0,
                    .type = field.type,
                    .typeName = Text(columns, 2)});
  }
}

/// Adds the columns by table and place. Who sorts the recordset by these finds it sorted.
void ReadColumns(SqliteDatabase& database, SchemaRows& rows, WorkContext& context) {
  SqliteStatement tables = Tables(database, "upper(name), schema");
  SqliteStatement columns = database.PrepareOne(
      "select name, cid, type, \"notnull\" from pragma_table_xinfo(?1, ?2) where hidden <> 1 "
      "order by cid");
  while (tables.Step()) {
    context.ThrowIfStopped();
    const std::string catalog = Text(tables, 0);
    const std::string table = Text(tables, 1);
    if (!rows.Restriction(2).empty() && rows.Restriction(2) != table) continue;
    try {
      AddColumns(columns, catalog, table, rows);
    } catch (const Error& error) {
      context.ThrowIfStopped();
      context.Report(error.Info());
    }
  }
}

void ReadTables(SqliteDatabase& database, SchemaRows& rows) {
  SqliteStatement tables = Tables(database, "kind, schema, name collate nocase");
  while (tables.Step())
    rows.AddTable({.catalog = Text(tables, 0),
                   .schema = {},
                   .name = Text(tables, 1),
                   .type = Text(tables, 2),
                   .description = {}});
}

void ReadCatalogs(SqliteDatabase& database, SchemaRows& rows) {
  SqliteStatement catalogs = Catalogs(database);
  while (catalogs.Step()) rows.AddCatalog(Text(catalogs, 0), Text(catalogs, 1));
}

}  // namespace

void ReadSqliteSchema(SqliteDatabase& database, SchemaRows& rows, WorkContext& context) {
  switch (rows.Kind()) {
    case SchemaRowset::Catalogs: return ReadCatalogs(database, rows);
    case SchemaRowset::Tables: return ReadTables(database, rows);
    case SchemaRowset::Columns: return ReadColumns(database, rows, context);
    default: RaiseNoRowset("SQLite");
  }
}

}  // namespace tessel
