#include "data/providers/ConnectionKeys.h"

#include <algorithm>
#include <utility>

#include "contract/base/Ascii.h"

namespace tessel {

namespace {

bool NeedsBraces(std::string_view value) {
  return value.find_first_of("{};=") != std::string_view::npos || TrimSpaces(value) != value;
}

/// Where the part that starts at `start` ends: at the next ";" outside of a braced value, or at the
/// end.
std::size_t PartEnd(std::string_view text, std::size_t start) {
  const std::size_t separator = text.find_first_of(";=", start);
  if (separator == std::string_view::npos || text[separator] == ';')
    return std::min(separator, text.size());
  std::size_t at = text.find_first_not_of(' ', separator + 1);
  if (at == std::string_view::npos || text[at] != '{')
    return std::min(text.find(';', separator), text.size());
  while ((at = text.find('}', at)) != std::string_view::npos) {
    if (at + 1 >= text.size() || text[at + 1] != '}') break;
    at += 2;
  }
  return std::min(text.find(';', std::min(at, text.size())), text.size());
}

std::string WithoutBraces(std::string_view text) {
  if (text.size() < 2 || text.front() != '{' || text.back() != '}') return std::string(text);
  std::string value;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    value += text[i];
    if (text[i] == '}' && text[i + 1] == '}' && i + 2 < text.size()) ++i;
  }
  return value;
}

}  // namespace

std::string BracedValue(std::string_view value) {
  if (!NeedsBraces(value)) return std::string(value);
  std::string braced = "{";
  for (const char c : value) {
    braced += c;
    if (c == '}') braced += '}';
  }
  return braced + "}";
}

ConnectionKeys ConnectionKeys::Parse(std::string_view connectionString) {
  ConnectionKeys keys;
  for (std::size_t start = 0; start < connectionString.size();) {
    const std::size_t end = PartEnd(connectionString, start);
    const std::string_view part = connectionString.substr(start, end - start);
    start = end + 1;
    const std::size_t equals = part.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = TrimSpaces(part.substr(0, equals));
    const std::string_view text = TrimSpaces(part.substr(equals + 1));
    if (name.empty() || keys.Find(name) != nullptr) continue;
    keys.items_.push_back({std::string(name), WithoutBraces(text), std::string(text)});
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
