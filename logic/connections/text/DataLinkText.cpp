#include "logic/connections/text/DataLinkText.h"

#include <algorithm>
#include <vector>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"

namespace tessel {

namespace {

/// Whether the value is read as it stands, whatever follows it.
bool ReadsBack(std::string_view value) {
  std::string text = "a=";
  const std::vector<ConnectionPart> parts =
      ConnectionParts(text.append(value).append(";b"), Wrapping::Braces);
  return parts.size() == 2 && parts.front().text == value;
}

}  // namespace

DataLinkPairs SplitDataLink(std::string_view connectionString) {
  DataLinkPairs pairs;
  for (const ConnectionPart& part : ConnectionParts(connectionString, Wrapping::Braces))
    if (!part.name.empty()) pairs.emplace_back(part.name, part.text);
  return pairs;
}

std::string JoinDataLink(const DataLinkPairs& pairs) {
  std::string text;
  for (const auto& [key, value] : pairs) {
    if (!text.empty()) text += ';';
    text.append(key).append("=").append(ReadsBack(value) ? value : InBraces(value));
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
