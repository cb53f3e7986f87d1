#include "data/providers/sqlite/SqliteTables.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

using Names = std::vector<std::string>;

/// The first column of all rows of a statement that is told a table or index and its schema.
Names ReadNames(SqliteDatabase& database, std::string_view sql, const std::string& name,
                const std::string& schema) {
  SqliteStatement statement = database.PrepareOne(sql);
  statement.Bind(1, name);
  statement.Bind(2, schema);
  Names names;
  while (statement.Step()) names.emplace_back(statement.TextAt(0));
  return names;
}

void ReadColumns(SqliteDatabase& database, const std::string& schema, const std::string& table,
                 SqliteTable& facts, Names& primaryKey) {
  constexpr std::string_view sql =
      "select name, type, \"notnull\", pk, hidden from pragma_table_xinfo(?1, ?2) order by pk";
  SqliteStatement statement = database.PrepareOne(sql);
  statement.Bind(1, table);
  statement.Bind(2, schema);
  while (statement.Step()) {
    SqliteColumn column{std::string(statement.TextAt(0)), std::string(statement.TextAt(1)),
                        statement.IntegerAt(2) != 0, statement.IntegerAt(4) > 1};
    if (statement.IntegerAt(3) > 0) primaryKey.push_back(column.name);
    facts.columns.push_back(std::move(column));
  }
}

bool HasRowNumbers(SqliteDatabase& database, const std::string& schema, const std::string& table) {
  constexpr std::string_view sql =
      "select type from pragma_table_list(?1) where schema = ?2 and not wr and type = 'table'";
  return !ReadNames(database, sql, table, schema).empty();
}

void AddRowNumber(const Names& primaryKey, SqliteTable& facts) {
  facts.keys.push_back({"rowid"});
  if (primaryKey.size() != 1) return;
  const SqliteColumn* column = facts.Find(primaryKey[0]);
  if (column != nullptr && EqualNoCase(column->declaredType, "INTEGER"))
    facts.rowNumberColumn = column->name;
}

void AddUniqueIndexes(SqliteDatabase& database, const std::string& schema, const std::string& table,
                      SqliteTable& facts) {
  constexpr std::string_view indexes =
      "select name from pragma_index_list(?1, ?2) where \"unique\" and not partial";
  constexpr std::string_view columns =
      "select coalesce(name, '') from pragma_index_xinfo(?1, ?2) where key";
  const auto neverNull = [&](const std::string& name) {
    const SqliteColumn* column = facts.Find(name);
    return column != nullptr && column->notNull;
  };
  for (const std::string& index : ReadNames(database, indexes, table, schema)) {
    Names names = ReadNames(database, columns, index, schema);
    if (std::ranges::all_of(names, neverNull)) facts.keys.push_back(std::move(names));
  }
}

}  // namespace

const SqliteColumn* SqliteTable::Find(std::string_view name) const {
  const auto found = std::ranges::find_if(
      columns, [&](const SqliteColumn& column) { return EqualNoCase(column.name, name); });
  return found == columns.end() ? nullptr : &*found;
}

SqliteTable ReadSqliteTable(SqliteDatabase& database, const std::string& schema,
                            const std::string& table) {
  SqliteTable facts;
  Names primaryKey;
  ReadColumns(database, schema, table, facts, primaryKey);
  if (!primaryKey.empty()) facts.keys.push_back(primaryKey);
  if (HasRowNumbers(database, schema, table)) AddRowNumber(primaryKey, facts);
  AddUniqueIndexes(database, schema, table, facts);
  return facts;
}

/// The plan has a line for each table that is gone through, and others for all that may show a row
/// more than once: compound queries and queries that are made into a table first.
bool ReadsOneTable(SqliteDatabase& database, const std::string& query) {
  constexpr std::array tableLines = {"SCAN ", "SEARCH ", "MULTI-INDEX OR"};
  constexpr std::array otherLines = {"COMPOUND", "MERGE", "CO-ROUTINE", "MATERIALIZE"};
  SqliteStatement plan = database.PrepareOne("explain query plan " + query);
  int tables = 0;
  while (plan.Step()) {
    if (plan.IntegerAt(1) != 0) continue;  // A step within a step above.
    const std::string_view line = plan.TextAt(3);
    const auto begins = [&](const char* word) { return line.starts_with(word); };
    if (std::ranges::any_of(otherLines, begins)) return false;
    if (std::ranges::any_of(tableLines, begins)) ++tables;
  }
  return tables == 1;
}

}  // namespace tessel
