#include "data/providers/SchemaRows.h"

#include <utility>

namespace tessel {

namespace {

FieldInfo Field(const char* name, DataType type = DataType::VarWChar) {
  FieldInfo field;
  field.name = name;
  field.type = type;
  return field;
}

std::vector<FieldInfo> FieldsOf(SchemaRowset kind) {
  if (kind == SchemaRowset::Catalogs) return {Field("CATALOG_NAME"), Field("DESCRIPTION")};
  std::vector<FieldInfo> fields = {Field("TABLE_CATALOG"), Field("TABLE_SCHEMA"),
                                   Field("TABLE_NAME")};
  if (kind == SchemaRowset::Tables) {
    fields.push_back(Field("TABLE_TYPE"));
    fields.push_back(Field("DESCRIPTION"));
    fields.push_back(Field("NEEDS_SCHEMA", DataType::Boolean));
    return fields;
  }
  fields.push_back(Field("COLUMN_NAME"));
  fields.push_back(Field("ORDINAL_POSITION", DataType::Integer));
  fields.push_back(Field("IS_NULLABLE", DataType::Boolean));
  fields.push_back(Field("DATA_TYPE", DataType::Integer));
  fields.push_back(Field("TYPE_NAME"));
  fields.push_back(Field("NEEDS_SCHEMA", DataType::Boolean));
  return fields;
}

}  // namespace

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

}  // namespace tessel
