#include "logic/schema/structure/StructureXml.h"

namespace tessel {

namespace {

void Set(pugi::xml_node node, const char* attribute, const std::string& value) {
  if (!value.empty()) node.append_attribute(attribute).set_value(value.c_str());
}

void Set(pugi::xml_node node, const char* attribute, int value) {
  if (value != 0) node.append_attribute(attribute).set_value(value);
}

void SetObject(pugi::xml_node node, const ObjectName& object) {
  Set(node, "object", object.name);
  Set(node, "schema", object.schema);
  Set(node, "catalog", object.catalog);
}

ObjectName ObjectOf(const pugi::xml_node& node) {
  return {node.attribute("catalog").value(), node.attribute("schema").value(),
          node.attribute("object").value()};
}

void WriteIndex(pugi::xml_node table, const IndexFacts& index) {
  pugi::xml_node element = table.append_child("Index");
  Set(element, "name", index.name);
  Set(element, "unique", index.unique ? 1 : 0);
  for (const std::string& field : index.fields) Set(element.append_child("Part"), "name", field);
}

void WriteKey(pugi::xml_node table, const ForeignKey& key) {
  pugi::xml_node element = table.append_child("ForeignKey");
  Set(element, "name", key.name);
  Set(element, "table", key.toTable);
  for (std::size_t i = 0; i < key.fields.size(); ++i) {
    pugi::xml_node part = element.append_child("Part");
    Set(part, "name", key.fields[i]);
    Set(part, "to", key.toFields[i]);
  }
}

void WriteObjectsOf(pugi::xml_node database, const char* element,
                    const std::vector<ObjectFacts>& objects) {
  for (const ObjectFacts& object : objects) {
    pugi::xml_node node = database.append_child(element);
    Set(node, "name", object.listed);
    SetObject(node, object.object);
    Set(node, "type", object.type);
  }
}

// --- reading -------------------------------------------------------------------------------------

FieldFacts ReadField(const pugi::xml_node& column) {
  return {column.attribute("name").value(), column.attribute("type").value(),
          column.attribute("notNull").as_bool(), column.attribute("key").as_int()};
}

IndexFacts ReadIndex(const pugi::xml_node& element) {
  IndexFacts index{element.attribute("name").value(), element.attribute("unique").as_bool(), {}};
  for (const pugi::xml_node part : element.children("Part"))
    index.fields.emplace_back(part.attribute("name").value());
  return index;
}

ForeignKey ReadKey(const pugi::xml_node& element, const std::string& table) {
  ForeignKey key{
      element.attribute("name").value(), table, {}, element.attribute("table").value(), {}};
  for (const pugi::xml_node part : element.children("Part")) {
    key.fields.emplace_back(part.attribute("name").value());
    key.toFields.emplace_back(part.attribute("to").value());
  }
  return key;
}

void ReadTable(const pugi::xml_node& element, Structure& structure) {
  const std::string listed = element.attribute("name").value();
  if (listed.empty() || element.attribute("object").empty()) return;
  TableFacts& table = structure.Table(listed);
  table.object = ObjectOf(element);
  structure.NoteObject(table);
  for (const pugi::xml_node column : element.children("Column"))
    table.fields.push_back(ReadField(column));
  for (const pugi::xml_node index : element.children("Index"))
    table.indexes.push_back(ReadIndex(index));
  for (const pugi::xml_node key : element.children("ForeignKey"))
    structure.AddForeignKey(ReadKey(key, listed));
}

std::vector<ObjectFacts> ReadObjects(const pugi::xml_node& database, const char* element) {
  std::vector<ObjectFacts> objects;
  for (const pugi::xml_node node : database.children(element))
    if (const std::string listed = node.attribute("name").value(); !listed.empty())
      objects.push_back({listed, ObjectOf(node), node.attribute("type").value()});
  return objects;
}

}  // namespace

/// The columns of the element are the fields of the table, in their order.
void WriteTableStructure(pugi::xml_node table, const TableFacts& facts,
                         const Structure& structure) {
  SetObject(table, facts.object);
  for (pugi::xml_node column : table.children("Column")) {
    const FieldFacts* field = facts.FindField(column.attribute("name").value());
    if (field == nullptr) continue;
    Set(column, "type", field->type);
    Set(column, "notNull", field->notNull ? 1 : 0);
    Set(column, "key", field->keyPlace);
  }
  for (const IndexFacts& index : facts.indexes) WriteIndex(table, index);
  for (const ForeignKey* key : structure.KeysFrom(facts.listed)) WriteKey(table, *key);
}

void WriteObjects(pugi::xml_node database, const Structure& structure) {
  WriteObjectsOf(database, "View", structure.views);
  WriteObjectsOf(database, "Routine", structure.routines);
}

Structure ReadStructure(pugi::xml_node database) {
  Structure structure;
  for (const pugi::xml_node table : database.children("Table")) ReadTable(table, structure);
  structure.views = ReadObjects(database, "View");
  structure.routines = ReadObjects(database, "Routine");
  return structure;
}

}  // namespace tessel
