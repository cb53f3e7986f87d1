#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "contract/base/Value.h"
#include "data/rows/DecimalDigits.h"

namespace tessel {

/// The value of a number where a double holds it exactly.
[[nodiscard]] std::optional<double> ExactDouble(const ValueView& value);

/// A number of any kind, exactly.
[[nodiscard]] DecimalDigits NumberDigits(const ValueView& value);

// Bits that compare, without a sign, as the numbers do: not-a-number before all others, -0.0 as 0.
[[nodiscard]] constexpr std::uint64_t WholeKey(std::int64_t number) {
  return static_cast<std::uint64_t>(number) ^ (std::uint64_t{1} << 63U);
}
[[nodiscard]] std::uint64_t RealKey(double number);

/// Appends bytes that compare as the numbers do.
void AppendDigitsKey(const DecimalDigits& number, std::string& out);

}  // namespace tessel
