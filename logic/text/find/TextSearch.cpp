#include "logic/text/find/TextSearch.h"

#include <algorithm>
#include <utility>

#include "contract/text/Utf8.h"
#include "logic/program/Characters.h"

namespace tessel {

namespace {

constexpr std::size_t blockBytes = 65'536;

}  // namespace

TextSearch::TextSearch(SearchGround ground, Direction direction, std::size_t from,
                       std::optional<TextRange> avoid)
    : ground_(std::move(ground)),
      direction_(direction),
      from_(std::clamp(from, ground_.within.begin, ground_.within.end)),
      avoid_(avoid),
      matcher_(*ground_.pattern, *ground_.text) {
  if (direction_ == Direction::Backwards) BeginBlock(from_);
  else matcher_.Begin(from_, ground_.within.end, ground_.within.end);
}

StepState TextSearch::Step(std::size_t work) {
  const StepState state = matcher_.Step(work);
  return direction_ == Direction::Forwards ? StepForwards(state) : StepBackwards(state);
}

StepState TextSearch::StepForwards(StepState state) {
  if (state == StepState::Running) return state;
  if (state == StepState::Found) {
    if (matcher_.Match() != avoid_ || cameRound_) return Take(matcher_.Match());
    matcher_.Begin(Behind(*avoid_), ground_.within.end, ground_.within.end);
    return StepState::Running;
  }
  if (!ComeRound()) return StepState::NotFound;
  matcher_.Begin(ground_.within.begin, from_, ground_.within.end);
  return StepState::Running;
}

/// Each block is looked through from its beginning, and the last match in it counts.
StepState TextSearch::StepBackwards(StepState state) {
  if (state == StepState::Running) return state;
  if (state == StepState::Found) {
    const TextRange found = matcher_.Match();
    last_ = found;
    lastGroups_ = matcher_.Groups();
    const std::size_t behind = Behind(found);
    if (behind < blockEnd_) {
      matcher_.Begin(behind, blockEnd_ - 1, ground_.within.end);
      return StepState::Running;
    }
  }
  if (last_) {
    match_ = *last_;
    groups_ = std::move(lastGroups_);
    return StepState::Found;
  }
  if (blockBegin_ > ground_.within.begin) BeginBlock(blockBegin_);
  else if (!ComeRound()) return StepState::NotFound;
  else BeginBlock(ground_.within.end + 1);
  return StepState::Running;
}

StepState TextSearch::Take(const TextRange& match) {
  match_ = match;
  groups_ = matcher_.Groups();
  return StepState::Found;
}

/// False when the search has done so before.
bool TextSearch::ComeRound() { return !std::exchange(cameRound_, true); }

/// The lines before a place, about as many as a block has bytes. A match that begins before the
/// block and reaches into it does not hide one that begins in it.
void TextSearch::BeginBlock(std::size_t before) {
  const TextRange within = ground_.within;
  const std::string_view text = *ground_.text;
  blockEnd_ = before;
  blockBegin_ = within.begin;
  if (before > within.begin + blockBytes) {
    const std::size_t begin = before - blockBytes;
    const std::size_t line = text.substr(begin, blockBytes - 1).find('\n');
    blockBegin_ = line == std::string_view::npos ? CharacterStart(text, begin) : begin + line + 1;
  }
  last_.reset();
  if (blockEnd_ > blockBegin_) return matcher_.Begin(blockBegin_, blockEnd_ - 1, within.end);
  matcher_.Begin(within.end + 1, within.end, within.end);
}

/// Where a search goes on behind a match: an empty one is left by a character.
std::size_t TextSearch::Behind(const TextRange& match) const {
  return match.end > match.begin ? match.end : AfterCharacter(match.end);
}

std::size_t TextSearch::AfterCharacter(std::size_t at) const {
  const std::string_view rest = std::string_view(*ground_.text).substr(at);
  return at + (rest.empty() ? 1 : FirstCharacter(rest).size());
}

int TextSearch::Percent() const {
  const std::size_t size = std::max<std::size_t>(ground_.text->size(), 1);
  const std::size_t at = std::min(matcher_.At(), size);
  const std::size_t start = std::min(from_, size);
  const bool forwards = direction_ == Direction::Forwards;
  const std::size_t done = forwards ? (at + size - start) % size : (start + size - at) % size;
  return static_cast<int>(done * 100 / size);
}

}  // namespace tessel
