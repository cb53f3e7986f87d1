#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace tessel {

/// Appends a number to `out` as AppendText does.
template <class Number>
void AppendNumber(Number number, std::string& out) {
  std::array<char, 40> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  out.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

inline constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Two upper-case hexadecimal digits.
[[nodiscard]] inline std::string ByteToHex(unsigned char byte) {
  return {hexDigits[byte >> 4U], hexDigits[byte & 15U]};
}

}  // namespace tessel
