#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tessel {

/// ASCII-only case rules, the same in every locale. Other bytes are left alone.
[[nodiscard]] constexpr char AsciiUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
[[nodiscard]] constexpr char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

[[nodiscard]] inline bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, AsciiUpper, AsciiUpper);
}

[[nodiscard]] inline bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return EqualNoCase(text.substr(0, prefix.size()), prefix);
}

[[nodiscard]] inline std::string AsciiUpper(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](char c) { return AsciiUpper(c); });
  return upper;
}

/// `text` without leading and trailing spaces (spaces only, no other white space).
[[nodiscard]] constexpr std::string_view TrimSpaces(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

/// `[name]` and `name` mean the same: the name.
[[nodiscard]] constexpr std::string_view WithoutBrackets(std::string_view name) {
  const bool bracketed = name.size() > 2 && name.front() == '[' && name.back() == ']';
  return bracketed ? name.substr(1, name.size() - 2) : name;
}

}  // namespace tessel
