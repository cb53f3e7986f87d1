// How the keys, indexes, views and routines of a database become known: by the provider's schema
// rowsets, row by row, under the progress window.

#include "logic/schema/structure/StructureReading.h"

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr std::int64_t rowsAtOnce = 512;  ///< Before the interface has its turn.

std::string Text(const Recordset& rows, std::int64_t row, std::size_t field) {
  const ValueView value = rows.ValueAt(row, field);
  return IsNull(value) ? std::string() : ToText(value);
}

bool Flag(const Recordset& rows, std::int64_t row, std::size_t field) {
  const ValueView value = rows.ValueAt(row, field);
  const bool* flag = std::get_if<bool>(&value);
  return flag != nullptr && *flag;
}

int Number(const Recordset& rows, std::int64_t row, std::size_t field) {
  const ValueView value = rows.ValueAt(row, field);
  const auto* number = std::get_if<std::int64_t>(&value);
  return number == nullptr ? 0 : static_cast<int>(*number);
}

/// Catalog, schema and name stand in three fields one behind another.
ObjectName Object(const Recordset& rows, std::int64_t row, std::size_t first) {
  return {Text(rows, row, first), Text(rows, row, first + 1), Text(rows, row, first + 2)};
}

std::size_t FieldOf(const Recordset& rows, std::string_view name) {
  return rows.FindField(name).value_or(0);
}

}  // namespace

// --- fields --------------------------------------------------------------------------------------

void StructureReading::BeginFields(const Recordset& rows) {
  at_ = {FieldOf(rows, "TABLE_CATALOG"), FieldOf(rows, "TABLE_SCHEMA"), FieldOf(rows, "TABLE_NAME"),
         FieldOf(rows, "COLUMN_NAME"),   FieldOf(rows, "IS_NULLABLE"),  FieldOf(rows, "TYPE_NAME")};
}

void StructureReading::TakeField(const Recordset& rows, std::int64_t row, std::string_view listed) {
  if (table_ == nullptr || table_->listed != listed) {
    table_ = &structure_.Table(listed);
    table_->object = {Text(rows, row, at_.catalog), Text(rows, row, at_.schema),
                      Text(rows, row, at_.table)};
    structure_.NoteObject(*table_);
  }
  table_->fields.push_back(
      {Text(rows, row, at_.column), Text(rows, row, at_.type), !Flag(rows, row, at_.nullable), 0});
}

// --- keys, indexes, views, routines --------------------------------------------------------------

bool StructureReading::ReadRest() {
  try {
    return Read(SchemaRowset::PrimaryKeys, &StructureReading::TakePrimaryKey) &&
           Read(SchemaRowset::ForeignKeys, &StructureReading::TakeForeignKey) &&
           Read(SchemaRowset::Indexes, &StructureReading::TakeIndex) &&
           Read(SchemaRowset::Tables, &StructureReading::TakeView) &&
           Read(SchemaRowset::Procedures, &StructureReading::TakeRoutine);
  } catch (const Error& error) {
    connection_.ClearErrors();
    structure_.notRead = error.Description();
    return true;
  }
}

bool StructureReading::Read(SchemaRowset kind, Take take) {
  const std::shared_ptr<Recordset> rows = async_.ReadSchema(connection_, kind, {});
  if (rows == nullptr) return false;
  const bool whole = async_.ForEach(
      "Reading keys and indexes...", &connection_, rows->RecordCount(),
      [&](std::int64_t row) { (this->*take)(*rows, row); }, rowsAtOnce);
  rows->Close();
  return whole;
}

void StructureReading::TakePrimaryKey(const Recordset& rows, std::int64_t row) {
  TableFacts* table = structure_.FindObject(Object(rows, row, 0));
  FieldFacts* field = table == nullptr ? nullptr : table->FindField(Text(rows, row, 3));
  if (field != nullptr) field->keyPlace = Number(rows, row, 4);
}

/// The rows of a key stand together; the first one begins it.
void StructureReading::TakeForeignKey(const Recordset& rows, std::int64_t row) {
  const TableFacts* to = structure_.FindObject(Object(rows, row, 0));
  const TableFacts* from = structure_.FindObject(Object(rows, row, 4));
  if (to == nullptr || from == nullptr) return;
  if (Number(rows, row, 8) <= 1)
    key_ = &structure_.AddForeignKey({Text(rows, row, 9), from->listed, {}, to->listed, {}});
  if (key_ == nullptr) return;
  key_->fields.push_back(Text(rows, row, 7));
  key_->toFields.push_back(Text(rows, row, 3));
}

void StructureReading::TakeIndex(const Recordset& rows, std::int64_t row) {
  TableFacts* table = structure_.FindObject(Object(rows, row, 0));
  if (table == nullptr) return;
  const std::string name = Text(rows, row, 3);
  if (table->indexes.empty() || table->indexes.back().name != name)
    table->indexes.push_back({name, Flag(rows, row, 4), {}});
  const std::string field = Text(rows, row, 6);
  table->indexes.back().fields.push_back(field.empty() ? "(expression)" : field);
}

/// Views of all kinds, but for those of the database itself.
void StructureReading::TakeView(const Recordset& rows, std::int64_t row) {
  const std::string type = Text(rows, row, 3);
  if (!type.ends_with("VIEW") || type.starts_with("SYSTEM")) return;
  const ObjectName object = Object(rows, row, 0);
  structure_.views.push_back({ListedName(object, Flag(rows, row, 5)), object, "VIEW"});
}

void StructureReading::TakeRoutine(const Recordset& rows, std::int64_t row) {
  const ObjectName object = Object(rows, row, 0);
  structure_.routines.push_back({object.name, object, Text(rows, row, 3)});
}

std::string StructureReading::ListedName(const ObjectName& object, bool needsSchema) const {
  if (!needsSchema) return object.name;
  return quoting_.ListedTable(object.schema.empty() ? object.catalog : object.schema, object.name);
}

}  // namespace tessel
