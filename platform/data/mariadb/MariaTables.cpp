#include "platform/data/mariadb/MariaTables.h"

#include <map>
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

}  // namespace

/// SHOW KEYS knows temporary tables too.
std::vector<TableKey> ReadMariaKeys(MariaConnection& connection, const FieldInfo& field) {
  struct Key {
    TableKey columns;
    bool whole = true;
  };
  connection.Run("show keys from " + QuotedName(field.baseCatalog) + "." +
                 QuotedName(field.baseTable));
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
