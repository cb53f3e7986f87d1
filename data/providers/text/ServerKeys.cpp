#include "data/providers/text/ServerKeys.h"

#include <algorithm>
#include <charconv>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

struct Synonym {
  std::string_view name;
  std::string_view meaning;
};

constexpr Synonym synonyms[] = {
    {"Server", "Server"},
    {"Host", "Server"},
    {"Data Source", "Server"},
    {"Port", "Port"},
    {"Database", "Database"},
    {"Initial Catalog", "Database"},
    {"User ID", "User ID"},
    {"UID", "User ID"},
    {"User", "User ID"},
    {"Username", "User ID"},
    {"User Name", "User ID"},
    {"Password", "Password"},
    {"PWD", "Password"},
    {"Mode", "Mode"},
    {"SSL Mode", "SSL Mode"},
    {"Connect Timeout", "Connect Timeout"},
    {"Connection Timeout", "Connect Timeout"},
    {"Timeout", "Connect Timeout"},
    {"Application Name", "Application Name"},
};

constexpr std::string_view unused[] = {"Provider", "Persist Security Info"};

bool IsUnused(std::string_view name) {
  return std::ranges::any_of(unused, [&](std::string_view one) { return EqualNoCase(one, name); });
}

}  // namespace

std::string_view ServerKeyName(std::string_view name) {
  const auto* found = std::ranges::find_if(
      synonyms, [&](const Synonym& synonym) { return EqualNoCase(synonym.name, name); });
  return found == std::end(synonyms) ? name : found->meaning;
}

std::vector<ServerKey> ServerKeysOf(const ConnectionKeys& keys) {
  std::vector<ServerKey> result;
  for (const ConnectionKey& key : keys.Items()) {
    const std::string_view name = ServerKeyName(key.name);
    const auto isSame = [&](const ServerKey& other) { return EqualNoCase(other.name, name); };
    if (!IsUnused(name) && std::ranges::none_of(result, isSame))
      result.push_back({std::string(name), key.value});
  }
  return result;
}

std::chrono::seconds ToConnectTimeout(const std::string& value, const std::string& source) {
  int seconds = -1;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, seconds);
  if (error == std::errc() && stop == end && seconds >= 0) return std::chrono::seconds(seconds);
  throw Error(errorNumber::application, source,
              "The connect timeout must be a number of seconds, not '" + value + "'.");
}

void RaiseUnknownKey(const std::string& name, const std::string& source, const std::string& known) {
  throw Error(errorNumber::application, source,
              "There is no key '" + name + "' for " + source + ". The keys are: " + known + ".");
}

std::string ToSslMode(std::string_view value) {
  std::string mode;
  for (const char c : value)
    if (c != ' ' && c != '-' && c != '_') mode += AsciiLower(c);
  return mode;
}

}  // namespace tessel
