#include "data/providers/odbc/driver/OdbcTypes.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include <sqlext.h>

#include "contract/text/Ascii.h"

namespace tessel::odbc {

namespace {

struct CodeRow {
  SQLSMALLINT code;
  TypeInfo info;
  TypeInfo unsignedInfo;
};

constexpr CodeRow Row(SQLSMALLINT code, DataType type, CellForm form) {
  return {code, {type, form}, {type, form}};
}

constexpr CodeRow codes[] = {
    {SQL_TINYINT,
     {DataType::TinyInt, CellForm::Integer},
     {DataType::UnsignedTinyInt, CellForm::Integer}},
    {SQL_SMALLINT,
     {DataType::SmallInt, CellForm::Integer},
     {DataType::UnsignedSmallInt, CellForm::Integer}},
    {SQL_INTEGER,
     {DataType::Integer, CellForm::Integer},
     {DataType::UnsignedInt, CellForm::Integer}},
    {SQL_BIGINT,
     {DataType::BigInt, CellForm::Integer},
     {DataType::UnsignedBigInt, CellForm::Unsigned}},
    Row(SQL_BIT, DataType::Boolean, CellForm::Boolean),
    Row(SQL_REAL, DataType::Single, CellForm::Single),
    Row(SQL_FLOAT, DataType::Double, CellForm::Double),
    Row(SQL_DOUBLE, DataType::Double, CellForm::Double),
    Row(SQL_NUMERIC, DataType::Numeric, CellForm::Decimal),
    Row(SQL_DECIMAL, DataType::Numeric, CellForm::Decimal),
    Row(SQL_TYPE_DATE, DataType::DBDate, CellForm::Date),
    Row(SQL_TYPE_TIME, DataType::DBTime, CellForm::Moment),
    Row(SQL_TYPE_TIMESTAMP, DataType::DBTimeStamp, CellForm::Moment),
    Row(SQL_CHAR, DataType::Char, CellForm::Text),
    Row(SQL_VARCHAR, DataType::VarChar, CellForm::Text),
    Row(SQL_LONGVARCHAR, DataType::LongVarChar, CellForm::Text),
    Row(SQL_WCHAR, DataType::WChar, CellForm::Text),
    Row(SQL_WVARCHAR, DataType::VarWChar, CellForm::Text),
    Row(SQL_WLONGVARCHAR, DataType::LongVarWChar, CellForm::Text),
    Row(SQL_GUID, DataType::Guid, CellForm::Text),
    Row(SQL_BINARY, DataType::Binary, CellForm::Binary),
    Row(SQL_VARBINARY, DataType::VarBinary, CellForm::Binary),
    Row(SQL_LONGVARBINARY, DataType::LongVarBinary, CellForm::Binary),
};

template <class Number>
std::optional<Number> Parse(std::string_view text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

/// Some drivers give a boolean as a byte 0 or 1, others as a digit or a letter.
std::optional<bool> ParseBoolean(std::string_view text) {
  constexpr std::string_view yes = "1tTyY\x01";
  constexpr std::string_view no("0fFnN\0", 6);
  if (text.empty()) return std::nullopt;
  if (yes.find(text.front()) != std::string_view::npos || text == "-1") return true;
  if (no.find(text.front()) != std::string_view::npos) return false;
  return std::nullopt;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// `text` has the shape given: "d" stands for a digit, "-" and ":" for themselves.
bool HasShape(std::string_view text, std::string_view shape) {
  return std::ranges::equal(
      text, shape, [](char have, char want) { return want == 'd' ? IsDigit(have) : have == want; });
}

bool LooksLikeMoment(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && IsDigit(text.front()) &&
         text.find_first_of("-:") != std::string_view::npos;
}

/// Without zeros at the end of a fraction that nothing follows.
std::string_view WithoutIdleFraction(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return text;
  if (!std::ranges::all_of(text.substr(point + 1), IsDigit)) return text;
  while (text.back() == '0') text.remove_suffix(1);
  if (text.back() == '.') text.remove_suffix(1);
  return text;
}

constexpr std::size_t dateSize = 10;

bool HasTBehindDate(std::string_view text) {
  return text.size() > dateSize && text[dateSize] == 'T' &&
         HasShape(text.substr(0, dateSize), "dddd-dd-dd");
}

void AppendMoment(CellForm form, std::string_view text, ColumnBuilder& column) {
  if (!LooksLikeMoment(text)) return column.AppendText(text);
  if (form == CellForm::Date && text.ends_with(" 00:00:00")) text.remove_suffix(9);
  text = WithoutIdleFraction(text);
  if (!HasTBehindDate(text)) return column.AppendMoment(text);
  std::string moment(text);
  moment[dateSize] = ' ';
  column.AppendMoment(moment);
}

void AppendBoolean(std::string_view text, ColumnBuilder& column) {
  if (const auto value = ParseBoolean(text)) column.AppendBoolean(*value);
  else column.AppendText(text);
}

template <class Number, class Append>
void AppendNumber(std::string_view text, ColumnBuilder& column, Append append) {
  if (const auto number = Parse<Number>(text)) append(*number);
  else column.AppendText(text);
}

}  // namespace

TypeInfo TypeOf(SQLSMALLINT code, bool isUnsigned, std::string_view typeName,
                const std::vector<TypeRule>& rules) {
  for (const TypeRule& rule : rules)
    if (EqualNoCase(rule.typeName, typeName)) return rule.info;
  const auto* found = std::ranges::find(codes, code, &CodeRow::code);
  if (found == std::end(codes)) return {};
  return isUnsigned ? found->unsignedInfo : found->info;
}

void AppendCell(CellForm form, std::string_view text, ColumnBuilder& column) {
  switch (form) {
    case CellForm::Boolean: return AppendBoolean(text, column);
    case CellForm::Integer:
      return AppendNumber<std::int64_t>(text, column, [&](auto n) { column.AppendInteger(n); });
    case CellForm::Unsigned:
      return AppendNumber<std::uint64_t>(text, column, [&](auto n) { column.AppendUnsigned(n); });
    case CellForm::Single:
      return AppendNumber<float>(text, column, [&](auto n) { column.AppendSingle(n); });
    case CellForm::Double:
      return AppendNumber<double>(text, column, [&](auto n) { column.AppendDouble(n); });
    case CellForm::Decimal: return column.AppendDecimal(text);
    case CellForm::Date:
    case CellForm::Moment: return AppendMoment(form, text, column);
    case CellForm::Text: return column.AppendText(text);
    case CellForm::Binary: return column.AppendBinary(std::as_bytes(std::span(text)));
  }
}

}  // namespace tessel::odbc
