#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tessel {

// Rules for the letters of ASCII only, the same in every locale: names of fields, properties and
// providers are compared by them. Bytes from 0x80 on are left alone, so a text in UTF-8 stays
// valid, and "É" and "é" stay different. No function allocates but the one that makes a text. All
// of them may be called on any thread. A function that gives a piece of a text (std::string_view)
// copies nothing: the text has to live as long as the piece is used, and must not be a temporary
// one.

/// 'a' to 'z' as the capital letter; every other byte as it is, those of a longer character too.
[[nodiscard]] constexpr char AsciiUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
/// 'A' to 'Z' as the small letter; every other byte as it is. For one letter that is looked for in
/// its small form, such as a hexadecimal digit; the comparisons below use the capital one.
[[nodiscard]] constexpr char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

/// Whether both texts have the same length and differ at most in the case of ASCII letters. Two
/// empty ones are equal. The length decides: a NUL inside is a byte as any other. An order that
/// goes with it compares the bytes as unsigned numbers after AsciiUpper: "_" so stands behind the
/// letters.
[[nodiscard]] inline bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, AsciiUpper, AsciiUpper);
}

/// Every text starts with an empty prefix; none starts with one that is longer than itself. What
/// follows the prefix does not count: "DESCRIBE" starts with "desc".
[[nodiscard]] inline bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return EqualNoCase(text.substr(0, prefix.size()), prefix);
}

/// A copy with each byte made upper case as above; as long as `text`. It serves as a key where
/// texts that are equal without regard to case have to meet, as in a set.
[[nodiscard]] inline std::string AsciiUpper(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](char c) { return AsciiUpper(c); });
  return upper;
}

/// `text` without leading and trailing spaces (spaces only, no other white space). The result
/// points into `text` and lives as long as that; of a text of blanks alone nothing is left. Tabs
/// and line ends stay, since they may belong to a value.
[[nodiscard]] constexpr std::string_view TrimSpaces(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

/// `[name]` and `name` mean the same: the name, as a piece of the text given. Only one pair is
/// taken off, and "[]" stays as it is, since no name is empty. Brackets inside are no concern here,
/// and blanks around the brackets keep them: trim first.
[[nodiscard]] constexpr std::string_view WithoutBrackets(std::string_view name) {
  const bool bracketed = name.size() > 2 && name.front() == '[' && name.back() == ']';
  return bracketed ? name.substr(1, name.size() - 2) : name;
}

}  // namespace tessel
