#include "logic/connections/text/ConnectionPairs.h"

#include "contract/text/Ascii.h"
#include "logic/program/Characters.h"

namespace tessel {

ConnectionPairs ParseConnectionString(std::string_view connectionString) {
  ConnectionPairs pairs;
  while (!connectionString.empty()) {
    const std::size_t end = connectionString.find(';');
    const std::string_view piece = connectionString.substr(0, end);
    connectionString.remove_prefix(end == std::string_view::npos ? connectionString.size()
                                                                 : end + 1);
    const std::size_t equals = piece.find('=');
    const std::string_view key = TrimSpaces(piece.substr(0, equals));
    if (key.empty()) continue;
    const std::string_view value = equals == std::string_view::npos ? "" : piece.substr(equals + 1);
    pairs.emplace(UpperCase(key), value);
  }
  return pairs;
}

std::string GetConnectionStringValue(const ConnectionPairs& pairs,
                                     std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names)
    if (const auto found = pairs.find(UpperCase(name)); found != pairs.end()) return found->second;
  return {};
}

void AppendConnectionStringPair(std::string& connectionString, std::string_view key,
                                std::string_view value) {
  if (value.empty()) return;
  if (!connectionString.empty()) connectionString += ';';
  connectionString.append(key).append("=").append(value);
}

}  // namespace tessel
