#include "contract/text/ServerKeyNames.h"

#include <algorithm>
#include <iterator>

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

}  // namespace

std::string_view ServerKeyName(std::string_view name) {
  const auto* found = std::ranges::find_if(
      synonyms, [&](const Synonym& synonym) { return EqualNoCase(synonym.name, name); });
  return found == std::end(synonyms) ? name : found->meaning;
}

}  // namespace tessel
