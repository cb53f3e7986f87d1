#pragma once

#include <cstdint>
#include <string_view>

namespace tessel {

/// The sum of no bytes, with which each sum begins: the offset basis that the three authors chose
/// for 64 bits.
inline constexpr std::uint64_t fnvOfNothing = 0xCBF29CE484222325U;

/// The 64-bit FNV-1a sum of bytes (Fowler, Noll and Vo): a number that hardly any other bytes have.
/// It is the same in every run and on every machine, so it may be kept in a file. It does not
/// withstand somebody who looks for other bytes with the same sum on purpose.
///
/// `bytes`: any, not only those of a text; each counts as a number from 0 to 255.
/// `before`: the sum of the bytes that come in front of these, so that a text may come in parts.
/// Returns the sum of both. The sum of nothing behind `before` is `before`; that of "a" is
/// 0xAF63DC4C8601EC8C. Any thread.
[[nodiscard]] constexpr std::uint64_t Fnv1a(std::string_view bytes,
                                            std::uint64_t before = fnvOfNothing) {
  std::uint64_t sum = before;
  for (const char c : bytes) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return sum;
}

}  // namespace tessel
