#include "data/providers/mariadb/MariaTypes.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "contract/text/Ascii.h"
#include "data/rows/TextCells.h"

namespace tessel {

namespace {

struct TypeInfo {
  std::string_view name;
  DataType type = DataType::VarWChar;
  MariaForm form = MariaForm::Text;
};

struct NumberRow {
  enum_field_types code;
  TypeInfo plain;
  DataType unsignedType;
};

constexpr NumberRow numberRows[] = {
    {MYSQL_TYPE_TINY,
     {"tinyint", DataType::TinyInt, MariaForm::Integer},
     DataType::UnsignedTinyInt},
    {MYSQL_TYPE_SHORT,
     {"smallint", DataType::SmallInt, MariaForm::Integer},
     DataType::UnsignedSmallInt},
    {MYSQL_TYPE_INT24, {"mediumint", DataType::Integer, MariaForm::Integer}, DataType::UnsignedInt},
    {MYSQL_TYPE_LONG, {"int", DataType::Integer, MariaForm::Integer}, DataType::UnsignedInt},
    {MYSQL_TYPE_LONGLONG,
     {"bigint", DataType::BigInt, MariaForm::Integer},
     DataType::UnsignedBigInt},
    {MYSQL_TYPE_FLOAT, {"float", DataType::Single, MariaForm::Single}, DataType::Single},
    {MYSQL_TYPE_DOUBLE, {"double", DataType::Double, MariaForm::Double}, DataType::Double},
    {MYSQL_TYPE_DECIMAL, {"decimal", DataType::Numeric, MariaForm::Decimal}, DataType::Numeric},
    {MYSQL_TYPE_NEWDECIMAL, {"decimal", DataType::Numeric, MariaForm::Decimal}, DataType::Numeric},
};

struct CodeRow {
  enum_field_types code;
  TypeInfo info;
};

constexpr CodeRow codeRows[] = {
    {MYSQL_TYPE_YEAR, {"year", DataType::UnsignedSmallInt, MariaForm::Integer}},
    {MYSQL_TYPE_DATE, {"date", DataType::DBDate, MariaForm::Moment}},
    {MYSQL_TYPE_NEWDATE, {"date", DataType::DBDate, MariaForm::Moment}},
    {MYSQL_TYPE_TIME, {"time", DataType::DBTime, MariaForm::Moment}},
    {MYSQL_TYPE_DATETIME, {"datetime", DataType::DBTimeStamp, MariaForm::Moment}},
    {MYSQL_TYPE_TIMESTAMP, {"timestamp", DataType::DBTimeStamp, MariaForm::Moment}},
    {MYSQL_TYPE_BIT, {"bit", DataType::Binary, MariaForm::Binary}},
    {MYSQL_TYPE_JSON, {"json", DataType::LongVarWChar}},
    {MYSQL_TYPE_ENUM, {"enum", DataType::WChar}},
    {MYSQL_TYPE_SET, {"set", DataType::WChar}},
    {MYSQL_TYPE_GEOMETRY, {"geometry", DataType::LongVarBinary, MariaForm::Binary}},
    {MYSQL_TYPE_NULL, {"null", DataType::VarWChar}},
};

/// What the server calls other than what it keeps it as.
constexpr TypeInfo extendedRows[] = {
    {"uuid", DataType::Guid},
    {"json", DataType::LongVarWChar},
};

constexpr std::uint64_t tinySize = 255;
constexpr std::uint64_t plainSize = 65535;
constexpr std::uint64_t mediumSize = 16777215;

TypeInfo StringType(const MariaColumn& column) {
  if ((column.flags & ENUM_FLAG) != 0) return {"enum", DataType::WChar};
  if ((column.flags & SET_FLAG) != 0) return {"set", DataType::WChar};
  const bool isFixed = column.type == MYSQL_TYPE_STRING;
  if (column.isBinary)
    return {isFixed ? "binary" : "varbinary", isFixed ? DataType::Binary : DataType::VarBinary,
            MariaForm::Binary};
  return {isFixed ? "char" : "varchar", isFixed ? DataType::WChar : DataType::VarWChar};
}

/// All are told as one type; how much they may hold makes the difference.
TypeInfo LongType(const MariaColumn& column) {
  const std::array<std::string_view, 4> names =
      column.isBinary
          ? std::array<std::string_view, 4>{"tinyblob", "blob", "mediumblob", "longblob"}
          : std::array<std::string_view, 4>{"tinytext", "text", "mediumtext", "longtext"};
  const std::size_t which = column.size <= tinySize     ? 0
                            : column.size <= plainSize  ? 1
                            : column.size <= mediumSize ? 2
                                                        : 3;
  if (column.isBinary) return {names[which], DataType::LongVarBinary, MariaForm::Binary};
  return {names[which], DataType::LongVarWChar};
}

TypeInfo TypeOf(const MariaColumn& column) {
  const auto* extended = std::ranges::find(extendedRows, column.extendedType, &TypeInfo::name);
  if (extended != std::end(extendedRows)) return *extended;
  const auto* number = std::ranges::find(numberRows, column.type, &NumberRow::code);
  if (number != std::end(numberRows)) return number->plain;
  const auto* other = std::ranges::find(codeRows, column.type, &CodeRow::code);
  if (other != std::end(codeRows)) return other->info;
  switch (column.type) {
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_BLOB: return LongType(column);
    default: return StringType(column);
  }
}

/// Of numbers; "year" is one that is always so.
void ApplyUnsigned(const MariaColumn& column, MariaField& field) {
  const auto* number = std::ranges::find(numberRows, column.type, &NumberRow::code);
  if (number == std::end(numberRows) || (column.flags & UNSIGNED_FLAG) == 0) return;
  field.info.type = number->unsignedType;
  field.info.typeName += " unsigned";
  if (column.type == MYSQL_TYPE_LONGLONG) field.form = MariaForm::Unsigned;
}

/// The size of an exact number counts its sign and its point.
void ApplySize(const MariaColumn& column, MariaField& field) {
  if (field.form == MariaForm::Decimal) {
    const bool isUnsigned = (column.flags & UNSIGNED_FLAG) != 0;
    const auto signs = (isUnsigned ? 0U : 1U) + (column.decimals > 0 ? 1U : 0U);
    field.info.precision =
        static_cast<int>(column.size - std::min<std::uint64_t>(signs, column.size));
    field.info.scale = static_cast<int>(column.decimals);
  } else if (field.form == MariaForm::Text || field.form == MariaForm::Binary) {
    field.info.definedSize = static_cast<std::int64_t>(column.size);
  }
}

/// Its size is in bits.
void ApplyBit(const MariaColumn& column, MariaField& field) {
  if (column.type != MYSQL_TYPE_BIT) return;
  field.info.definedSize = static_cast<std::int64_t>((column.size + 7) / 8);
  if (column.size > 1) return;
  field.info.type = DataType::Boolean;
  field.form = MariaForm::Boolean;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes hours beyond a day and zero dates for moments too.
bool IsMoment(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return text.size() >= 2 && IsDigit(text[0]) && IsDigit(text[1]) &&
         text.find_first_of("-:") != std::string_view::npos;
}

void AppendMoment(std::string_view text, ColumnBuilder& cells) {
  if (IsMoment(text)) cells.AppendMoment(WithoutIdleFraction(text));
  else cells.AppendText(text);
}

void AppendBoolean(std::string_view text, ColumnBuilder& cells) {
  if (text.size() == 1 && (text[0] == 0 || text[0] == 1)) cells.AppendBoolean(text[0] == 1);
  else cells.AppendBinary(std::as_bytes(std::span(text)));
}

struct NameRow {
  std::string_view name;
  DataType type;
};

/// Names of types that results tell otherwise.
constexpr NameRow nameRows[] = {
    {"char", DataType::WChar},
    {"varchar", DataType::VarWChar},
    {"tinytext", DataType::LongVarWChar},
    {"text", DataType::LongVarWChar},
    {"mediumtext", DataType::LongVarWChar},
    {"longtext", DataType::LongVarWChar},
    {"binary", DataType::Binary},
    {"varbinary", DataType::VarBinary},
    {"tinyblob", DataType::LongVarBinary},
    {"blob", DataType::LongVarBinary},
    {"mediumblob", DataType::LongVarBinary},
    {"longblob", DataType::LongVarBinary},
    {"uuid", DataType::Guid},
    {"point", DataType::LongVarBinary},
    {"linestring", DataType::LongVarBinary},
    {"polygon", DataType::LongVarBinary},
};

}  // namespace

MariaField DescribeMariaColumn(const MariaColumn& column) {
  const TypeInfo type = TypeOf(column);
  MariaField field;
  field.info.name = column.name;
  field.info.type = type.type;
  field.info.typeName = type.name;
  field.form = type.form;
  field.info.nullable = (column.flags & NOT_NULL_FLAG) == 0;
  field.info.autoIncrement = (column.flags & AUTO_INCREMENT_FLAG) != 0;
  field.info.baseCatalog = column.baseCatalog;
  field.info.baseTable = column.baseTable;
  field.info.baseColumn = column.baseColumn;
  field.info.updatable = !column.baseTable.empty();
  ApplyUnsigned(column, field);
  ApplySize(column, field);
  ApplyBit(column, field);
  return field;
}

DataType MariaTypeOfName(std::string_view name, bool isUnsigned) {
  for (const NumberRow& row : numberRows)
    if (EqualNoCase(row.plain.name, name)) return isUnsigned ? row.unsignedType : row.plain.type;
  for (const CodeRow& row : codeRows)
    if (EqualNoCase(row.info.name, name)) return row.info.type;
  for (const NameRow& row : nameRows)
    if (EqualNoCase(row.name, name)) return row.type;
  return DataType::VarWChar;
}

void AppendMariaCell(MariaForm form, std::string_view text, ColumnBuilder& cells) {
  switch (form) {
    case MariaForm::Boolean: return AppendBoolean(text, cells);
    case MariaForm::Integer: return AppendIntegerText(text, cells);
    case MariaForm::Unsigned: return AppendUnsignedText(text, cells);
    case MariaForm::Single: return AppendSingleText(text, cells);
    case MariaForm::Double: return AppendDoubleText(text, cells);
    case MariaForm::Decimal: return cells.AppendDecimal(text);
    case MariaForm::Moment: return AppendMoment(text, cells);
    case MariaForm::Binary: return cells.AppendBinary(std::as_bytes(std::span(text)));
    case MariaForm::Text: return cells.AppendText(text);
  }
}

}  // namespace tessel
