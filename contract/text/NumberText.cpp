#include "contract/text/NumberText.h"

#include <cmath>
#include <cstdint>

namespace tessel {

/// No two numbers share a text of at most 15 digits: where this one reads back the same, no shorter
/// text does. Those that an exponent could make shorter are left to others, and so is 0 with its
/// sign. Finding the shortest form of any number takes ten times as long.
char* WriteAmount(double number, char* out) {
  constexpr double withoutExponent = 1e5;  ///< Whole numbers below take no exponent.
  constexpr double exact = 1e13;
  const double size = std::abs(number);
  if (!(size > 0 && size < exact)) return nullptr;
  const auto hundredths = static_cast<std::int64_t>(size * 100 + 0.5);
  if (static_cast<double>(hundredths) / 100 != size) return nullptr;
  const std::int64_t decimals = hundredths % 100;
  if (decimals == 0 && size >= withoutExponent) return nullptr;
  constexpr std::size_t room = 19;
  if (number < 0) *out++ = '-';
  out = std::to_chars(out, out + room, hundredths / 100).ptr;
  if (decimals == 0) return out;
  *out++ = '.';
  *out++ = static_cast<char>('0' + decimals / 10);
  if (decimals % 10 != 0) *out++ = static_cast<char>('0' + decimals % 10);
  return out;
}

}  // namespace tessel
