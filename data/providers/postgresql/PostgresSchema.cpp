#include "data/providers/postgresql/PostgresSchema.h"

#include "data/providers/postgresql/PostgresQuery.h"
#include "data/providers/postgresql/client/PostgresTypes.h"

namespace tessel {

namespace {

constexpr const char* catalogs =
    "select datname, pg_catalog.shobj_description(oid, 'pg_database')"
    " from pg_catalog.pg_database where datallowconn and not datistemplate order by datname";

constexpr const char* tables =
    "select n.nspname, c.relname,"
    " case when n.nspname in ('pg_catalog', 'information_schema') then 'SYSTEM ' else '' end ||"
    " case c.relkind when 'v' then 'VIEW' when 'm' then 'MATERIALIZED VIEW'"
    " when 'f' then 'FOREIGN TABLE' else 'TABLE' end,"
    " pg_catalog.obj_description(c.oid, 'pg_class'),"
    " not pg_catalog.pg_table_is_visible(c.oid)";

/// A domain has the type that it is made of.
constexpr const char* columns = "select n.nspname, c.relname, a.attname, a.attnum, a.attnotnull,"
                                " case when t.typtype = 'd' then t.typbasetype else t.oid end,"
                                " pg_catalog.format_type(a.atttypid, null),"
                                " not pg_catalog.pg_table_is_visible(c.oid)";

constexpr const char* fromTables =
    " from pg_catalog.pg_class c join pg_catalog.pg_namespace n on n.oid = c.relnamespace";

constexpr const char* joinColumns =
    " join pg_catalog.pg_attribute a on a.attrelid = c.oid and a.attnum > 0 and not a.attisdropped"
    " join pg_catalog.pg_type t on t.oid = a.atttypid";

/// $1: a schema, or empty for all but the server's own. $2: a table, or empty for all.
constexpr const char* whereTables =
    " where c.relkind in ('r', 'p', 'v', 'm', 'f')"
    " and case when $1::pg_catalog.text <> '' then n.nspname = $1"
    " else n.nspname <> 'information_schema' and n.nspname !~ '^pg_' end"
    " and ($2::pg_catalog.text = '' or c.relname = $2)"
    " order by c.relname, n.nspname";

void AddTable(const PqResult& row, const std::string& catalog, SchemaRows& rows) {
  rows.AddTable({.catalog = catalog,
                 .schema = TextAt(row, 0),
                 .name = TextAt(row, 1),
                 .type = TextAt(row, 2),
                 .description = OptionalTextAt(row, 3),
                 .needsSchema = BooleanAt(row, 4)});
}

void AddColumn(const PqResult& row, const std::string& catalog, SchemaRows& rows) {
  FieldInfo field;
  ApplyPostgresType(static_cast<Oid>(std::stoul(TextAt(row, 5))), -1, field);
  rows.AddColumn({.catalog = catalog,
                  .schema = TextAt(row, 0),
                  .table = TextAt(row, 1),
                  .name = TextAt(row, 2),
                  .ordinal = NumberAt(row, 3),
                  .nullable = !BooleanAt(row, 4),
                  .type = field.type,
                  .typeName = TextAt(row, 6),
                  .needsSchema = BooleanAt(row, 7)});
}

}  // namespace

std::string PostgresSchemaQuery(SchemaRowset kind) {
  const std::string from = fromTables;
  if (kind == SchemaRowset::Catalogs) return catalogs;
  if (kind == SchemaRowset::Tables) return tables + from + whereTables;
  return columns + from + joinColumns + whereTables + ", a.attnum";
}

void ReadPostgresSchema(PqConnection& connection, SchemaRows& rows) {
  const std::string catalog = connection.Database();
  if (rows.Kind() == SchemaRowset::Catalogs)
    return ForEachRow(connection, PostgresSchemaQuery(rows.Kind()), {}, [&](const PqResult& row) {
      rows.AddCatalog(TextAt(row, 0), OptionalTextAt(row, 1));
    });
  const bool ofTables = rows.Kind() == SchemaRowset::Tables;
  const std::vector<std::string> names = {rows.Restriction(1), rows.Restriction(2)};
  ForEachRow(connection, PostgresSchemaQuery(rows.Kind()), names, [&](const PqResult& row) {
    if (ofTables) AddTable(row, catalog, rows);
    else AddColumn(row, catalog, rows);
  });
}

}  // namespace tessel
