#include "logic/text/find/ReplaceAll.h"

#include <algorithm>
#include <utility>

#include "logic/program/Characters.h"

namespace tessel {

namespace {

/// The group that is meant behind a "$"; -1: none.
int GroupOf(char sign) {
  if (sign == '&') return 0;
  return sign >= '0' && sign <= '9' ? sign - '0' : -1;
}

void AddEscaped(std::string& text, char letter) {
  switch (letter) {
    case 'n': text += '\n'; return;
    case 'r': text += '\r'; return;
    case 't': text += '\t'; return;
    case '\\': text += '\\'; return;
    default: text.append("\\").append(1, letter);
  }
}

}  // namespace

std::string TextInPlace(const Replacement& replacement, std::string_view text,
                        const std::vector<TextRange>& groups) {
  if (!replacement.fillsInGroups) return replacement.text;
  std::string result;
  const std::string& given = replacement.text;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const bool last = i + 1 == given.size();
    if (last || (given[i] != '$' && given[i] != '\\')) {
      result += given[i];
      continue;
    }
    const char next = given[++i];
    const auto group = static_cast<std::size_t>(GroupOf(next));
    if (given[i - 1] == '\\') AddEscaped(result, next);
    else if (group < groups.size())
      result += text.substr(groups[group].begin, groups[group].end - groups[group].begin);
    else if (next == '$') result += '$';
    else if (GroupOf(next) < 0) result.append("$").append(1, next);
  }
  return result;
}

ReplaceAll::ReplaceAll(SearchGround ground, Replacement replacement)
    : ground_(std::move(ground)),
      replacement_(std::move(replacement)),
      matcher_(*ground_.pattern, *ground_.text) {
  matcher_.Begin(ground_.within.begin, ground_.within.end, ground_.within.end);
}

StepState ReplaceAll::Step(std::size_t work) {
  for (; work > 0; work = matcher_.WorkLeft()) {
    const StepState state = matcher_.Step(work);
    if (state == StepState::NotFound) return count_ > 0 ? StepState::Found : state;
    if (state != StepState::Found) return state;
    GoBehindMatch();
  }
  return StepState::Running;
}

void ReplaceAll::GoBehindMatch() {
  const TextRange match = matcher_.Match();
  Take(match, matcher_.Groups());
  std::size_t behind = match.end;
  if (match.begin == match.end) {
    const std::string_view rest = std::string_view(*ground_.text).substr(behind);
    behind += rest.empty() ? 1 : FirstCharacter(rest).size();
  }
  matcher_.Begin(behind, ground_.within.end, ground_.within.end);
}

void ReplaceAll::Take(const TextRange& match, const std::vector<TextRange>& groups) {
  const std::string_view text = *ground_.text;
  if (count_++ == 0) replaced_ = {match.begin, match.begin};
  newText_ += text.substr(replaced_.end, match.begin - replaced_.end);
  newText_ += TextInPlace(replacement_, text, groups);
  replaced_.end = match.end;
  changes_.push_back({match, replaced_.begin + newText_.size()});
}

std::size_t ReplaceAll::PlaceInNew(std::size_t place) const {
  const auto behind = std::ranges::partition_point(
      changes_, [place](const Change& change) { return change.old.begin < place; });
  if (behind == changes_.begin()) return place;
  const Change& last = *std::prev(behind);
  return last.newEnd + (place - std::min(place, last.old.end));
}

int ReplaceAll::Percent() const {
  const std::size_t size = std::max<std::size_t>(ground_.text->size(), 1);
  return static_cast<int>(std::min(matcher_.At(), size) * 100 / size);
}

}  // namespace tessel
