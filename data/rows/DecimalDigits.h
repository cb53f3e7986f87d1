#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tessel {

/// A number of any size, in decimal digits without leading and trailing zeros: 0.0120 is 12 with
/// the point before its first digit moved by -1.
struct DecimalDigits {
  enum Class { NotANumber, MinusInfinity, Finite, Infinity };
  Class kind = Finite;
  bool negative = false;   ///< Never of zero.
  std::string digits;      ///< Empty for zero.
  std::int64_t point = 0;  ///< Of zero it means nothing.
};

/// Reads digits with an optional sign, point and exponent; also "nan" and "inf" with whatever
/// follows them, in any case.
[[nodiscard]] DecimalDigits ToDigits(std::string_view text);

/// Less than, equal to or greater than 0 as `a` is smaller than, equal to or larger than `b`;
/// not-a-number stands before all and equals itself.
[[nodiscard]] int CompareDigits(const DecimalDigits& a, const DecimalDigits& b);

}  // namespace tessel
