#include "logic/connections/text/DataLinkText.h"

#include <algorithm>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"

namespace tessel {

DataLinkPairs SplitDataLink(std::string_view connectionString) {
  DataLinkPairs pairs;
  for (const ConnectionPart& part : ConnectionParts(connectionString, Wrapping::Braces))
    if (!part.name.empty()) pairs.emplace_back(part.name, part.text);
  return pairs;
}

std::string JoinDataLink(const DataLinkPairs& pairs) {
  std::string text;
  for (const auto& [key, value] : pairs) {
    const bool needsBraces = value.find(';') != std::string::npos && !value.starts_with('{');
    if (!text.empty()) text += ';';
    text.append(key).append("=").append(needsBraces ? InBraces(value) : value);
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
