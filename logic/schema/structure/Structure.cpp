#include "logic/schema/structure/Structure.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// The schema tells tables of one name apart, or else the catalog.
std::string ObjectKey(const ObjectName& object) {
  return (object.schema.empty() ? object.catalog : object.schema) + '\0' + object.name;
}

}  // namespace

const FieldFacts* TableFacts::FindField(std::string_view name) const {
  for (const FieldFacts& field : fields)
    if (EqualNoCase(field.name, name)) return &field;
  return nullptr;
}

FieldFacts* TableFacts::FindField(std::string_view name) {
  return const_cast<FieldFacts*>(std::as_const(*this).FindField(name));
}

std::vector<std::string> TableFacts::KeyFields() const {
  std::vector<const FieldFacts*> parts;
  for (const FieldFacts& field : fields)
    if (field.keyPlace > 0) parts.push_back(&field);
  std::ranges::sort(parts, {}, &FieldFacts::keyPlace);
  std::vector<std::string> names;
  for (const FieldFacts* part : parts) names.push_back(part->name);
  return names;
}

TableFacts& Structure::Table(std::string_view listed) {
  const auto [place, added] = tables_.try_emplace(std::string(listed));
  if (added) {
    place->second.listed = listed;
    order_.push_back(&place->second);
  }
  return place->second;
}

const TableFacts* Structure::FindTable(std::string_view listed) const {
  const auto found = tables_.find(std::string(listed));
  return found == tables_.end() ? nullptr : &found->second;
}

TableFacts* Structure::FindObject(const ObjectName& object) {
  const auto found = objects_.find(ObjectKey(object));
  return found == objects_.end() ? nullptr : found->second;
}

void Structure::NoteObject(TableFacts& table) { objects_[ObjectKey(table.object)] = &table; }

ForeignKey& Structure::AddForeignKey(ForeignKey key) {
  keysFrom_[key.table].push_back(foreignKeys_.size());
  return foreignKeys_.emplace_back(std::move(key));
}

std::vector<const ForeignKey*> Structure::KeysFrom(std::string_view table) const {
  std::vector<const ForeignKey*> keys;
  const auto found = keysFrom_.find(std::string(table));
  if (found == keysFrom_.end()) return keys;
  for (const std::size_t place : found->second) keys.push_back(&foreignKeys_[place]);
  return keys;
}

std::vector<const ForeignKey*> Structure::KeysOf(std::string_view table,
                                                 std::string_view field) const {
  std::vector<const ForeignKey*> keys = KeysFrom(table);
  std::erase_if(keys, [field](const ForeignKey* key) {
    return std::ranges::none_of(
        key->fields, [field](const std::string& part) { return EqualNoCase(part, field); });
  });
  return keys;
}

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

}  // namespace tessel
