#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "contract/text/TextLines.h"
#include "logic/query/completion/vocab.h"

namespace tessel {

/// How a typed text is matched: by the start of a word, or, with either of these, by the word's
/// initials as MakeInitials makes them.
struct CompletionMode {
  bool keepCapitals = false;
  bool splitWords = false;

  [[nodiscard]] bool Initials() const { return keepCapitals || splitWords; }
};

/// The run of identifier characters that ends at `position`, a byte offset into `text`.
[[nodiscard]] std::string_view TypedWord(std::string_view text, std::size_t position);

/// The words of a section that begin with `typed` in the sense of `mode`, without regard to case,
/// in the order of the section and each once. An empty text matches every word.
[[nodiscard]] TextLines FindCompletions(const Vocabulary::Section& section, std::string_view typed,
                                        CompletionMode mode);

/// How a word is listed: as it is, or its initials, ": " and the word.
[[nodiscard]] std::string CompletionEntry(std::string_view word, CompletionMode mode);

}  // namespace tessel
