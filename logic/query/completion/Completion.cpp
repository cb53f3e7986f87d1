#include "logic/query/completion/Completion.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>

#include "contract/text/Ascii.h"
#include "logic/program/Characters.h"
#include "logic/query/completion/Initials.h"

namespace tessel {

namespace {

constexpr std::size_t ordinaryLength = 32;  ///< Bytes of a word, as a rule.

/// Whether a word in upper case begins with `typed`, which is in upper case. Words of other
/// characters than ASCII alone need all of it.
bool BeginsWith(std::string_view word, std::string_view typed) {
  for (std::size_t i = 0; i < typed.size(); ++i) {
    if (i == word.size()) return false;
    if (static_cast<unsigned char>(word[i]) >= 0x80) return UpperCase(word).starts_with(typed);
    if (AsciiUpper(word[i]) != typed[i]) return false;
  }
  return true;
}

/// A word that may stand for what was typed.
struct Match {
  std::string_view word;
  std::size_t hash = 0;
};

std::vector<Match> FindMatches(const Vocabulary::Section& section, std::string_view wanted,
                               CompletionMode mode) {
  std::vector<Match> matches;
  const auto isMatch = [&](std::string_view word) {
    return mode.Initials() ? InitialsBeginWith(word, wanted, mode.keepCapitals, mode.splitWords)
                           : BeginsWith(word, wanted);
  };
  std::size_t most = 0;
  for (const auto& [name, words] : section) most += words.size();
  matches.reserve(most);  // Room that is never written to takes no memory.
  for (const auto& [name, words] : section)
    for (const std::string& word : words)
      if (isMatch(word)) matches.push_back({word, std::hash<std::string_view>{}(word)});
  return matches;
}

/// Tells the words that are there already. More than half of the places of the table are free; a
/// byte a place keeps most of the search inside the processor's cache.
class SeenWords {
 public:
  /// Of `mostWords` words at most.
  explicit SeenWords(std::size_t mostWords)
      : marks_(std::bit_ceil(mostWords * 2 + 1)), matchAt_(marks_.size()) {}

  /// Whether `match` is a new word; it is to become the one at `index` of `matches` then.
  bool Take(const Match& match, const std::vector<Match>& matches, std::size_t index) {
    const std::size_t place = Find(match, matches);
    if (marks_[place] != 0) return false;
    marks_[place] = MarkOf(match.hash);
    matchAt_[place] = static_cast<std::uint32_t>(index);
    return true;
  }

 private:
  /// A part of the hash that places do not depend on; never 0.
  static std::uint8_t MarkOf(std::size_t hash) {
    return static_cast<std::uint8_t>(hash >> 40U | 1U);
  }

  /// The place of an equal word, or the free one where it belongs.
  [[nodiscard]] std::size_t Find(const Match& match, const std::vector<Match>& matches) const {
    const std::size_t mask = marks_.size() - 1;
    const std::uint8_t mark = MarkOf(match.hash);
    std::size_t place = match.hash & mask;
    while (marks_[place] != 0 &&
           (marks_[place] != mark || matches[matchAt_[place]].word != match.word))
      place = (place + 1) & mask;
    return place;
  }

  std::vector<std::uint8_t> marks_;  ///< 0: the place is free.
  std::vector<std::uint32_t> matchAt_;
};

/// Keeps each word where it stands first. A step of its own, with little to do for a word: the
/// processor waits for several places of the table at a time.
void KeepFirsts(std::vector<Match>& matches) {
  SeenWords seen(matches.size());
  std::size_t kept = 0;
  for (const Match& match : matches)
    if (seen.Take(match, matches, kept)) matches[kept++] = match;
  matches.resize(kept);
}

}  // namespace

std::string_view TypedWord(std::string_view text, std::size_t position) {
  const std::size_t end = std::min(position, text.size());
  std::size_t start = end;
  while (start > 0 && IsIdentifierChar(text[start - 1])) --start;
  return text.substr(start, end - start);
}

TextLines FindCompletions(const Vocabulary::Section& section, std::string_view typed,
                          CompletionMode mode) {
  std::vector<Match> matches = FindMatches(section, UpperCase(typed), mode);
  KeepFirsts(matches);
  TextLines words;
  words.Reserve(matches.size(), matches.size() * ordinaryLength);
  for (const Match& match : matches) words.Add(match.word);
  return words;
}

std::string CompletionEntry(std::string_view word, CompletionMode mode) {
  if (!mode.Initials()) return std::string(word);
  return MakeInitials(word, mode.keepCapitals, mode.splitWords).append(": ").append(word);
}

}  // namespace tessel
