#include "query/Completion.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>

#include "platform/Ascii.h"
#include "query/Misc.h"

namespace tessel {

namespace {

constexpr std::size_t ordinaryLength = 32;  ///< Bytes of an entry, as a rule.

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

std::size_t CountWords(const Vocabulary::Section& section) {
  std::size_t count = 0;
  for (const auto& [name, words] : section) count += words.size();
  return count;
}

/// Collects completions, each word once: there may be hundreds of thousands. A hash table, more
/// than half of its places free, tells the words that are there already; a byte a place keeps most
/// of the search inside the processor's cache.
class Collector {
 public:
  /// Of `mostWords` words at most.
  explicit Collector(std::size_t mostWords)
      : marks_(std::bit_ceil(mostWords * 2 + 1)), entryAt_(marks_.size()) {
    found_.entries.Reserve(mostWords, mostWords * ordinaryLength);
    found_.wordAt.reserve(mostWords);
  }

  /// `entry` ends with the word.
  void Add(std::string_view word, std::string_view entry) {
    const std::size_t hash = std::hash<std::string_view>{}(word);
    const std::size_t place = Find(hash, word);
    if (marks_[place] != 0) return;
    marks_[place] = MarkOf(hash);
    entryAt_[place] = static_cast<std::uint32_t>(found_.entries.Size());
    found_.entries.Add(entry);
    found_.wordAt.push_back(static_cast<std::uint32_t>(entry.size() - word.size()));
  }
  [[nodiscard]] Completions Take() { return std::move(found_); }

 private:
  /// A part of the hash that places do not depend on; never 0.
  static std::uint8_t MarkOf(std::size_t hash) {
    return static_cast<std::uint8_t>(hash >> 40U | 1U);
  }

  [[nodiscard]] bool Holds(std::size_t place, std::string_view word) const {
    const std::uint32_t entry = entryAt_[place];
    return found_.entries[entry].substr(found_.wordAt[entry]) == word;
  }

  /// The place of an equal word, or the free one where it belongs.
  [[nodiscard]] std::size_t Find(std::size_t hash, std::string_view word) const {
    const std::size_t mask = marks_.size() - 1;
    std::size_t place = hash & mask;
    while (marks_[place] != 0 && (marks_[place] != MarkOf(hash) || !Holds(place, word)))
      place = (place + 1) & mask;
    return place;
  }

  std::vector<std::uint8_t> marks_;  ///< 0: the place is free.
  std::vector<std::uint32_t> entryAt_;
  Completions found_;
};

}  // namespace

std::string_view TypedWord(std::string_view text, std::size_t position) {
  const std::size_t end = std::min(position, text.size());
  std::size_t start = end;
  while (start > 0 && IsIdentifierChar(text[start - 1])) --start;
  return text.substr(start, end - start);
}

Completions FindCompletions(const Vocabulary::Section& section, std::string_view typed,
                            CompletionMode mode) {
  const std::string wanted = UpperCase(typed);
  Collector collector(CountWords(section));
  std::string entry;
  for (const auto& [name, words] : section)
    for (const std::string& word : words) {
      if (!mode.Initials()) {
        if (BeginsWith(word, wanted)) collector.Add(word, word);
        continue;
      }
      entry = MakeInitials(word, mode.keepCapitals, mode.splitWords);
      if (entry.starts_with(wanted)) collector.Add(word, entry.append(": ").append(word));
    }
  return collector.Take();
}

}  // namespace tessel
