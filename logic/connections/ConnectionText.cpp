#include "logic/connections/ConnectionText.h"

#include <algorithm>

#include "contract/base/Ascii.h"

namespace tessel {

namespace {

constexpr std::string_view stars = "*****";

/// What ends a value that begins so; 0 when nothing special does.
char EndOf(char first) {
  switch (first) {
    case '{': return '}';
    case '"':
    case '\'': return first;
    default: return '\0';
  }
}

/// The length of the value at the start of `text`, with the blanks before and after it.
std::size_t ValueLength(std::string_view text) {
  std::size_t at = std::min(text.find_first_not_of(' '), text.size());
  const char end = at == text.size() ? '\0' : EndOf(text[at]);
  if (end == '\0') return std::min(text.find(';'), text.size());
  while ((at = text.find(end, at + 1)) != std::string_view::npos) {
    if (!text.substr(at + 1).starts_with(end)) return std::min(text.find(';', at), text.size());
    ++at;
  }
  return text.size();
}

bool NamesPassword(std::string_view name) {
  const std::string upper = AsciiUpper(name);
  return std::ranges::any_of(
      std::initializer_list<std::string_view>{"PASSWORD", "PWD", "PASSWD", "PASSPHRASE"},
      [&](std::string_view word) { return upper.find(word) != std::string::npos; });
}

}  // namespace

std::vector<ConnectionPart> ConnectionParts(std::string_view connectionString) {
  std::vector<ConnectionPart> parts;
  std::string_view rest = connectionString;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of(";="), rest.size());
    const std::string_view name = TrimSpaces(rest.substr(0, end));
    const bool hasValue = end < rest.size() && rest[end] == '=';
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!hasValue) continue;
    const std::size_t length = ValueLength(rest);
    parts.push_back({name, TrimSpaces(rest.substr(0, length))});
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
  return parts;
}

std::string_view BareValue(std::string_view value) {
  const bool wrapped = value.size() >= 2 && EndOf(value.front()) == value.back();
  return wrapped ? value.substr(1, value.size() - 2) : value;
}

std::string WithoutPasswords(std::string_view connectionString) {
  std::string shown;
  std::size_t copied = 0;
  for (const ConnectionPart& part : ConnectionParts(connectionString)) {
    if (part.value.empty() || !NamesPassword(part.name)) continue;
    const auto start = static_cast<std::size_t>(part.value.data() - connectionString.data());
    shown.append(connectionString.substr(copied, start - copied)).append(stars);
    copied = start + part.value.size();
  }
  return shown.append(connectionString.substr(copied));
}

}  // namespace tessel
