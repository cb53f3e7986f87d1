#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tessel {

/// Characters that match at one place: ranges of codes and whole classes. A byte that is no UTF-8
/// has the code -1, which belongs to none.
struct CharacterSet {
  /// Classes of characters, combined by OR.
  enum Class : unsigned {
    digit = 1,
    word = 2,  ///< Letters and digits of any script, and "_".
    blank = 4,
    notDigit = 8,
    notWord = 16,
    notBlank = 32
  };

  std::vector<std::pair<std::int32_t, std::int32_t>> ranges;  ///< First and last code.
  unsigned classes = 0;
  bool negated = false;

  [[nodiscard]] bool Holds(std::int32_t code, bool matchCase) const;
};

/// Whether a character is part of a word.
[[nodiscard]] bool IsWordCharacter(std::int32_t code);
/// A character without its case: what differs only in case is the same.
[[nodiscard]] std::int32_t WithoutCase(std::int32_t code);

/// What must be true of a place between two characters.
enum class PlaceRule { LineStart, LineEnd, WordEdge, NoWordEdge };

/// One step of a pattern; `x` and `y` depend on what it does.
struct PatternStep {
  enum class Kind {
    Character,  ///< Goes on behind a character of the code `x`.
    AnyOfLine,  ///< Behind any character but a line end.
    OneOf,      ///< Behind a character of set number `x`.
    Both,       ///< Goes on at the steps `x` and `y`; the first is preferred.
    Jump,       ///< Goes on at step `x`.
    Note,       ///< Notes the place as number `x`: group `x / 2` begins, or with an odd one ends.
    Rule,       ///< Goes on where the PlaceRule `x` is true.
    Match       ///< The whole pattern has matched.
  };
  Kind kind = Kind::Match;
  std::int32_t x = 0;
  std::int32_t y = 0;
};

/// A pattern made ready to be looked for. It begins at the first step.
struct PatternProgram {
  std::vector<PatternStep> steps;
  std::vector<CharacterSet> sets;
  bool matchCase = false;
  std::size_t places = 2;  ///< That are noted: two for the match and two for each group.
  /// The bytes with which a match can begin; all of them where it may be empty.
  std::array<bool, 256> firstBytes{};
  /// The ASCII characters with which every match begins, without case where that does not count.
  /// Empty: some begin otherwise.
  std::string start;
  bool mayBeEmpty = false;
};

}  // namespace tessel
