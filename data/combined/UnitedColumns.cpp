#include "data/combined/UnitedColumns.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

using enum DataType;

/// Types of one kind: each holds the values of those before it.
using Ladder = std::vector<DataType>;

const std::vector<Ladder>& Ladders() {
  static const std::vector<Ladder> ladders = {
      {TinyInt, SmallInt, Integer, BigInt},
      {UnsignedTinyInt, UnsignedSmallInt, UnsignedInt, UnsignedBigInt},
      {UnsignedTinyInt, SmallInt},
      {UnsignedTinyInt, UnsignedSmallInt, Integer},
      {Char, VarChar, LongVarChar, LongVarWChar},
      {Char, WChar, VarWChar, LongVarWChar},
      {VarChar, VarWChar},
      {Guid, VarWChar, LongVarWChar},
      {Binary, VarBinary, LongVarBinary},
      {DBDate, Date, DBTimeStamp},
  };
  return ladders;
}

/// The higher of both on a ladder that has both; nothing if none has.
std::optional<DataType> Climb(DataType a, DataType b) {
  for (const Ladder& ladder : Ladders()) {
    const auto higher = std::max(std::ranges::find(ladder, a), std::ranges::find(ladder, b));
    if (higher != ladder.end()) return *higher;
  }
  return std::nullopt;
}

bool IsFloating(DataType type) { return type == Single || type == Double; }

bool IsExact(DataType type) { return type == Currency || type == Decimal || type == Numeric; }

/// Of two numbers that are on no ladder.
DataType CommonNumber(DataType a, DataType b) {
  if (IsFloating(a) || IsFloating(b)) return Double;
  if (a == Numeric || b == Numeric) return Numeric;
  if (IsExact(a) || IsExact(b) || a == UnsignedBigInt || b == UnsignedBigInt) return Decimal;
  return BigInt;
}

bool IsTextType(DataType type) { return Climb(type, LongVarWChar).has_value(); }

/// What holds for a field of one part and for that of another one.
void Join(FieldInfo& field, const FieldInfo& other) {
  const auto keepSame = [](std::string& mine, const std::string& theirs) {
    if (mine != theirs) mine.clear();
  };
  field.type = CommonType(field.type, other.type);
  const bool knowsSize = field.definedSize != 0 && other.definedSize != 0;
  field.definedSize = knowsSize ? std::max(field.definedSize, other.definedSize) : 0;
  const bool knowsDigits = field.precision != 0 && other.precision != 0;
  field.precision = knowsDigits ? std::max(field.precision, other.precision) : 0;
  field.scale = std::max(field.scale, other.scale);
  field.nullable = field.nullable || other.nullable;
  field.searchable = field.searchable && other.searchable;
  keepSame(field.baseCatalog, other.baseCatalog);
  keepSame(field.baseSchema, other.baseSchema);
  keepSame(field.baseTable, other.baseTable);
  keepSame(field.baseColumn, other.baseColumn);
  keepSame(field.typeName, other.typeName);
}

FieldInfo AsReadOnly(FieldInfo field) {
  field.updatable = false;
  field.autoIncrement = false;
  field.isKey = false;
  return field;
}

/// The fields found so far by their names; several of one name in the order of appearance.
class FieldsByName {
 public:
  std::vector<std::size_t>& Of(const std::string& name) { return numbers_[AsciiUpper(name)]; }

 private:
  std::unordered_map<std::string, std::vector<std::size_t>> numbers_;
};

/// Which field each column of a part is; new ones are added.
std::vector<std::size_t> Place(const std::vector<FieldInfo>& part, FieldsByName& byName,
                               std::vector<FieldInfo>& fields) {
  std::unordered_map<std::string, std::size_t> seen;
  std::vector<std::size_t> places;
  for (const FieldInfo& column : part) {
    std::vector<std::size_t>& sameName = byName.Of(column.name);
    const std::size_t count = seen[AsciiUpper(column.name)]++;
    if (count == sameName.size()) {
      sameName.push_back(fields.size());
      fields.push_back(AsReadOnly(column));
    } else {
      Join(fields[sameName[count]], column);
    }
    places.push_back(sameName[count]);
  }
  return places;
}

}  // namespace

DataType CommonType(DataType a, DataType b) {
  if (a == b || b == Empty) return a;
  if (a == Empty) return b;
  if (const auto type = Climb(a, b)) return *type;
  if (IsNumericType(a) && IsNumericType(b)) return CommonNumber(a, b);
  if (!IsTextType(a) || !IsTextType(b)) return Variant;
  return a == LongVarChar || b == LongVarChar ? LongVarWChar : VarWChar;
}

UnitedColumns UniteColumns(const std::vector<const std::vector<FieldInfo>*>& parts) {
  UnitedColumns united;
  FieldsByName byName;
  std::vector<std::vector<std::size_t>> places;
  for (const auto* part : parts) places.push_back(Place(*part, byName, united.fields));
  for (const auto& placesOfPart : places) {
    auto& columns = united.columns.emplace_back(united.fields.size(), UnitedColumns::none);
    for (std::size_t i = 0; i < placesOfPart.size(); ++i) columns[placesOfPart[i]] = i;
  }
  for (std::size_t i = 0; i < united.fields.size(); ++i)
    if (std::ranges::any_of(united.columns,
                            [i](const auto& columns) { return columns[i] == UnitedColumns::none; }))
      united.fields[i].nullable = true;
  return united;
}

}  // namespace tessel
