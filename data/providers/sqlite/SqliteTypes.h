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

/// Binds a value to a parameter as the storage class that is nearest to it; the column's affinity
/// does the rest.
struct SqliteBinder {
  SqliteStatement& statement;
  int parameter;
  /// Texts and blobs are not copied: they stay where they are until the statement's next Reset.
  bool inPlace = false;

  void operator()(std::monostate /*null*/) const { statement.BindNull(parameter); }
  void operator()(bool value) const { statement.BindInteger(parameter, value ? 1 : 0); }
  void operator()(std::int64_t value) const { statement.BindInteger(parameter, value); }
  void operator()(std::uint64_t value) const;
  void operator()(float value) const { statement.BindReal(parameter, value); }
  void operator()(double value) const { statement.BindReal(parameter, value); }
  void operator()(DecimalView value) const { (*this)(value.digits); }
  void operator()(MomentView value) const { (*this)(value.text); }
  void operator()(std::string_view value) const {
    if (inPlace) statement.BindTextInPlace(parameter, value);
    else statement.BindText(parameter, value);
  }
  void operator()(BinaryView value) const {
    if (inPlace) statement.BindBlobInPlace(parameter, value.bytes);
    else statement.BindBlob(parameter, value.bytes);
  }
};

}  // namespace tessel
