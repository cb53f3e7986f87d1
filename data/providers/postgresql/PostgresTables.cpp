#include "data/providers/postgresql/PostgresTables.h"

#include <algorithm>
#include <map>
#include <string>

#include "data/providers/postgresql/PostgresQuery.h"

namespace tessel {

namespace {

constexpr int version10 = 100000;
constexpr int version11 = 110000;
constexpr int version12 = 120000;

/// "{1,2,3}", an array as a text.
template <class Number>
std::string ArrayOf(const std::vector<PqColumn>& columns, Number PqColumn::*part) {
  std::string array = "{";
  for (const PqColumn& column : columns) {
    if (array.size() > 1) array += ',';
    array += std::to_string(column.*part);
  }
  return array + "}";
}

/// $1, $2 and $3: numbers of the types, of the tables and of the columns in them, in the order of
/// the fields.
std::string FieldsQuery(int serverVersion) {
  std::string sql =
      "select f.place, pg_catalog.format_type(f.type, null), n.nspname, c.relname, a.attname,"
      " a.attnotnull, pg_catalog.pg_column_is_updatable(c.oid, a.attnum, false)";
  if (serverVersion >= version12) sql += " and a.attgenerated = ''";
  if (serverVersion >= version10) sql += " and a.attidentity <> 'a'";
  sql += ", coalesce(pg_catalog.pg_get_expr(d.adbin, d.adrelid) like 'nextval(%', false)";
  if (serverVersion >= version10) sql += " or a.attidentity <> ''";
  return sql +
         ", pg_catalog.current_database()"
         " from unnest($1::pg_catalog.oid[], $2::pg_catalog.oid[], $3::pg_catalog.int2[])"
         " with ordinality f (type, tab, col, place)"
         " left join pg_catalog.pg_class c on c.oid = f.tab"
         " left join pg_catalog.pg_namespace n on n.oid = c.relnamespace"
         " left join pg_catalog.pg_attribute a on a.attrelid = c.oid and a.attnum = f.col"
         " left join pg_catalog.pg_attrdef d on d.adrelid = a.attrelid and d.adnum = a.attnum";
}

/// The server's own name of the catalog: the one asked for may be that of a pooler.
void CompleteField(const PqResult& row, FieldInfo& field) {
  field.typeName = TextAt(row, 1);
  if (row.IsNullAt(4)) return;
  field.baseCatalog = TextAt(row, 8);
  field.baseSchema = TextAt(row, 2);
  field.baseTable = TextAt(row, 3);
  field.baseColumn = TextAt(row, 4);
  field.nullable = !BooleanAt(row, 5);
  field.updatable = BooleanAt(row, 6);
  field.autoIncrement = BooleanAt(row, 7);
}

/// Number and column names of the unique indexes of table $1, but those of a part of the rows and
/// of expressions; and whether no column of the index may be null.
std::string KeysQuery(int serverVersion) {
  const std::string columns =
      serverVersion >= version11 ? "i.indkey[0:i.indnkeyatts - 1]" : "i.indkey";
  return "select i.indexrelid, a.attname,"
         " pg_catalog.bool_and(a.attnotnull) over (partition by i.indexrelid)"
         " from pg_catalog.pg_index i"
         " join pg_catalog.pg_attribute a on a.attrelid = i.indrelid and a.attnum = any (" +
         columns +
         ") where i.indrelid = $1::pg_catalog.oid and i.indisunique and i.indisvalid"
         " and i.indpred is null and i.indexprs is null";
}

}  // namespace

void CompletePostgresFields(PqConnection& connection, const std::vector<PqColumn>& columns,
                            std::vector<FieldInfo>& fields) {
  const bool named =
      std::ranges::all_of(fields, [](const FieldInfo& field) { return !field.typeName.empty(); });
  const bool based =
      std::ranges::any_of(columns, [](const PqColumn& column) { return column.table != 0; });
  if (named && !based) return;
  ForEachRow(connection, FieldsQuery(connection.ServerVersion()),
             {ArrayOf(columns, &PqColumn::type), ArrayOf(columns, &PqColumn::table),
              ArrayOf(columns, &PqColumn::number)},
             [&](const PqResult& row) {
               const auto place = static_cast<std::size_t>(NumberAt(row, 0)) - 1;
               if (place < fields.size()) CompleteField(row, fields[place]);
             });
}

std::vector<TableKey> ReadPostgresKeys(PqConnection& connection, Oid table) {
  std::map<std::string, TableKey> keys;
  ForEachRow(connection, KeysQuery(connection.ServerVersion()), {std::to_string(table)},
             [&](const PqResult& row) {
               if (BooleanAt(row, 2)) keys[TextAt(row, 0)].push_back(TextAt(row, 1));
             });
  std::vector<TableKey> result;
  for (const auto& [index, key] : keys) result.push_back(key);
  return result;
}

}  // namespace tessel
