#include "data/providers/mariadb/MariaTables.h"

#include <map>
#include <set>
#include <string>

namespace tessel {

namespace {

/// Columns of the answer to SHOW KEYS.
constexpr unsigned nonUnique = 1;
constexpr unsigned keyName = 2;
constexpr unsigned columnName = 4;
constexpr unsigned subPart = 7;
constexpr unsigned nullable = 9;

std::string QuotedName(const std::string& name) {
  std::string quoted = "`";
  for (const char c : name) quoted.append(c == '`' ? 2 : 1, c);
  return quoted + "`";
}

/// Of the rows of a key, each a column: it names a row's value whole, and always.
bool IsWhole(const MariaResult& row) {
  return !row.IsNullAt(columnName) && row.IsNullAt(subPart) && row.TextAt(nullable) != "YES";
}

std::string TableName(const FieldInfo& field) {
  return QuotedName(field.baseCatalog) + "." + QuotedName(field.baseTable);
}

/// The columns of a table that are not computed from others; none when there is no such table.
std::set<std::string> WritableColumns(MariaConnection& connection, const FieldInfo& field) try {
  constexpr unsigned name = 0;
  constexpr unsigned extra = 5;
  connection.Run("show columns from " + TableName(field));
  MariaResult rows = connection.Result();
  std::set<std::string> columns;
  while (rows.Fetch())
    if (rows.TextAt(extra).find("GENERATED") == std::string_view::npos)
      columns.emplace(rows.TextAt(name));
  return columns;
} catch (const Error& error) {
  if (SaysSessionIsLost(error.Info())) throw;
  return {};
}

/// False for a view that cannot be; true for a table.
bool CanBeWritten(MariaConnection& connection, const FieldInfo& field) {
  connection.Run("select 1 from information_schema.views where is_updatable = 'NO' and "
                 "table_schema = " +
                 connection.Quoted(field.baseCatalog) +
                 " and table_name = " + connection.Quoted(field.baseTable));
  MariaResult rows = connection.Result();
  bool found = false;
  while (rows.Fetch()) found = true;
  return !found;
}

}  // namespace

void CompleteMariaFields(MariaConnection& connection, std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr) return;
  std::set<std::string> columns = WritableColumns(connection, *base);
  if (!columns.empty() && !CanBeWritten(connection, *base)) columns.clear();
  for (FieldInfo& field : fields)
    field.updatable = !field.baseTable.empty() && columns.contains(field.baseColumn);
}

/// SHOW KEYS knows temporary tables too.
std::vector<TableKey> ReadMariaKeys(MariaConnection& connection, const FieldInfo& field) {
  struct Key {
    TableKey columns;
    bool whole = true;
  };
  connection.Run("show keys from " + TableName(field));
  MariaResult rows = connection.Result();
  std::map<std::string, Key> found;
  while (rows.Fetch()) {
    if (rows.TextAt(nonUnique) != "0") continue;
    Key& key = found[std::string(rows.TextAt(keyName))];
    key.whole = key.whole && IsWhole(rows);
    if (key.whole) key.columns.emplace_back(rows.TextAt(columnName));
  }
  std::vector<TableKey> keys;
  for (auto& [name, key] : found)
    if (key.whole) keys.push_back(std::move(key.columns));
  return keys;
}

}  // namespace tessel
