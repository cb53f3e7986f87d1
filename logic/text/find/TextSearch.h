#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "logic/text/find/PatternMatcher.h"

namespace tessel {

/// What a search is made in: a text that stays as it is, a pattern, and the part of the text in
/// which all of a match has to lie.
struct SearchGround {
  std::shared_ptr<const std::string> text;
  std::shared_ptr<const PatternProgram> pattern;
  TextRange within;
};

/// The search for the next or the previous match, in steps. Behind the end it goes on from the
/// beginning, and the other way round.
class TextSearch {
 public:
  enum class Direction { Forwards, Backwards };

  /// Forwards it finds the first match that begins at `from` or behind it, backwards the last one
  /// that begins before it. `avoid`: a match that is this range is passed by, as long as there is
  /// another one.
  TextSearch(SearchGround ground, Direction direction, std::size_t from,
             std::optional<TextRange> avoid = {});

  /// Goes on for about so many steps of the pattern. Not after Found or NotFound.
  StepState Step(std::size_t work);

  [[nodiscard]] TextRange Match() const { return match_; }
  /// Where each group of the match stands, the whole match first.
  [[nodiscard]] const std::vector<TextRange>& Groups() const { return groups_; }
  /// The search has come round an end of the text.
  [[nodiscard]] bool CameRound() const { return cameRound_; }
  [[nodiscard]] bool GoesForwards() const { return direction_ == Direction::Forwards; }
  /// From 0 to 100.
  [[nodiscard]] int Percent() const;

 private:
  StepState StepForwards(StepState state);
  StepState StepBackwards(StepState state);
  StepState Take(const TextRange& match);
  [[nodiscard]] bool ComeRound();
  void BeginBlock(std::size_t before);
  [[nodiscard]] std::size_t Behind(const TextRange& match) const;
  [[nodiscard]] std::size_t AfterCharacter(std::size_t at) const;

  SearchGround ground_;
  Direction direction_;
  std::size_t from_;
  std::optional<TextRange> avoid_;
  PatternMatcher matcher_;
  std::size_t blockBegin_ = 0;  ///< Backwards: of the part that is looked through.
  std::size_t blockEnd_ = 0;
  std::optional<TextRange> last_;  ///< Backwards: the last match in it so far.
  std::vector<TextRange> lastGroups_;
  bool cameRound_ = false;
  TextRange match_;
  std::vector<TextRange> groups_;
};

}  // namespace tessel
