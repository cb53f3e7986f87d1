#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

// How numbers and bytes become text where a program reads them again: files, SQL, the clipboard.
// What a person alone reads is formed elsewhere.

namespace tessel {

/// Writes a number with at most two decimals, as most amounts are, in its shortest form: "19.99",
/// "-0.05", "2.5", "7". Gives the end of what it wrote to `out`, which has room for 20 characters;
/// null, and nothing is written, for any other number: one with more decimals, 0, whose sign has to
/// be told, a whole number from 100000 on, which an exponent may make shorter, anything from 1e13
/// on, and what is not finite. A part of AppendNumber. Any thread.
[[nodiscard]] char* WriteAmount(double number, char* out);

/// Appends a number to `out` in the form that AppendText gives it: decimal, "." as the sign of the
/// fraction, no grouping, whatever the locale. A floating number takes its shortest form that reads
/// back the same, with an exponent where that is shorter: "0.1", "1e+300", and "nan", "inf",
/// "-inf". Of a `float` that is its own shortest form, not that of the `double` it could be turned
/// into. `Number` is an integer or floating type of at most 64 bits; the longest text of one has
/// fewer than 40 characters, so nothing can fail. Any thread.
template <class Number>
void AppendNumber(Number number, std::string& out) {
  std::array<char, 40> buffer;
  if constexpr (std::is_same_v<Number, double>) {
    if (const char* amountEnd = WriteAmount(number, buffer.data())) {
      out.append(buffer.data(), static_cast<std::size_t>(amountEnd - buffer.data()));
      return;
    }
  }
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  out.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

/// The digit of each value from 0 to 15 stands at that index. Numbers in files and bytes in SQL are
/// written with these, in upper case; ParseValue reads both cases. It stands for one byte or half
/// of one: shift and mask first.
inline constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Two upper-case hexadecimal digits, the higher one first: "0A" for 10. Nothing stands in front;
/// who writes a literal adds "0x" or whatever the reader wants. A text of many bytes is made by
/// appending.
[[nodiscard]] inline std::string ByteToHex(unsigned char byte) {
  return {hexDigits[byte >> 4U], hexDigits[byte & 15U]};
}

}  // namespace tessel
