#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/TextLines.h"
#include "query/vocab.h"

namespace tessel {

/// How a typed text is matched: by the start of a word, or, with either of these, by the word's
/// initials as MakeInitials makes them.
struct CompletionMode {
  bool keepCapitals = false;
  bool splitWords = false;

  [[nodiscard]] bool Initials() const { return keepCapitals || splitWords; }
};

/// The words that a typed text may stand for.
struct Completions {
  TextLines entries;                  ///< As shown: the word, or its initials, ": " and the word.
  std::vector<std::uint32_t> wordAt;  ///< Of each entry: where the word begins in it.
};

/// The run of identifier characters that ends at `position`, a byte offset into `text`.
[[nodiscard]] std::string_view TypedWord(std::string_view text, std::size_t position);

/// The words of a section that begin with `typed` in the sense of `mode`, without regard to case,
/// in the order of the section and each once. An empty text matches every word.
[[nodiscard]] Completions FindCompletions(const Vocabulary::Section& section,
                                          std::string_view typed, CompletionMode mode);

}  // namespace tessel
