#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "logic/text/find/PatternProgram.h"

namespace tessel {

/// A pattern as its reader understands it.
struct PatternNode {
  enum class Kind {
    Nothing,    ///< Matches before any character.
    Character,  ///< One of the code `number`.
    AnyOfLine,
    OneOf,     ///< Of set `set`.
    Rule,      ///< Of a place.
    Sequence,  ///< All its parts, one behind the other.
    Choice,    ///< One of its parts, the first that leads to a match.
    Repeat,    ///< Its one part, again and again.
    Group      ///< Its one part, whose place is noted as group `number`.
  };
  static constexpr std::int32_t noLimit = -1;

  Kind kind = Kind::Nothing;
  std::int32_t number = 0;
  CharacterSet set = {};
  PlaceRule rule = PlaceRule::LineStart;
  std::int32_t fewest = 0;      ///< Of Repeat.
  std::int32_t most = noLimit;  ///< Of Repeat.
  bool takesFewest = false;     ///< Of Repeat.
  std::vector<PatternNode> parts = {};
};

/// What an expression means, and how many groups it has.
struct PatternTree {
  PatternNode root;
  std::int32_t groups = 0;
};

/// Reads a regular expression. Raises Error(application) with what is wrong with it.
[[nodiscard]] PatternTree ReadExpression(std::string_view expression);
/// A text that stands for itself.
[[nodiscard]] PatternTree ReadPlainText(std::string_view text);

}  // namespace tessel
