#include "logic/schema/SchemaTree.h"

#include <charconv>

#include "logic/program/Characters.h"

namespace tessel {

namespace {

constexpr int databaseImage = 1;
constexpr int tableImage = 2;
constexpr int fieldImage = 3;
constexpr int viewImage = 4;
constexpr int indexImage = 5;
constexpr int routineImage = 6;

void AppendAll(WordList& words, const std::vector<std::string>& names) {
  words.insert(words.end(), names.begin(), names.end());
}

}  // namespace

NodeKind KindOfNode(std::string_view key) {
  switch (key.empty() ? '\0' : key.front()) {
    case 'd': return NodeKind::Database;
    case 't': return NodeKind::Table;
    case 'f': return NodeKind::Field;
    case 'g': return NodeKind::Group;
    case 'v': return NodeKind::View;
    case 'i': return NodeKind::Index;
    case 'r': return NodeKind::Routine;
    default: return NodeKind::None;
  }
}

std::string DatabaseNodeKey(int windowNumber) { return "d" + std::to_string(windowNumber); }

std::string TableNodeKey(std::string_view databaseKey, std::string_view table) {
  return "t" + std::string(databaseKey) + "." + UpperCase(table);
}

std::string FieldNodeKey(std::string_view tableKey, std::string_view field) {
  const std::string name = UpperCase(field);
  std::string key;
  key.reserve(tableKey.size() + 1 + name.size());
  return key.append("f").append(tableKey.substr(1)).append(".").append(name);
}

int WindowNumberOf(std::string_view databaseKey) {
  int number = 0;
  if (KindOfNode(databaseKey) == NodeKind::Database)
    std::from_chars(databaseKey.data() + 1, databaseKey.data() + databaseKey.size(), number);
  return number;
}

void SchemaTree::AddDatabase(const std::string& key, const std::string& text,
                             std::optional<Color> mark) {
  if (!view_.Add("", {key, text, databaseImage, false})) return;
  marks_[key] = mark;
  view_.SetMark(key, mark);
}

void SchemaTree::RemoveDatabase(const std::string& key) {
  view_.Remove(key);
  marks_.erase(key);
  ForgetBelow(key);
  vocabulary_.RemoveQuoting(key);
}

void SchemaTree::RefreshDatabase(const std::string& key) {
  ForgetBelow(key);
  if (!view_.Children(key).empty()) {
    const bool selected = DatabaseOf(view_.SelectedKey()) == key;
    const std::string text = view_.Text(key);
    view_.Remove(key);
    AddDatabase(key, text, marks_[key]);
    if (selected) view_.SelectNode(key);
  }
  view_.SetExpanded(key, false);
}

void SchemaTree::UseQuoting(const std::string& databaseKey, const Connection& connection) {
  if ((connection.State() & objectState::open) != 0)
    vocabulary_.SetQuoting(databaseKey, NameQuoting(connection.ProviderProperties()));
}

void SchemaTree::ForgetBelow(const std::string& databaseKey) {
  Vocabulary::RemoveList(vocabulary_.Tables(), databaseKey);
  Vocabulary::RemoveList(vocabulary_.Fields(), databaseKey);
  structures_.erase(databaseKey);
}

void SchemaTree::AddTables(const std::string& databaseKey, const std::vector<std::string>& names) {
  std::vector<TreeNode> nodes;
  nodes.reserve(names.size());
  for (const std::string& name : names)
    nodes.push_back({TableNodeKey(databaseKey, name), name, tableImage});
  view_.AddChildren(databaseKey, std::move(nodes));
  AppendAll(Vocabulary::ListNamed(vocabulary_.Tables(), databaseKey), names);
}

void SchemaTree::AddFields(const std::string& tableKey, const std::vector<std::string>& names) {
  std::vector<TreeNode> nodes;
  nodes.reserve(names.size());
  for (const std::string& name : names)
    nodes.push_back({FieldNodeKey(tableKey, name), name, fieldImage});
  view_.AddChildren(tableKey, std::move(nodes));
  AppendAll(Vocabulary::ListNamed(vocabulary_.Fields(), view_.Parent(tableKey)), names);
}

std::string SchemaTree::DatabaseOf(std::string key) const {
  while (!key.empty() && KindOfNode(key) != NodeKind::Database) key = view_.Parent(key);
  return key;
}

Schema SchemaTree::Tables(const std::string& databaseKey) const {
  Schema schema;
  for (const std::string& tableKey : TableKeys(databaseKey)) {
    TableSchema table{view_.Text(tableKey), {}};
    for (const std::string& key : view_.Children(tableKey))
      if (KindOfNode(key) == NodeKind::Field) table.fields.push_back(view_.Text(key));
    schema.push_back(std::move(table));
  }
  return schema;
}

std::vector<std::string> SchemaTree::TableKeys(const std::string& databaseKey) const {
  std::vector<std::string> keys = view_.Children(databaseKey);
  std::erase_if(keys, [](const std::string& key) { return KindOfNode(key) != NodeKind::Table; });
  return keys;
}

std::vector<std::string> SchemaTree::CheckedFields(const std::string& tableKey) const {
  std::vector<std::string> fields;
  for (const std::string& key : view_.Children(tableKey))
    if (view_.Checked(key)) fields.push_back(view_.Text(key));
  return fields;
}

void SchemaTree::CheckFields(const std::string& tableKey, bool checked) {
  for (const std::string& key : view_.Children(tableKey))
    if (KindOfNode(key) == NodeKind::Field) view_.SetChecked(key, checked);
}

// --- structure -----------------------------------------------------------------------------------

const Structure* SchemaTree::FindStructure(const std::string& databaseKey) const {
  const auto found = structures_.find(databaseKey);
  return found == structures_.end() ? nullptr : &found->second;
}

void SchemaTree::AddIndexes(const std::string& databaseKey, const TableFacts& table) {
  const std::string tableKey = TableNodeKey(databaseKey, table.listed);
  if (table.indexes.empty() || !view_.Exists(tableKey)) return;
  std::vector<TreeNode> nodes;
  for (const IndexFacts& index : table.indexes) {
    std::string key = FieldNodeKey(tableKey, index.name);
    key.front() = 'i';
    nodes.push_back({std::move(key), index.name, indexImage, false});
  }
  view_.AddChildren(tableKey, std::move(nodes));
}

void SchemaTree::AddObjects(const std::string& databaseKey) {
  const Structure& structure = StructureOf(databaseKey);
  AddGroup(databaseKey, "Views", structure.views, 'v', viewImage);
  AddGroup(databaseKey, "Routines", structure.routines, 'r', routineImage);
  WordList& words = Vocabulary::ListNamed(vocabulary_.Tables(), databaseKey);
  for (const ObjectFacts& view : structure.views) words.push_back(view.listed);
}

void SchemaTree::AddGroup(const std::string& databaseKey, const char* text,
                          const std::vector<ObjectFacts>& objects, char kind, int image) {
  if (objects.empty()) return;
  std::string group = TableNodeKey(databaseKey, text);
  group.front() = 'g';
  view_.Add(databaseKey, {group, text, 0, false});
  std::vector<TreeNode> nodes;
  for (const ObjectFacts& object : objects) {
    std::string key = TableNodeKey(databaseKey, object.listed);
    key.front() = kind;
    nodes.push_back({std::move(key), object.listed, image, false});
  }
  view_.AddChildren(group, std::move(nodes));
}

const ObjectFacts* SchemaTree::ObjectOf(const std::string& key) const {
  const NodeKind kind = KindOfNode(key);
  const Structure* structure = FindStructure(DatabaseOf(key));
  if (structure == nullptr || (kind != NodeKind::View && kind != NodeKind::Routine)) return nullptr;
  const std::string text = view_.Text(key);
  for (const ObjectFacts& object : kind == NodeKind::View ? structure->views : structure->routines)
    if (object.listed == text) return &object;
  return nullptr;
}

}  // namespace tessel
