#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "logic/text/find/TextSearch.h"

namespace tessel {

/// What takes the place of matches.
struct Replacement {
  std::string text;
  /// "$1" to "$9" stand for the groups of the match, "$0" or "$&" for all of it, "$$" for "$", "\n"
  /// and "\t" for the line end and the tab, and "\\" for a backslash.
  bool fillsInGroups = false;
};

/// The text that takes the place of one match in `text`.
[[nodiscard]] std::string TextInPlace(const Replacement& replacement, std::string_view text,
                                      const std::vector<TextRange>& groups);

/// Finds all matches of a text and makes the new text, in steps; the text itself it leaves alone.
class ReplaceAll {
 public:
  ReplaceAll(SearchGround ground, Replacement replacement);

  /// Goes on for about so many steps of the pattern. Found: it is done, and there were matches.
  StepState Step(std::size_t work);

  [[nodiscard]] std::int64_t Count() const { return count_; }
  /// From the first match to the end of the last one, and what takes its place.
  [[nodiscard]] const TextRange& Replaced() const { return replaced_; }
  [[nodiscard]] const std::string& NewText() const { return newText_; }
  /// Where a place of the old text stands in the new one; one inside a match, behind what took its
  /// place.
  [[nodiscard]] std::size_t PlaceInNew(std::size_t place) const;
  /// From 0 to 100.
  [[nodiscard]] int Percent() const;

 private:
  void GoBehindMatch();
  void Take(const TextRange& match, const std::vector<TextRange>& groups);

  /// The old text has `begin` to `end` where the new one ends at `newEnd`.
  struct Change {
    TextRange old;
    std::size_t newEnd = 0;
  };

  SearchGround ground_;
  Replacement replacement_;
  PatternMatcher matcher_;
  std::int64_t count_ = 0;
  TextRange replaced_;
  std::string newText_;
  std::vector<Change> changes_;
};

}  // namespace tessel
