#include "logic/import/ImportTarget.h"

#include <algorithm>
#include <utility>

#include "contract/data/DbmsName.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

std::string TextAt(const Recordset& rows, std::int64_t row, const char* field) {
  const auto found = rows.FindField(field);
  return found ? ToText(rows.ValueAt(row, *found)) : std::string();
}

}  // namespace

DataType ImportedType(SqlDialect dialect, DataType type) {
  const bool isWhole = type == DataType::TinyInt || type == DataType::SmallInt ||
                       type == DataType::Integer || type == DataType::UnsignedTinyInt;
  return dialect == SqlDialect::SQLite && isWhole ? DataType::BigInt : type;
}

bool ForgetsOfMoments(SqlDialect dialect, DataType type, std::string_view typeName) {
  const bool isMoment =
      type == DataType::DBDate || type == DataType::DBTime || type == DataType::DBTimeStamp;
  return dialect == SqlDialect::PostgreSQL && isMoment && !IsZonedType(typeName);
}

std::string CreateTableText(SqlDialect dialect, const NameQuoting& quoting,
                            const std::string& tableInSql, const std::vector<NewColumn>& columns) {
  std::string text = "create table " + tableInSql + " (";
  for (const NewColumn& column : columns)
    text.append(&column == columns.data() ? "" : ", ")
        .append(quoting.Name(column.name))
        .append(" ")
        .append(ColumnTypeName(dialect, column.type));
  return text.append(")").append(TableEnding(dialect));
}

ImportTarget::ImportTarget(std::shared_ptr<Connection> connection, dlgAsync& async)
    : connection_(std::move(connection)),
      async_(async),
      quoting_(connection_->ProviderProperties()),
      dialect_(DialectOf(DbmsName(*connection_))) {}

bool ImportTarget::ReadTables() {
  const auto rows = async_.ReadSchema(*connection_, SchemaRowset::Tables, {"", "", "", "TABLE"});
  if (rows == nullptr) return false;
  TakeTables(*rows);
  return true;
}

void ImportTarget::TakeTables(const Recordset& rows) {
  for (std::int64_t row = 0; row < rows.RecordCount(); ++row) {
    const Place place{TextAt(rows, row, "TABLE_CATALOG"), TextAt(rows, row, "TABLE_SCHEMA"),
                      TextAt(rows, row, "TABLE_NAME")};
    const bool needsSchema = EqualNoCase(TextAt(rows, row, "NEEDS_SCHEMA"), "True");
    const std::string& schema = place.schema.empty() ? place.catalog : place.schema;
    listed_.push_back(quoting_.ListedTable(needsSchema ? schema : "", place.name));
    places_.push_back(place);
  }
}

std::optional<std::string> ImportTarget::Find(std::string_view name) const {
  const auto found = std::ranges::find_if(
      listed_, [&](const std::string& listed) { return EqualNoCase(listed, name); });
  return found == listed_.end() ? std::nullopt : std::optional(*found);
}

std::vector<TableColumn> ImportTarget::ReadColumns(const std::string& listed) {
  const auto found = std::ranges::find(listed_, listed);
  if (found == listed_.end()) return {};
  const Place& place = places_[static_cast<std::size_t>(found - listed_.begin())];
  const auto rows = async_.ReadSchema(*connection_, SchemaRowset::Columns,
                                      {place.catalog, place.schema, place.name});
  if (rows == nullptr) return {};
  rows->SetSort("ORDINAL_POSITION");
  std::vector<TableColumn> columns;
  for (std::int64_t row = 0; row < rows->RecordCount(); ++row) {
    TableColumn& column = columns.emplace_back();
    column.name = TextAt(*rows, row, "COLUMN_NAME");
    column.typeName = TextAt(*rows, row, "TYPE_NAME");
    const ValueView type = rows->ValueAt(row, rows->FindField("DATA_TYPE").value());
    if (const auto* number = std::get_if<std::int64_t>(&type))
      column.type = static_cast<DataType>(*number);
  }
  return columns;
}

}  // namespace tessel
