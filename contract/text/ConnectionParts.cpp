#include "contract/text/ConnectionParts.h"

#include <algorithm>
#include <cstddef>

namespace tessel {

namespace {

/// What ends a value that begins so; 0 when it is not wrapped.
char EndOf(char first, Wrapping wrapping) {
  if (first == '{') return '}';
  const bool quote = first == '"' || first == '\'';
  return quote && wrapping == Wrapping::BracesAndQuotes ? first : '\0';
}

/// The length of the value at the start of `text`, with the blanks around it.
std::size_t ValueLength(std::string_view text, Wrapping wrapping) {
  std::size_t at = std::min(text.find_first_not_of(' '), text.size());
  const char end = at == text.size() ? '\0' : EndOf(text[at], wrapping);
  if (end == '\0') return std::min(text.find(';'), text.size());
  while ((at = text.find(end, at + 1)) != std::string_view::npos) {
    if (!text.substr(at + 1).starts_with(end)) return std::min(text.find(';', at), text.size());
    ++at;
  }
  return text.size();
}

/// Takes so many bytes off `text`, and the sign behind them.
std::string_view Take(std::string_view& text, std::size_t length) {
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(std::min(length + 1, text.size()));
  return taken;
}

}  // namespace

std::vector<ConnectionPart> ConnectionParts(std::string_view connectionString, Wrapping wrapping) {
  std::vector<ConnectionPart> parts;
  for (std::string_view rest = connectionString; !rest.empty();) {
    const std::size_t end = std::min(rest.find_first_of(";="), rest.size());
    ConnectionPart part;
    part.hasValue = end < rest.size() && rest[end] == '=';
    part.name = TrimSpaces(Take(rest, end));
    if (part.hasValue) part.text = Take(rest, ValueLength(rest, wrapping));
    parts.push_back(part);
  }
  return parts;
}

std::string BareValue(std::string_view value, Wrapping wrapping) {
  const char end = value.size() < 2 ? '\0' : EndOf(value.front(), wrapping);
  if (end == '\0' || value.back() != end) return std::string(value);
  const std::string_view inside = value.substr(1, value.size() - 2);
  std::string bare;
  for (std::size_t i = 0; i < inside.size(); ++i) {
    bare += inside[i];
    if (inside[i] == end && inside.substr(i + 1).starts_with(end)) ++i;
  }
  return bare;
}

std::string BracedValue(std::string_view value) {
  const bool plain = value.find_first_of("{};=") == std::string_view::npos;
  return plain && TrimSpaces(value) == value ? std::string(value) : InBraces(value);
}

std::string InBraces(std::string_view value) {
  std::string braced = "{";
  for (const char c : value) braced.append(c == '}' ? 2 : 1, c);
  return braced + "}";
}

}  // namespace tessel
