#include "logic/import/ImportMapping.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr std::array<ImportType, 12> types = {{
    {DataType::LongVarWChar, "Text"},
    {DataType::Integer, "Whole number"},
    {DataType::BigInt, "Whole number, 64 bits"},
    {DataType::Numeric, "Exact number"},
    {DataType::Double, "Floating number"},
    {DataType::Boolean, "True or false"},
    {DataType::DBDate, "Date"},
    {DataType::DBTime, "Time"},
    {DataType::DBTimeStamp, "Date and time"},
    {DataType::Guid, "GUID"},
    {DataType::LongVarBinary, "Bytes"},
    {DataType::SmallInt, "Whole number, 16 bits"},
}};

std::string FirstValue(const ImportScan& scan, std::size_t column) {
  for (const auto& record : scan.FirstRecords())
    if (column < record.size() && !IsNull(ToView(record[column])))
      return ToText(ToView(record[column]));
  return {};
}

}  // namespace

std::span<const ImportType> ImportTypes() { return types; }

std::string NameOfType(const ColumnType& type) {
  const auto found = std::ranges::find(types, type.type, &ImportType::type);
  std::string name = found == types.end() ? types.front().name : found->name;
  if (type.type == DataType::Numeric && type.precision > 0)
    name += " (" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
  return name;
}

void ImportMapping::AddSource(const ImportScan& scan, std::size_t number) {
  columns_.push_back({.source = scan.Columns()[number].name,
                      .target = {},
                      .type = scan.Columns()[number].guess.Type(),
                      .typeName = {},
                      .first = FirstValue(scan, number)});
}

ImportMapping ImportMapping::ToNew(const ImportScan& scan) {
  ImportMapping mapping;
  for (std::size_t i = 0; i < scan.Columns().size(); ++i) {
    mapping.AddSource(scan, i);
    Column& column = mapping.columns_.back();
    column.target = column.source;
    column.typeName = NameOfType(column.type);
  }
  return mapping;
}

ImportMapping ImportMapping::ToTable(const ImportScan& scan, std::vector<TableColumn> columns,
                                     bool byPlace) {
  ImportMapping mapping;
  mapping.isNew_ = false;
  mapping.table_ = std::move(columns);
  for (std::size_t i = 0; i < scan.Columns().size(); ++i) {
    mapping.AddSource(scan, i);
    const std::string& name = mapping.columns_.back().source;
    const auto found = std::ranges::find_if(
        mapping.table_, [&](const TableColumn& column) { return EqualNoCase(column.name, name); });
    if (byPlace && i < mapping.table_.size()) mapping.SetTarget(i, mapping.table_[i].name);
    else if (!byPlace && found != mapping.table_.end()) mapping.SetTarget(i, found->name);
  }
  return mapping;
}

void ImportMapping::SetTarget(std::size_t source, const std::string& target) {
  Column& column = columns_.at(source);
  column.target = target;
  if (isNew_) return;
  column.typeName.clear();
  const auto found = std::ranges::find(table_, target, &TableColumn::name);
  if (found == table_.end()) {
    column.target.clear();
    return;
  }
  column.type = {.type = found->type};
  column.typeName = found->typeName.empty() ? NameOfType(column.type) : found->typeName;
}

void ImportMapping::SetType(std::size_t source, DataType type) {
  Column& column = columns_.at(source);
  if (column.type.type != type) column.type = {.type = type};
  column.typeName = NameOfType(column.type);
}

std::string ImportMapping::Problem() const {
  std::set<std::string, std::less<>> taken;
  for (const Column& column : columns_)
    if (!column.target.empty() && !taken.insert(AsciiUpper(column.target)).second)
      return "Two columns go to \"" + column.target + "\".";
  if (taken.empty()) return "No column goes to one of the table: choose them in the list.";
  return {};
}

std::vector<ImportColumn> ImportMapping::Loaded() const {
  std::vector<ImportColumn> loaded;
  for (std::size_t i = 0; i < columns_.size(); ++i)
    if (!columns_[i].target.empty())
      loaded.push_back({i, {columns_[i].target, columns_[i].type.type}});
  return loaded;
}

std::vector<NewColumn> ImportMapping::Made() const {
  std::vector<NewColumn> made;
  for (const Column& column : columns_)
    if (!column.target.empty()) made.push_back({column.target, column.type});
  return made;
}

}  // namespace tessel
