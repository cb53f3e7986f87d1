#pragma once

#include <string_view>

#include "contract/data/Recordset.h"
#include "data/providers/postgresql/client/PqApi.h"
#include "data/rows/ColumnBuilder.h"

namespace tessel {

/// What the text of a cell is turned into.
enum class PostgresForm { Boolean, Integer, Single, Double, Decimal, Moment, Binary, Text };

/// Sets type, size, precision, scale and, where it is known here, the type's name; returns the form
/// of the cells. Types that the server's users or extensions made are text.
PostgresForm ApplyPostgresType(Oid type, int modifier, FieldInfo& field);

/// Adds a cell that is not null. What does not fit the form is kept as text. `text` must end with a
/// NUL that is not counted.
void AppendPostgresCell(PostgresForm form, std::string_view text, ColumnBuilder& cells);

}  // namespace tessel
