#pragma once

#include <cstdint>

namespace tessel {

/// A colour as 0x00BBGGRR, or a system colour when the top bit is set (0x80000000 + its index).
using Color = std::uint32_t;

namespace color {
inline constexpr Color black = 0x000000;
inline constexpr Color white = 0xFFFFFF;
inline constexpr Color windowBackground = 0x80000005;
inline constexpr Color windowText = 0x80000008;
inline constexpr Color buttonFace = 0x8000000F;
}  // namespace color

[[nodiscard]] constexpr bool IsSystemColor(Color value) { return (value & 0x80000000U) != 0; }

/// How well two plain colours can be told apart: from 1, equal, to 21, black and white.
[[nodiscard]] double Contrast(Color a, Color b);
/// The least contrast of text that can be read.
inline constexpr double readableContrast = 4.5;
/// Black or white, whichever can be read better on a plain colour; it can be read on any.
[[nodiscard]] Color TextOn(Color ground);

}  // namespace tessel
