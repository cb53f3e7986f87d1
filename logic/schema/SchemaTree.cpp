#include "logic/schema/SchemaTree.h"

#include <charconv>

#include "logic/program/Characters.h"

namespace tessel {

namespace {

constexpr int databaseImage = 1;
constexpr int tableImage = 2;
constexpr int fieldImage = 3;

void AppendAll(WordList& words, const std::vector<std::string>& names) {
  words.insert(words.end(), names.begin(), names.end());
}

}  // namespace

NodeKind KindOfNode(std::string_view key) {
  switch (key.empty() ? '\0' : key.front()) {
    case 'd': return NodeKind::Database;
    case 't': return NodeKind::Table;
    case 'f': return NodeKind::Field;
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
  ForgetWords(key);
  vocabulary_.RemoveQuoting(key);
}

void SchemaTree::RefreshDatabase(const std::string& key) {
  ForgetWords(key);
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

void SchemaTree::ForgetWords(const std::string& databaseKey) {
  Vocabulary::RemoveList(vocabulary_.Tables(), databaseKey);
  Vocabulary::RemoveList(vocabulary_.Fields(), databaseKey);
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
  for (const std::string& tableKey : view_.Children(databaseKey))
    schema.push_back({view_.Text(tableKey), view_.ChildTexts(tableKey)});
  return schema;
}

std::vector<std::string> SchemaTree::CheckedFields(const std::string& tableKey) const {
  std::vector<std::string> fields;
  for (const std::string& key : view_.Children(tableKey))
    if (view_.Checked(key)) fields.push_back(view_.Text(key));
  return fields;
}

void SchemaTree::CheckFields(const std::string& tableKey, bool checked) {
  for (const std::string& key : view_.Children(tableKey)) view_.SetChecked(key, checked);
}

}  // namespace tessel
