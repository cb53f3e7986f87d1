#include "data/providers/SchemaRows.h"

#include <utility>

#include "contract/base/Error.h"

namespace tessel {

namespace {

FieldInfo Field(const char* name, DataType type = DataType::VarWChar) {
  FieldInfo field;
  field.name = name;
  field.type = type;
  return field;
}

std::vector<FieldInfo> FieldsOf(SchemaRowset kind) {
  const FieldInfo catalog = Field("TABLE_CATALOG");
  const FieldInfo schema = Field("TABLE_SCHEMA");
  const FieldInfo table = Field("TABLE_NAME");
  const FieldInfo column = Field("COLUMN_NAME");
  const FieldInfo place = Field("ORDINAL_POSITION", DataType::Integer);
  const FieldInfo needsSchema = Field("NEEDS_SCHEMA", DataType::Boolean);
  switch (kind) {
    case SchemaRowset::Catalogs: return {Field("CATALOG_NAME"), Field("DESCRIPTION")};
    case SchemaRowset::Tables:
      return {catalog, schema, table, Field("TABLE_TYPE"), Field("DESCRIPTION"), needsSchema};
    case SchemaRowset::Columns:
      return {catalog,
              schema,
              table,
              column,
              place,
              Field("IS_NULLABLE", DataType::Boolean),
              Field("DATA_TYPE", DataType::Integer),
              Field("TYPE_NAME"),
              needsSchema};
    case SchemaRowset::Indexes:
      return {catalog, schema, table, Field("INDEX_NAME"), Field("UNIQUE", DataType::Boolean),
              place,   column};
    case SchemaRowset::PrimaryKeys:
      return {catalog, schema, table, column, Field("ORDINAL", DataType::Integer)};
    case SchemaRowset::ForeignKeys:
      return {
          Field("PK_TABLE_CATALOG"), Field("PK_TABLE_SCHEMA"),  Field("PK_TABLE_NAME"),
          Field("PK_COLUMN_NAME"),   Field("FK_TABLE_CATALOG"), Field("FK_TABLE_SCHEMA"),
          Field("FK_TABLE_NAME"),    Field("FK_COLUMN_NAME"),   Field("ORDINAL", DataType::Integer),
          Field("FK_NAME")};
    case SchemaRowset::Procedures:
      return {Field("PROCEDURE_CATALOG"), Field("PROCEDURE_SCHEMA"), Field("PROCEDURE_NAME"),
              Field("PROCEDURE_TYPE")};
    case SchemaRowset::Definitions: return {Field("OBJECT_NAME"), Field("DEFINITION")};
  }
  return {};
}

}  // namespace

bool TellsStructure(SchemaRowset kind) {
  return kind != SchemaRowset::Catalogs && kind != SchemaRowset::Tables &&
         kind != SchemaRowset::Columns;
}

void RaiseNoRowset(const std::string& provider) {
  throw Error(errorNumber::notSupported, provider,
              "This connection does not tell keys, indexes, routines and definitions.");
}

SchemaRows::SchemaRows(SchemaRowset kind, std::vector<std::string> restrictions)
    : kind_(kind),
      restrictions_(std::move(restrictions)),
      fields_(FieldsOf(kind)),
      sink_(fields_.size()) {}

const std::string& SchemaRows::Restriction(std::size_t index) const {
  static const std::string none;
  return index < restrictions_.size() ? restrictions_[index] : none;
}

bool SchemaRows::Allows(std::size_t index, const OptionalText& value) const {
  const std::string& wanted = Restriction(index);
  return wanted.empty() || value == wanted;
}

void SchemaRows::Put(std::size_t field, const OptionalText& value) {
  if (value) sink_.Column(field).AppendText(*value);
  else sink_.Column(field).AppendNull();
}

void SchemaRows::AddCatalog(const std::string& name, const OptionalText& description) {
  if (!Allows(0, name)) return;
  Put(0, name);
  Put(1, description);
  sink_.EndRow();
}

void SchemaRows::AddTable(const SchemaTable& table) {
  if (!Allows(0, table.catalog) || !Allows(1, table.schema)) return;
  if (!Allows(2, table.name) || !Allows(3, table.type)) return;
  Put(0, table.catalog);
  Put(1, table.schema);
  Put(2, table.name);
  Put(3, table.type);
  Put(4, table.description);
  sink_.Column(5).AppendBoolean(table.needsSchema);
  sink_.EndRow();
}

void SchemaRows::AddColumn(const SchemaColumn& column) {
  if (!Allows(0, column.catalog) || !Allows(1, column.schema)) return;
  if (!Allows(2, column.table) || !Allows(3, column.name)) return;
  Put(0, column.catalog);
  Put(1, column.schema);
  Put(2, column.table);
  Put(3, column.name);
  sink_.Column(4).AppendInteger(column.ordinal);
  sink_.Column(5).AppendBoolean(column.nullable);
  sink_.Column(6).AppendInteger(static_cast<int>(column.type));
  Put(7, column.typeName);
  sink_.Column(8).AppendBoolean(column.needsSchema);
  sink_.EndRow();
}

void SchemaRows::AddKeyColumn(const SchemaKeyColumn& column) {
  if (!Allows(0, column.catalog) || !Allows(1, column.schema) || !Allows(2, column.table)) return;
  Put(0, column.catalog);
  Put(1, column.schema);
  Put(2, column.table);
  Put(3, column.column);
  sink_.Column(4).AppendInteger(column.ordinal);
  sink_.EndRow();
}

void SchemaRows::AddForeignColumn(const SchemaForeignColumn& column) {
  if (!Allows(0, column.toCatalog) || !Allows(1, column.toSchema)) return;
  if (!Allows(2, column.toTable) || !Allows(3, column.catalog)) return;
  if (!Allows(4, column.schema) || !Allows(5, column.table)) return;
  Put(0, column.toCatalog);
  Put(1, column.toSchema);
  Put(2, column.toTable);
  Put(3, column.toColumn);
  Put(4, column.catalog);
  Put(5, column.schema);
  Put(6, column.table);
  Put(7, column.column);
  sink_.Column(8).AppendInteger(column.ordinal);
  Put(9, column.key);
  sink_.EndRow();
}

void SchemaRows::AddIndexColumn(const SchemaIndexColumn& column) {
  if (!Allows(0, column.catalog) || !Allows(1, column.schema) || !Allows(2, column.table)) return;
  Put(0, column.catalog);
  Put(1, column.schema);
  Put(2, column.table);
  Put(3, column.index);
  sink_.Column(4).AppendBoolean(column.unique);
  sink_.Column(5).AppendInteger(column.ordinal);
  Put(6, column.column);
  sink_.EndRow();
}

void SchemaRows::AddRoutine(const SchemaRoutine& routine) {
  if (!Allows(0, routine.catalog) || !Allows(1, routine.schema)) return;
  if (!Allows(2, routine.name) || !Allows(3, routine.type)) return;
  Put(0, routine.catalog);
  Put(1, routine.schema);
  Put(2, routine.name);
  Put(3, routine.type);
  sink_.EndRow();
}

void SchemaRows::AddDefinition(const std::string& definition) {
  Put(0, Restriction(2));
  Put(1, definition);
  sink_.EndRow();
}

}  // namespace tessel
