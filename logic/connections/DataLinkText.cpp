#include "logic/connections/DataLinkText.h"

#include <algorithm>

#include "contract/base/Ascii.h"

namespace tessel {

namespace {

/// Where the piece at the start of `text` ends: at its first ";" outside a value in braces.
std::size_t PieceEnd(std::string_view text) {
  std::size_t from = 0;
  const std::size_t equals = text.find('=');
  if (equals != std::string_view::npos && equals < text.find(';') &&
      text.substr(equals + 1).starts_with('{')) {
    const std::size_t close = text.find('}', equals);
    if (close != std::string_view::npos) from = close;
  }
  return std::min(text.find(';', from), text.size());
}

}  // namespace

DataLinkPairs SplitDataLink(std::string_view connectionString) {
  DataLinkPairs pairs;
  while (!connectionString.empty()) {
    const std::size_t end = PieceEnd(connectionString);
    const std::string_view piece = connectionString.substr(0, end);
    connectionString.remove_prefix(std::min(end + 1, connectionString.size()));
    const std::size_t equals = std::min(piece.find('='), piece.size());
    const std::string_view key = TrimSpaces(piece.substr(0, equals));
    if (!key.empty()) pairs.emplace_back(key, piece.substr(std::min(equals + 1, piece.size())));
  }
  return pairs;
}

std::string JoinDataLink(const DataLinkPairs& pairs) {
  std::string text;
  for (const auto& [key, value] : pairs) {
    const bool needsBraces = value.find(';') != std::string::npos && !value.starts_with('{');
    if (!text.empty()) text += ';';
    text.append(key).append("=").append(needsBraces ? "{" + value + "}" : value);
  }
  return text;
}

void SetDataLinkPair(DataLinkPairs& pairs, std::string_view key, std::string_view value) {
  const auto found =
      std::ranges::find_if(pairs, [&](const auto& pair) { return EqualNoCase(pair.first, key); });
  if (found != pairs.end()) found->second = value;
  else pairs.emplace_back(key, value);
}

}  // namespace tessel
