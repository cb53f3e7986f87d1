#include "logic/results/arrange/FilterText.h"

#include <string>
#include <utility>

#include "contract/text/Ascii.h"
#include "logic/text/find/FoundText.h"

namespace tessel {

namespace {

struct Sign {
  std::string_view text;
  Comparison comparison;
};

/// Longer ones before those that they begin with.
constexpr Sign signs[] = {{"<>", Comparison::NotEqual}, {"<=", Comparison::AtMost},
                          {">=", Comparison::AtLeast},  {"=", Comparison::Equal},
                          {"<", Comparison::Less},      {">", Comparison::More}};

const Sign* SignOf(std::string_view text) {
  for (const Sign& sign : signs)
    if (text.starts_with(sign.text) && text.size() > sign.text.size()) return &sign;
  return nullptr;
}

bool IsMoment(DataType type) {
  return type == DataType::DBDate || type == DataType::DBTime || type == DataType::DBTimeStamp ||
         type == DataType::Date;
}

std::optional<Value> AsNumber(std::string_view text) { return ParseValue(DataType::Numeric, text); }

/// A part of a moment is compared too: "2024-05" stands before all days of that month.
Value ValueFor(const FieldInfo& field, std::string_view text) {
  if (IsMoment(field.type)) return Moment{std::string(text)};
  const DataType type = IsNumericType(field.type) ? DataType::Numeric : field.type;
  if (type == DataType::Variant) return AsNumber(text).value_or(Value(std::string(text)));
  if (auto value = ParseValue(type, text)) return *std::move(value);
  throw Error(errorNumber::application, "Tessel",
              "'" + std::string(text) + "' is no value of the column '" + field.name + "'.");
}

Value ValueToCompare(std::string_view text, std::optional<std::size_t> field,
                     const Recordset& rows) {
  if (EqualNoCase(text, "NULL")) return {};
  if (field) return ValueFor(rows.Fields().at(*field), text);
  return AsNumber(text).value_or(Value(std::string(text)));
}

std::string_view WithoutQuotes(std::string_view text) {
  const bool quoted = text.size() > 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

std::optional<RowCondition> ConditionOf(std::string_view text, std::optional<std::size_t> field,
                                        const Recordset& rows, const FindOptions& options) {
  text = TrimSpaces(text);
  if (text.empty()) return std::nullopt;
  RowCondition condition{.field = field};
  const Sign* sign = options.regularExpression ? nullptr : SignOf(text);
  if (sign == nullptr) {
    condition.test = MakeTextTest(options.regularExpression ? text : WithoutQuotes(text), options);
    return condition;
  }
  condition.comparison = sign->comparison;
  condition.value =
      ValueToCompare(WithoutQuotes(TrimSpaces(text.substr(sign->text.size()))), field, rows);
  return condition;
}

}  // namespace tessel
