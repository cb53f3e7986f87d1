#include "data/providers/text/ServerKeys.h"

#include <algorithm>
#include <charconv>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr std::string_view unused[] = {"Provider", "Persist Security Info"};

bool IsUnused(std::string_view name) {
  return std::ranges::any_of(unused, [&](std::string_view one) { return EqualNoCase(one, name); });
}

}  // namespace

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
