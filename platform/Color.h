#pragma once

#include <cstdint>

namespace tessel {

/// A colour as 0x00BBGGRR, or a system colour when the top bit is set (0x80000000 + its index).
using Color = std::uint32_t;

namespace color {
inline constexpr Color black = 0x000000;
inline constexpr Color windowBackground = 0x80000005;
inline constexpr Color windowText = 0x80000008;
inline constexpr Color buttonFace = 0x8000000F;
}  // namespace color

[[nodiscard]] constexpr bool IsSystemColor(Color value) { return (value & 0x80000000U) != 0; }

}  // namespace tessel
