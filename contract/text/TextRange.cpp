#include "contract/text/TextRange.h"

#include <algorithm>

#include "contract/text/Utf8.h"

namespace tessel {

TextSpot SpotOf(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, CharacterStart(text, position));
  const std::string_view line = before.substr(before.rfind('\n') + 1);
  return {std::ranges::count(before, '\n') + 1,
          std::ranges::count_if(line, [](char c) { return !ContinuesCharacter(c); }) + 1};
}

std::optional<TextRange> AfterChange(const TextRange& range, std::size_t at, std::size_t removed,
                                     std::size_t inserted) {
  if (at > range.end) return range;
  if (at + removed >= range.begin) return std::nullopt;
  const auto moved = [&](std::size_t place) { return place - removed + inserted; };
  return TextRange{moved(range.begin), moved(range.end)};
}

std::string_view BlanksOfNewLine(std::string_view line, std::size_t caret) {
  const std::string_view before = line.substr(0, caret);
  return before.substr(0, before.find_first_not_of(" \t"));
}

}  // namespace tessel
