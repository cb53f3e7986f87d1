#pragma once

#include <string_view>

#include "contract/data/Recordset.h"
#include "data/providers/sqlite/SqliteApi.h"
#include "data/rows/ColumnBuilder.h"

namespace tessel {

/// What becomes of the cells of a column beyond what SQLite itself says of each.
enum class SqliteForm {
  Plain,
  Boolean,  ///< The whole numbers 0 and 1 are False and True.
  Moment,   ///< A text in the fixed form of a date or time is one.
  Decimal,  ///< A text that is a number is an exact decimal.
};

/// Sets type, size, precision and scale of `field` by a declared type, such as "VARCHAR(20)", and
/// returns the form of its cells. An empty declaration leaves the field alone.
SqliteForm ApplyDeclaredType(std::string_view declared, FieldInfo& field);

/// The type of a column that declares none, by one of its values.
[[nodiscard]] DataType TypeOfStorage(SqliteStorage storage);

/// Adds a cell of the current row. What does not fit the form stays what SQLite says it is.
void AppendSqliteCell(const SqliteStatement& statement, int column, SqliteForm form,
                      ColumnBuilder& cells);

}  // namespace tessel
