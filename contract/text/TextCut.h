#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessel {

// Both change the text in place, compare bytes (case counts) and leave a text without the delimiter
// as it is. Since a delimiter of ASCII never lies inside a longer character of UTF-8, a valid text
// stays valid. The delimiter must not be empty, nor point into the text. Neither fails. Any thread,
// for a text of its own.

/// Cuts `text` just before the first `delimiter`, if there is one: "a|b|c" with "|" becomes "a",
/// and a text that begins with it becomes empty. Of a list the first item so stays.
inline void CutAtFirst(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.find(delimiter); at != std::string::npos) text.resize(at);
}

/// Keeps what follows the first character (byte) of the last `delimiter`, if there is one:
/// "a/b/c" with "/" becomes "c", the name behind the last separator of a path, and "a/" becomes
/// empty. To take either of two separators, call it once for each. Of a delimiter of several bytes
/// the others so stay.
inline void KeepAfterLast(std::string& text, std::string_view delimiter) {
  if (const std::size_t at = text.rfind(delimiter); at != std::string::npos) text.erase(0, at + 1);
}

}  // namespace tessel
