#include "logic/connections/text/ConnectionText.h"

#include <algorithm>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"
#include "contract/text/ServerKeyNames.h"

namespace tessel {

namespace {

constexpr std::string_view stars = "*****";

bool NamesPassword(std::string_view name) {
  if (EqualNoCase(name, passwordFromKey)) return false;
  const std::string upper = AsciiUpper(name);
  return std::ranges::any_of(
      std::initializer_list<std::string_view>{"PASSWORD", "PWD", "PASSWD", "PASSPHRASE"},
      [&](std::string_view word) { return upper.find(word) != std::string::npos; });
}

}  // namespace

std::string WithoutPasswords(std::string_view connectionString) {
  std::string shown;
  std::size_t copied = 0;
  for (const ConnectionPart& part : ConnectionParts(connectionString, Wrapping::BracesAndQuotes)) {
    const std::string_view value = part.Value();
    if (value.empty() || !NamesPassword(part.name)) continue;
    const auto start = static_cast<std::size_t>(value.data() - connectionString.data());
    shown.append(connectionString.substr(copied, start - copied)).append(stars);
    copied = start + value.size();
  }
  return shown.append(connectionString.substr(copied));
}

}  // namespace tessel
