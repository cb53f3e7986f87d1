#pragma once

#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/providers/sqlite/SqliteApi.h"

namespace tessel {

struct SqliteColumn {
  std::string name;
  std::string declaredType;
  bool notNull = false;
  bool generated = false;  ///< Computed from other columns: cannot be written.
};

/// What is known of a table. Names are compared without regard to ASCII case, as SQLite does.
struct SqliteTable {
  std::vector<SqliteColumn> columns;
  /// Each one a set of columns whose values name a row: the primary key, unique indexes of columns
  /// that are not null, the row number.
  std::vector<std::vector<std::string>> keys;
  std::string rowNumberColumn;  ///< The column that stands for the row number; may be empty.

  [[nodiscard]] const SqliteColumn* Find(std::string_view name) const;
};

/// Reads the facts of `table` in `database` ("main" or an attached one).
[[nodiscard]] SqliteTable ReadSqliteTable(SqliteDatabase& database, const std::string& schema,
                                          const std::string& table);

/// Whether a query reads one table only, once, and makes at most one row of each of its rows.
[[nodiscard]] bool ReadsOneTable(SqliteDatabase& database, const std::string& query);

}  // namespace tessel
