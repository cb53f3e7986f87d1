#pragma once

#include <cstddef>
#include <string_view>

namespace tessel {

// The byte order mark, the character U+FEFF in front of a text, tells how the text is coded and is
// none of its characters (The Unicode Standard, section 23.8). Anywhere else the same character is
// one like any other: a no-break space without width. A text that was read has lost its mark; a
// text that is written gets one where the user or the format asks for it. Any thread.

/// In UTF-8.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
/// In UTF-16, the less significant byte first.
inline constexpr std::string_view utf16LittleMark = "\xFF\xFE";
/// In UTF-16, the more significant byte first.
inline constexpr std::string_view utf16BigMark = "\xFE\xFF";

/// Where a text in UTF-8 itself begins, in bytes from 0 on: behind its byte order mark, or at 0
/// when it has none. Of two marks only the first one is a mark; the second is a character of the
/// text.
[[nodiscard]] constexpr std::size_t BehindMark(std::string_view text) {
  return text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
}

}  // namespace tessel
