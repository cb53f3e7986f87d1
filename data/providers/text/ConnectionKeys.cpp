#include "data/providers/text/ConnectionKeys.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"

namespace tessel {

ConnectionKeys ConnectionKeys::Parse(std::string_view connectionString) {
  ConnectionKeys keys;
  for (const ConnectionPart& part : ConnectionParts(connectionString, Wrapping::Braces)) {
    if (!part.hasValue || part.name.empty() || keys.Find(part.name) != nullptr) continue;
    keys.items_.push_back({std::string(part.name), BareValue(part.Value(), Wrapping::Braces),
                           std::string(part.Value())});
  }
  return keys;
}

ConnectionKey* ConnectionKeys::FindKey(std::string_view name) {
  const auto found = std::ranges::find_if(
      items_, [&](const ConnectionKey& key) { return EqualNoCase(key.name, name); });
  return found == items_.end() ? nullptr : &*found;
}

const std::string* ConnectionKeys::Find(std::string_view name) const {
  const ConnectionKey* key = const_cast<ConnectionKeys*>(this)->FindKey(name);
  return key == nullptr ? nullptr : &key->value;
}

const std::string* ConnectionKeys::FindAny(std::initializer_list<std::string_view> synonyms) const {
  for (const std::string_view name : synonyms)
    if (const std::string* value = Find(name)) return value;
  return nullptr;
}

std::string ConnectionKeys::Get(std::string_view name, std::string_view fallback) const {
  const std::string* value = Find(name);
  return value == nullptr ? std::string(fallback) : *value;
}

void ConnectionKeys::Set(std::string_view name, std::string_view value) {
  ConnectionKey* key = FindKey(name);
  if (key == nullptr) key = &items_.emplace_back(ConnectionKey{std::string(name), {}, {}});
  key->value = value;
  key->text = BracedValue(value);
}

void ConnectionKeys::Remove(std::string_view name) {
  std::erase_if(items_, [&](const ConnectionKey& key) { return EqualNoCase(key.name, name); });
}

std::string ConnectionKeys::Compose() const {
  std::string text;
  for (const ConnectionKey& key : items_) {
    if (!text.empty()) text += ';';
    text += key.name + "=" + key.text;
  }
  return text;
}

}  // namespace tessel
