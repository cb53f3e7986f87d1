#pragma once

#include <cstdint>

#include "contract/base/Value.h"

namespace tessel {

/// Whether two values are the same, by what they are worth and not by their texts; the rules are
/// those of RowComparison. It is an equality in the strict sense: two values that equal a third one
/// equal each other, so that rows can be found by a hash.
struct ValueSameness {
  bool booleansAreNumbers = false;  ///< True is 1, and false is 0.

  [[nodiscard]] bool Same(const ValueView& a, const ValueView& b) const;
  /// The same for values that are the same.
  [[nodiscard]] std::uint64_t Hash(const ValueView& value) const;
};

// The hashes of values of one kind, for those who know the kind beforehand. Hash calls these.

/// Spreads the bits of a number over all bits.
[[nodiscard]] constexpr std::uint64_t MixBits(std::uint64_t bits) {
  bits ^= bits >> 32U;
  bits *= 0x9FB21C651E98DF25U;
  bits ^= bits >> 29U;
  return bits;
}
/// The hash of a row whose cells so far have `row`, with one more cell.
[[nodiscard]] constexpr std::uint64_t AddHash(std::uint64_t row, std::uint64_t cell) {
  return MixBits(row * 0x9E3779B97F4A7C15U + cell);
}
[[nodiscard]] constexpr std::uint64_t HashOfNull() { return 0x51ED270B27B4F3CFU; }
[[nodiscard]] constexpr std::uint64_t HashOfInteger(std::int64_t value) {
  return MixBits(static_cast<std::uint64_t>(value));
}

}  // namespace tessel
