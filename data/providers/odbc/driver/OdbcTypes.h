#pragma once

#include <string_view>
#include <vector>

#include <sql.h>

#include "contract/base/Value.h"
#include "data/rows/ColumnBuilder.h"

namespace tessel::odbc {

/// What the text of a cell, as the driver gives it, is turned into.
enum class CellForm {
  Boolean,
  Integer,
  Unsigned,
  Single,
  Double,
  Decimal,
  Date,
  Moment,
  Text,
  Binary
};

struct TypeInfo {
  DataType type = DataType::VarChar;
  CellForm form = CellForm::Text;
};

/// An exception: the server's name of a type and what it is, whatever type code the driver gives.
struct TypeRule {
  std::string_view typeName;
  TypeInfo info;
};

/// The type of a column, from the ODBC type code. An unknown code is text.
[[nodiscard]] TypeInfo TypeOf(SQLSMALLINT code, bool isUnsigned, std::string_view typeName,
                              const std::vector<TypeRule>& rules);

/// Adds a cell that is not null. A text that does not fit the form is kept as text; moments are
/// brought into their fixed form.
void AppendCell(CellForm form, std::string_view text, ColumnBuilder& column);

}  // namespace tessel::odbc
