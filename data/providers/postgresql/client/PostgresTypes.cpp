#include "data/providers/postgresql/client/PostgresTypes.h"

#include <algorithm>
#include <string>

#include "data/rows/TextCells.h"

namespace tessel {

namespace {

/// The types that are more than text, or a text of their own; by the number the server gives them.
struct TypeRow {
  Oid oid;
  std::string_view name;
  DataType type;
  PostgresForm form = PostgresForm::Text;
};

constexpr Oid charOid = 18;
constexpr Oid nameOid = 19;
constexpr Oid bpcharOid = 1042;
constexpr Oid varcharOid = 1043;
constexpr Oid bitOid = 1560;
constexpr Oid varbitOid = 1562;
constexpr Oid numericOid = 1700;

constexpr TypeRow typeRows[] = {
    {16, "boolean", DataType::Boolean, PostgresForm::Boolean},
    {17, "bytea", DataType::LongVarBinary, PostgresForm::Binary},
    {charOid, "\"char\"", DataType::WChar},
    {nameOid, "name", DataType::VarWChar},
    {20, "bigint", DataType::BigInt, PostgresForm::Integer},
    {21, "smallint", DataType::SmallInt, PostgresForm::Integer},
    {23, "integer", DataType::Integer, PostgresForm::Integer},
    {25, "text", DataType::LongVarWChar},
    {26, "oid", DataType::UnsignedInt, PostgresForm::Integer},
    {114, "json", DataType::LongVarWChar},
    {142, "xml", DataType::LongVarWChar},
    {700, "real", DataType::Single, PostgresForm::Single},
    {701, "double precision", DataType::Double, PostgresForm::Double},
    {790, "money", DataType::VarWChar},
    {869, "inet", DataType::VarWChar},
    {1007, "integer[]", DataType::LongVarWChar},
    {1009, "text[]", DataType::LongVarWChar},
    {bpcharOid, "character", DataType::WChar},
    {varcharOid, "character varying", DataType::VarWChar},
    {1082, "date", DataType::DBDate, PostgresForm::Moment},
    {1083, "time without time zone", DataType::DBTime, PostgresForm::Moment},
    {1114, "timestamp without time zone", DataType::DBTimeStamp, PostgresForm::Moment},
    {1184, "timestamp with time zone", DataType::DBTimeStamp, PostgresForm::Moment},
    {1186, "interval", DataType::VarWChar},
    {1266, "time with time zone", DataType::DBTime, PostgresForm::Moment},
    {bitOid, "bit", DataType::VarWChar},
    {varbitOid, "bit varying", DataType::VarWChar},
    {numericOid, "numeric", DataType::Numeric, PostgresForm::Decimal},
    {2950, "uuid", DataType::Guid},
    {3802, "jsonb", DataType::LongVarWChar},
};

constexpr int headerSize = 4;  // Of a value; modifiers of some types count it.

void ApplyNumericModifier(int modifier, FieldInfo& field) {
  constexpr unsigned scaleMask = 0x7FF;
  constexpr int scaleSign = 0x400;
  if (modifier < headerSize) return;
  const auto bits = static_cast<unsigned>(modifier - headerSize);
  field.precision = static_cast<int>(bits >> 16U);
  field.scale = (static_cast<int>(bits & scaleMask) ^ scaleSign) - scaleSign;
}

void ApplyModifier(Oid type, int modifier, FieldInfo& field) {
  switch (type) {
    case charOid: field.definedSize = 1; return;
    case nameOid: field.definedSize = 63; return;
    case numericOid: return ApplyNumericModifier(modifier, field);
    case bpcharOid:
    case varcharOid: field.definedSize = std::max(modifier - headerSize, 0); return;
    case bitOid:
    case varbitOid: field.definedSize = std::max(modifier, 0); return;
    default: return;
  }
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
}

/// The text goes on with "-dd-dd" (or ":dd:dd") at `at`.
bool HasTwoPairs(std::string_view text, std::size_t at, char separator) {
  return text.size() >= at + 6 && text[at] == separator && IsDigit(text[at + 1]) &&
         IsDigit(text[at + 2]) && text[at + 3] == separator && IsDigit(text[at + 4]) &&
         IsDigit(text[at + 5]);
}

/// In the fixed form, in whose place other settings of DateStyle put others.
bool IsMoment(std::string_view text) {
  if (text == "infinity" || text == "-infinity") return true;
  const std::size_t first = CountDigits(text);
  return (first >= 4 && HasTwoPairs(text, first, '-')) || (first == 2 && HasTwoPairs(text, 2, ':'));
}

}  // namespace

PostgresForm ApplyPostgresType(Oid type, int modifier, FieldInfo& field) {
  const auto* found = std::ranges::find(typeRows, type, &TypeRow::oid);
  if (found == std::end(typeRows)) return PostgresForm::Text;
  field.type = found->type;
  field.typeName = found->name;
  ApplyModifier(type, modifier, field);
  return found->form;
}

void AppendPostgresCell(PostgresForm form, std::string_view text, ColumnBuilder& cells) {
  switch (form) {
    case PostgresForm::Boolean: return cells.AppendBoolean(text == "t");
    case PostgresForm::Integer: return AppendIntegerText(text, cells);
    case PostgresForm::Single: return AppendSingleText(text, cells);
    case PostgresForm::Double: return AppendDoubleText(text, cells);
    case PostgresForm::Decimal: return cells.AppendDecimal(text);
    case PostgresForm::Moment:
      return IsMoment(text) ? cells.AppendMoment(text) : cells.AppendText(text);
    case PostgresForm::Binary: return cells.AppendBinary(PqBytes(text).View());
    case PostgresForm::Text: return cells.AppendText(text);
  }
}

}  // namespace tessel
