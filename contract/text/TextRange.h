#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tessel {

// Places in a text, as editors know them. Positions are byte offsets from 0. Nothing here fails;
// any thread.

/// Bytes [begin, end) of a text; empty where both are the same.
struct TextRange {
  std::size_t begin = 0;  ///< Its first byte.
  std::size_t end = 0;    ///< Behind its last byte.

  bool operator==(const TextRange&) const = default;
};

/// A place as a person counts it. A line ends with "\n" or "\r\n", however it is shown.
struct TextSpot {
  std::int64_t line = 1;    ///< From 1.
  std::int64_t column = 1;  ///< From 1, in characters: one of several bytes counts once.

  bool operator==(const TextSpot&) const = default;
};

/// Where the byte `position` of `text` stands; one inside a character is taken back to its start,
/// one behind the end to the end. Takes time by the length of the text before it.
[[nodiscard]] TextSpot SpotOf(std::string_view text, std::size_t position);

/// Where a range that goes with its text stands after `removed` bytes at `at` were replaced by
/// `inserted` ones: a change before it moves it, one behind it leaves it. Nothing when the change
/// touches it, an end of it included, so that what is typed there does not become part of it.
[[nodiscard]] std::optional<TextRange> AfterChange(const TextRange& range, std::size_t at,
                                                   std::size_t removed, std::size_t inserted);

/// The blanks with which the line of a caret begins, up to the caret: what a new line begins with
/// that is typed there. Blanks are spaces and tabs, and stay as they are. `line` is the text of the
/// line, `caret` the bytes of it before the caret.
[[nodiscard]] std::string_view BlanksOfNewLine(std::string_view line, std::size_t caret);

}  // namespace tessel
