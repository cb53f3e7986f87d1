#include "desktop/grid/cells/FieldText.h"

namespace tessel {

namespace {

std::string KindOf(DataType type) {
  if (IsNumericType(type)) return "number";
  if (IsBinaryType(type)) return "binary";
  switch (type) {
    case DataType::Boolean: return "true or false";
    case DataType::DBDate: return "date";
    case DataType::DBTime: return "time";
    case DataType::Date:
    case DataType::DBTimeStamp: return "date and time";
    case DataType::Variant:
    case DataType::Empty: return "any value";
    default: return "text";
  }
}

bool IsExact(DataType type) { return type == DataType::Decimal || type == DataType::Numeric; }

/// Behind the name of a type that does not tell its size itself.
std::string SizeOf(const FieldInfo& field) {
  if (field.typeName.find('(') != std::string::npos) return {};
  if (IsExact(field.type) && field.precision > 0)
    return "(" + std::to_string(field.precision) + "," + std::to_string(field.scale) + ")";
  const bool sized = !IsNumericType(field.type) && field.definedSize > 0;
  return sized && (KindOf(field.type) == "text" || IsBinaryType(field.type))
             ? "(" + std::to_string(field.definedSize) + ")"
             : std::string();
}

}  // namespace

std::string DescriptionOf(const FieldInfo& field) {
  std::string text = (field.typeName.empty() ? KindOf(field.type) : field.typeName) + SizeOf(field);
  if (field.isKey) text += ", key";
  if (field.autoIncrement) text += ", numbered by the database";
  if (!field.nullable) text += ", not null";
  if (!field.baseTable.empty())
    text += ", from " + field.baseTable + (field.baseColumn.empty() ? "" : "." + field.baseColumn);
  return text;
}

}  // namespace tessel
