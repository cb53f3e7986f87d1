#include "data/providers/odbc/OdbcRows.h"

#include <algorithm>
#include <charconv>

namespace tessel::odbc {

namespace {

constexpr std::size_t shortBuffer = 128;
constexpr std::size_t longBuffer = 1024;

SQLUSMALLINT Number(std::size_t index) { return static_cast<SQLUSMALLINT>(index + 1); }

bool IsUnsigned(const Statement& statement, SQLUSMALLINT column) {
  return statement.ColumnNumber(column, SQL_DESC_UNSIGNED).value_or(SQL_FALSE) == SQL_TRUE;
}

bool HasLength(CellForm form) { return form == CellForm::Text || form == CellForm::Binary; }

void DescribeSize(FieldInfo& field, const ColumnDescription& column, CellForm form,
                  const DriverProfile& profile) {
  if (form == CellForm::Decimal) {
    field.precision = static_cast<int>(std::min<SQLULEN>(column.size, 1'000'000));
    field.scale = column.digits;
  }
  const bool madeUp =
      std::ranges::find(profile.madeUpSizes, column.size) != profile.madeUpSizes.end();
  if (HasLength(form) && !madeUp) field.definedSize = static_cast<std::int64_t>(column.size);
}

/// What cannot stand in a condition, or be compared by "=", cannot find a row.
bool IsSearchable(const Statement& statement, SQLUSMALLINT column) {
  const auto told = statement.ColumnNumber(column, SQL_DESC_SEARCHABLE);
  return told.value_or(SQL_PRED_SEARCHABLE) >= SQL_PRED_BASIC;
}

/// A driver names the alias for expressions, so without a table there is no base column.
void DescribeBase(FieldInfo& field, const Statement& statement, SQLUSMALLINT column) {
  const auto text = [&](SQLUSMALLINT attribute) {
    return statement.ColumnText(column, attribute).value_or("");
  };
  field.baseTable = text(SQL_DESC_BASE_TABLE_NAME);
  if (field.baseTable.empty()) return;
  field.baseCatalog = text(SQL_DESC_CATALOG_NAME);
  field.baseSchema = text(SQL_DESC_SCHEMA_NAME);
  field.baseColumn = text(SQL_DESC_BASE_COLUMN_NAME);
}

bool MayBeWritten(const Statement& statement, SQLUSMALLINT column, std::int64_t untold) {
  const auto told = statement.ColumnNumber(column, SQL_DESC_UPDATABLE);
  return told.value_or(untold) != SQL_ATTR_READONLY;
}

ResultField DescribeField(const Statement& statement, SQLUSMALLINT number,
                          const DriverProfile& profile) {
  const ColumnDescription column = statement.Describe(number);
  FieldInfo field;
  field.name = column.name;
  field.nullable = column.nullable;
  field.typeName = statement.ColumnText(number, SQL_DESC_TYPE_NAME).value_or("");
  field.autoIncrement = statement.ColumnNumber(number, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
  const TypeInfo type =
      TypeOf(column.type, IsUnsigned(statement, number), field.typeName, profile.typeRules);
  field.type = type.type;
  DescribeSize(field, column, type.form, profile);
  if (profile.writing == nullptr) return {std::move(field), type.form};
  DescribeBase(field, statement, number);
  if (profile.tellsBaseColumns) {
    field.updatable =
        !field.baseTable.empty() && MayBeWritten(statement, number, SQL_ATTR_READONLY);
    return {std::move(field), type.form};
  }
  field.searchable = IsSearchable(statement, number);
  return {std::move(field), type.form, MayBeWritten(statement, number, SQL_ATTR_READWRITE_UNKNOWN)};
}

/// Reads a cell to its end into `cell`; false when it is null. The driver gives it in pieces.
bool ReadCell(Statement& statement, SQLUSMALLINT column, SQLSMALLINT cType, std::string& cell) {
  const std::size_t ending = cType == SQL_C_CHAR ? 1 : 0;  // The zero behind each piece of text.
  std::size_t have = 0;
  cell.assign(longBuffer, '\0');
  for (;;) {
    SQLLEN indicator = 0;
    const std::size_t room = cell.size() - have;
    const Outcome outcome =
        statement.GetData(column, cType, cell.data() + have, static_cast<SQLLEN>(room), &indicator);
    if (indicator == SQL_NULL_DATA) return false;
    if (outcome == Outcome::NoData) break;
    const auto left = static_cast<std::size_t>(indicator);
    if (indicator != SQL_NO_TOTAL && left <= room - ending) {
      have += left;
      break;
    }
    have += room - ending;
    cell.resize(indicator == SQL_NO_TOTAL ? 2 * cell.size() : have + left - (room - ending) + 1);
  }
  cell.resize(have);
  return true;
}

}  // namespace

std::vector<ResultField> DescribeFields(const Statement& statement, const DriverProfile& profile) {
  std::vector<ResultField> fields;
  const SQLSMALLINT count = statement.ColumnCount();
  for (SQLSMALLINT i = 1; i <= count; ++i)
    fields.push_back(DescribeField(statement, static_cast<SQLUSMALLINT>(i), profile));
  return fields;
}

RowReader::RowReader(Statement& statement, const std::vector<ResultField>& fields,
                     bool canReadBoundCells)
    : statement_(statement), columns_(fields.size()), bound_(canReadBoundCells) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].form = fields[i].form;
    columns_[i].cType = fields[i].form == CellForm::Binary ? SQL_C_BINARY : SQL_C_CHAR;
    if (bound_) Bind(i);
  }
}

void RowReader::Bind(std::size_t index) {
  Column& column = columns_[index];
  column.buffer.resize(HasLength(column.form) ? longBuffer : shortBuffer);
  statement_.Bind(Number(index), column.cType, column.buffer.data(),
                  static_cast<SQLLEN>(column.buffer.size()), &column.indicator);
}

std::optional<std::string_view> RowReader::Cell(std::size_t index) {
  Column& column = columns_[index];
  if (bound_) {
    if (column.indicator == SQL_NULL_DATA) return std::nullopt;
    const std::size_t room = column.buffer.size() - (column.cType == SQL_C_CHAR ? 1 : 0);
    const auto size = static_cast<std::size_t>(column.indicator);
    if (column.indicator != SQL_NO_TOTAL && size <= room)
      return std::string_view(column.buffer.data(), size);
  }
  if (!ReadCell(statement_, Number(index), column.cType, whole_)) return std::nullopt;
  return whole_;
}

bool RowReader::ReadRow(RowSink& rows) {
  if (!statement_.Fetch()) return false;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (const auto cell = Cell(i)) AppendCell(columns_[i].form, *cell, rows.Column(i));
    else rows.Column(i).AppendNull();
  }
  rows.EndRow();
  return true;
}

std::int64_t ToNumber(const std::optional<std::string>& text, std::int64_t fallback) {
  if (!text) return fallback;
  std::int64_t number = fallback;
  std::from_chars(text->data(), text->data() + text->size(), number);
  return number;
}

void ForEachRow(Statement& statement, std::size_t columns,
                const std::function<void(const TextRow&)>& take) {
  const auto there = static_cast<std::size_t>(statement.ColumnCount());
  std::string cell;
  while (statement.Fetch()) {
    TextRow row(columns);
    for (std::size_t i = 0; i < std::min(columns, there); ++i)
      if (ReadCell(statement, Number(i), SQL_C_CHAR, cell)) row[i] = cell;
    take(row);
  }
}

}  // namespace tessel::odbc
