#include "data/providers/odbc/OdbcBase.h"

#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "contract/text/Ascii.h"
#include "data/changes/RowSql.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/odbc/OdbcRows.h"
#include "data/providers/odbc/driver/OdbcPlainQuery.h"

namespace tessel::odbc {

namespace {

struct Base {
  std::string catalog;
  std::string schema;
  std::string table;
  auto operator<=>(const Base&) const = default;
};

struct BaseTable {
  Base name;
  std::set<std::string> columns;
};

std::optional<std::string> Named(const std::string& name) {
  return name.empty() ? std::nullopt : std::optional(name);
}

/// Nothing when no table, or more than one, has the name.
std::optional<BaseTable> ReadTable(const Dbc& dbc, const PlainTable& named) {
  Statement statement(dbc);
  statement.Columns({Named(named.catalog), Named(named.schema), named.name});
  std::map<Base, std::set<std::string>> found;
  ForEachRow(statement, 4, [&](const TextRow& row) {
    if (row[2] && row[3] && EqualNoCase(*row[2], named.name))
      found[{row[0].value_or(""), row[1].value_or(""), *row[2]}].insert(*row[3]);
  });
  if (found.size() != 1) return std::nullopt;
  return BaseTable{found.begin()->first, found.begin()->second};
}

void SetBase(FieldInfo& field, const Base& base) {
  std::tie(field.baseCatalog, field.baseSchema, field.baseTable) =
      std::tie(base.catalog, base.schema, base.table);
  field.baseColumn = base.table.empty() ? std::string() : field.name;
}

/// A catalog that the query names must stand in what is written.
bool FindByText(const Dbc& dbc, const WriteDialect& dialect, const std::string& sql,
                std::vector<FieldInfo>& fields) try {
  const std::optional<PlainTable> named = PlainTableOf(sql);
  if (!named || (!named->catalog.empty() && !dialect.namesCatalog)) return false;
  const std::optional<BaseTable> table = ReadTable(dbc, *named);
  if (!table) return false;
  for (FieldInfo& field : fields)
    SetBase(field, table->columns.contains(field.name) ? table->name : Base());
  return true;
} catch (const Failure&) {
  return false;
}

/// A driver may take the alias for the name of the base column.
bool SeesThroughAliases(const Dbc& dbc, CancelSwitch& cancel, const WriteDialect& dialect,
                        const FieldInfo& told) try {
  if (!dialect.namesCatalog && !told.baseCatalog.empty() &&
      told.baseCatalog != dbc.CurrentCatalog())
    return false;
  Diagnostics unused;
  Statement statement(dbc);
  statement.Execute("select " + QuotedName(told.baseColumn, dialect) + " as tessel_alias from " +
                        BaseTableName(told, dialect) + " where 1 = 0",
                    cancel, unused);
  return statement.ColumnText(1, SQL_DESC_BASE_COLUMN_NAME) == told.baseColumn;
} catch (const Failure&) {
  return false;
}

}  // namespace

void FindBaseColumns(const Dbc& dbc, CancelSwitch& cancel, const WriteDialect& dialect,
                     const std::string& sql, std::vector<FieldInfo>& fields) {
  if (FindByText(dbc, dialect, sql, fields)) return;
  const FieldInfo* told = OneBaseTable(fields);
  if (told != nullptr && SeesThroughAliases(dbc, cancel, dialect, *told)) return;
  for (FieldInfo& field : fields) SetBase(field, Base());
}

}  // namespace tessel::odbc
