#include "logic/text/find/PatternMatcher.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"
#include "logic/program/Characters.h"

namespace tessel {

namespace {

constexpr std::size_t unset = static_cast<std::size_t>(-1);
constexpr std::size_t passedAtOnce = 65'536;  ///< Bytes.
constexpr std::size_t bytesOfAStep = 16;      ///< That are passed over in the time of a step.

/// The character that ends at a place which is not the start of the text.
std::int32_t CodeBefore(std::string_view text, std::size_t at) {
  std::size_t start = at - 1;
  while (start > 0 && at - start < 4 && (static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80U)
    --start;
  return DecodeFirst(text.substr(start, at - start)).code;
}

}  // namespace

void PatternMatcher::Ways::Clear() {
  steps.clear();
  places.clear();
  ++round;
}

PatternMatcher::PatternMatcher(const PatternProgram& program, std::string_view text)
    : program_(program), text_(text), noted_(program.places, unset) {
  now_.seen.assign(program.steps.size(), 0);
  next_.seen.assign(program.steps.size(), 0);
}

void PatternMatcher::Begin(std::size_t from, std::size_t lastStart, std::size_t end) {
  now_.Clear();
  next_.Clear();
  at_ = from;
  lastStart_ = lastStart;
  end_ = end;
  found_ = false;
}

StepState PatternMatcher::Step(std::size_t work) {
  for (work_ = work; work_ > 0;) {
    if (now_.steps.empty()) {
      if (found_) return StepState::Found;
      PassOver();
      if (at_ > lastStart_ || at_ > end_) return StepState::NotFound;
    }
    if (!found_ && at_ <= lastStart_) {
      std::ranges::fill(noted_, unset);
      Add(now_, 0, at_);
    }
    Advance();
  }
  return StepState::Running;
}

/// Nothing is under way: bytes with which no match begins need no look.
void PatternMatcher::PassOver() {
  if (program_.mayBeEmpty) return;
  const std::size_t stop = std::min({end_, lastStart_ + 1, at_ + passedAtOnce});
  const std::size_t before = at_;
  while (at_ < stop && !MayBegin(at_)) ++at_;
  if (at_ == end_) at_ = end_ + 1;
  work_ -= std::min(work_, (at_ - before) / bytesOfAStep + 1);
}

/// Whether a match may begin with the bytes at a place. A character behind ASCII may be the same as
/// an ASCII one but for its case, so what follows it is left to the pattern itself.
bool PatternMatcher::MayBegin(std::size_t at) const {
  if (!program_.firstBytes[static_cast<unsigned char>(text_[at])]) return false;
  const std::string_view start = program_.start;
  if (start.size() > end_ - at) return false;
  for (std::size_t i = 0; i < start.size(); ++i) {
    const char byte = text_[at + i];
    if (static_cast<unsigned char>(byte) >= 0x80U) return true;
    if ((program_.matchCase ? byte : AsciiLower(byte)) != start[i]) return false;
  }
  return true;
}

/// Takes one character on all ways. A match ends those that are less preferred.
void PatternMatcher::Advance() {
  const bool atEnd = at_ >= end_;
  std::string_view rest = text_.substr(std::min(at_, end_), atEnd ? 0 : end_ - at_);
  const Character character = atEnd ? Character() : TakeFirst(rest);
  const std::size_t behind = atEnd ? end_ + 1 : at_ + character.bytes.size();
  next_.Clear();
  for (std::size_t i = 0; i < now_.steps.size(); ++i) {
    const std::int32_t place = now_.steps[i];
    const PatternStep& step = program_.steps[static_cast<std::size_t>(place)];
    const auto noted = now_.places.begin() + static_cast<std::ptrdiff_t>(i * program_.places);
    const auto notedEnd = noted + static_cast<std::ptrdiff_t>(program_.places);
    if (step.kind == PatternStep::Kind::Match) {
      match_.assign(noted, notedEnd);
      found_ = true;
      break;
    }
    if (atEnd || !TakesCharacter(step, character.code)) continue;
    noted_.assign(noted, notedEnd);
    Add(next_, place + 1, behind);
  }
  work_ -= std::min(work_, now_.steps.size() + 1);
  std::swap(now_, next_);
  at_ = behind;
}

/// Adds all steps that take a character and can be reached from `step` without taking one.
void PatternMatcher::Add(Ways& ways, std::int32_t step, std::size_t at) {
  pending_.push_back({step});
  while (!pending_.empty()) {
    const Pending pending = pending_.back();
    pending_.pop_back();
    if (pending.place >= 0) {
      noted_[static_cast<std::size_t>(pending.place)] = pending.value;
      continue;
    }
    std::int32_t next = pending.step;
    while (next >= 0) next = Follow(ways, next, at);
  }
}

/// The step that comes behind one that takes no character; -1: there is none, or `ways` has it.
std::int32_t PatternMatcher::Follow(Ways& ways, std::int32_t step, std::size_t at) {
  const auto index = static_cast<std::size_t>(step);
  if (std::exchange(ways.seen[index], ways.round) == ways.round) return -1;
  work_ -= std::min<std::size_t>(work_, 1);
  const PatternStep& what = program_.steps[index];
  switch (what.kind) {
    case PatternStep::Kind::Jump: return what.x;
    case PatternStep::Kind::Both: pending_.push_back({what.y}); return what.x;
    case PatternStep::Kind::Note:
      pending_.push_back({0, what.x, noted_[static_cast<std::size_t>(what.x)]});
      noted_[static_cast<std::size_t>(what.x)] = at;
      return step + 1;
    case PatternStep::Kind::Rule: return IsTrue(static_cast<PlaceRule>(what.x), at) ? step + 1 : -1;
    default:
      ways.steps.push_back(step);
      ways.places.insert(ways.places.end(), noted_.begin(), noted_.end());
      return -1;
  }
}

bool PatternMatcher::TakesCharacter(const PatternStep& step, std::int32_t code) const {
  switch (step.kind) {
    case PatternStep::Kind::Character:
      return code >= 0 && step.x == (program_.matchCase ? code : WithoutCase(code));
    case PatternStep::Kind::AnyOfLine: return code != '\n' && code != '\r';
    case PatternStep::Kind::OneOf:
      return program_.sets[static_cast<std::size_t>(step.x)].Holds(code, program_.matchCase);
    default: return false;
  }
}

bool PatternMatcher::IsTrue(PlaceRule rule, std::size_t at) const {
  switch (rule) {
    case PlaceRule::LineStart: return at == 0 || text_[at - 1] == '\n';
    case PlaceRule::LineEnd: return EndsLine(at);
    case PlaceRule::WordEdge: return IsWordEdge(at);
    case PlaceRule::NoWordEdge: return !IsWordEdge(at);
  }
  return false;
}

bool PatternMatcher::EndsLine(std::size_t at) const {
  const std::string_view rest = text_.substr(at);
  return rest.empty() || rest.starts_with('\n') || rest.starts_with("\r\n");
}

bool PatternMatcher::IsWordEdge(std::size_t at) const {
  const bool before = at > 0 && IsWordCharacter(CodeBefore(text_, at));
  const bool behind = at < text_.size() && IsWordCharacter(DecodeFirst(text_.substr(at)).code);
  return before != behind;
}

TextRange PatternMatcher::GroupAt(std::size_t group) const {
  const std::size_t begin = match_[2 * group];
  const std::size_t end = match_[2 * group + 1];
  return begin == unset || end == unset ? TextRange() : TextRange{begin, end};
}

std::vector<TextRange> PatternMatcher::Groups() const {
  std::vector<TextRange> groups;
  for (std::size_t i = 0; 2 * i < match_.size(); ++i) groups.push_back(GroupAt(i));
  return groups;
}

}  // namespace tessel
