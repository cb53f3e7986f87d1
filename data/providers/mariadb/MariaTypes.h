#pragma once

#include <string_view>

#include "contract/data/Recordset.h"
#include "data/providers/mariadb/MariaApi.h"
#include "data/rows/ColumnBuilder.h"

namespace tessel {

/// What the bytes of a cell are turned into.
enum class MariaForm {
  Boolean,  ///< A byte 0 or 1.
  Integer,
  Unsigned,
  Single,
  Double,
  Decimal,
  Moment,
  Binary,
  Text
};

/// A result's column as a field, and the form of its cells.
struct MariaField {
  FieldInfo info;
  MariaForm form = MariaForm::Text;
};
[[nodiscard]] MariaField DescribeMariaColumn(const MariaColumn& column);

/// The type of a column by the server's name of it, such as "varchar", as the schema tells it.
[[nodiscard]] DataType MariaTypeOfName(std::string_view name, bool isUnsigned);

/// Adds a cell that is not null. What does not fit the form is kept as text.
void AppendMariaCell(MariaForm form, std::string_view text, ColumnBuilder& cells);

}  // namespace tessel
