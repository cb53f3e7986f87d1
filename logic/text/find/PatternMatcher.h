#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "contract/text/TextRange.h"
#include "logic/text/find/PatternProgram.h"

namespace tessel {

/// How far something has come that is done in steps.
enum class StepState { Running, Found, NotFound };

/// Looks for the first match of a pattern in a text, in steps as long as its user has time for. It
/// follows all ways through the pattern at once, character by character: so no pattern makes it
/// slow. Pattern and text outlive it and stay as they are.
class PatternMatcher {
 public:
  PatternMatcher(const PatternProgram& program, std::string_view text);

  /// Looks for a match that begins at `from` or behind it, but not behind `lastStart`, and ends not
  /// behind `end`. Both places are beginnings of characters. What stands around them counts for the
  /// edges of words and lines.
  void Begin(std::size_t from, std::size_t lastStart, std::size_t end);
  /// Goes on for about so many steps of the pattern. Not after Found or NotFound.
  StepState Step(std::size_t work);

  /// Of the match that was found.
  [[nodiscard]] TextRange Match() const { return GroupAt(0); }
  /// Where each group of it stands, the whole match first; one that took no part is empty.
  [[nodiscard]] std::vector<TextRange> Groups() const;
  /// What the last step left of its work.
  [[nodiscard]] std::size_t WorkLeft() const { return work_; }
  /// How far it has come in the text.
  [[nodiscard]] std::size_t At() const { return at_; }

 private:
  /// The ways that are followed at one place, the preferred one first.
  struct Ways {
    std::vector<std::int32_t> steps;
    std::vector<std::size_t> places;  ///< That each of them has noted.
    std::vector<std::uint32_t> seen;  ///< By step: the round in which it was added last.
    std::uint32_t round = 1;

    void Clear();
  };
  /// What is still to be done while a way is added.
  struct Pending {
    std::int32_t step = 0;
    std::int32_t place = -1;  ///< Not -1: this noted place becomes `value` again.
    std::size_t value = 0;
  };

  void Add(Ways& ways, std::int32_t step, std::size_t at);
  [[nodiscard]] std::int32_t Follow(Ways& ways, std::int32_t step, std::size_t at);
  void Advance();
  void PassOver();
  [[nodiscard]] bool MayBegin(std::size_t at) const;
  [[nodiscard]] bool TakesCharacter(const PatternStep& step, std::int32_t code) const;
  [[nodiscard]] bool IsTrue(PlaceRule rule, std::size_t at) const;
  [[nodiscard]] bool EndsLine(std::size_t at) const;
  [[nodiscard]] bool IsWordEdge(std::size_t at) const;
  [[nodiscard]] TextRange GroupAt(std::size_t group) const;

  const PatternProgram& program_;
  std::string_view text_;
  Ways now_;
  Ways next_;
  std::vector<std::size_t> noted_;  ///< By the way that is being added.
  std::vector<Pending> pending_;
  std::vector<std::size_t> match_;
  std::size_t at_ = 0;
  std::size_t lastStart_ = 0;
  std::size_t end_ = 0;
  std::size_t work_ = 0;
  bool found_ = false;
};

}  // namespace tessel
