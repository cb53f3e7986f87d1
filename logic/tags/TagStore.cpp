#include "logic/tags/TagStore.h"

#include "logic/program/Characters.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

[[noreturn]] void RaiseTaken(std::string_view name) {
  RaiseAppError("There is already a tag '" + std::string(name) + "'.");
}

[[noreturn]] void RaiseUndefined(std::string_view name) {
  RaiseAppError("Undefined tag: '" + std::string(name) + "'");
}

}  // namespace

std::string TagStore::KeyOf(std::string_view name) { return UpperCase(name); }

bool TagStore::Has(std::string_view name) const { return tags_.contains(KeyOf(name)); }

void TagStore::Add(std::string_view name) {
  if (!tags_.try_emplace(KeyOf(name)).second) RaiseTaken(name);
}

void TagStore::Rename(std::string_view oldName, std::string_view newName) {
  const std::string newKey = KeyOf(newName);
  const auto found = tags_.find(KeyOf(oldName));
  if (found == tags_.end()) RaiseUndefined(oldName);
  if (found->first == newKey) return;
  if (tags_.contains(newKey)) RaiseTaken(newName);
  auto tag = tags_.extract(found);
  tag.key() = newKey;
  tags_.insert(std::move(tag));
}

void TagStore::Remove(std::string_view name) { tags_.erase(KeyOf(name)); }

const TagStore::Values& TagStore::ValuesOf(std::string_view name) const {
  static const Values none;
  const auto found = tags_.find(KeyOf(name));
  return found == tags_.end() ? none : found->second;
}

void TagStore::SetCurrent(std::string_view name, std::string value) {
  const auto found = tags_.find(KeyOf(name));
  if (found == tags_.end()) RaiseUndefined(name);
  Values& values = found->second;
  std::erase(values, value);
  values.push_back(std::move(value));
}

}  // namespace tessel
