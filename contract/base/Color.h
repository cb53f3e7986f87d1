#pragma once

#include <cstdint>

namespace tessel {

/// A colour as 0x00BBGGRR, or a system colour when the top bit is set (0x80000000 + its index).
/// What a system colour looks like is the desktop's: it follows the theme, dark ones too, and
/// changes while the program runs.
using Color = std::uint32_t;

/// Colours that the logic names. The indices of system colours are the classic ones.
namespace color {
inline constexpr Color black = 0x000000;
inline constexpr Color white = 0xFFFFFF;
inline constexpr Color windowBackground = 0x80000005;  ///< The ground of edit fields and lists.
inline constexpr Color windowText = 0x80000008;        ///< The text on that ground.
inline constexpr Color buttonFace = 0x8000000F;        ///< The ground of dialogs and buttons.
}  // namespace color

/// Whether a colour is the theme's; Contrast and TextOn know nothing of such a one.
[[nodiscard]] constexpr bool IsSystemColor(Color value) { return (value & 0x80000000U) != 0; }

/// How well two plain colours can be told apart: from 1, equal, to 21, black and white, in either
/// order. It is the contrast ratio of the Web Content Accessibility Guidelines 2, of colours in
/// sRGB.
[[nodiscard]] double Contrast(Color a, Color b);
/// The least contrast of text that can be read: what those guidelines ask of ordinary text at level
/// AA.
inline constexpr double readableContrast = 4.5;
/// Black or white, whichever can be read better on a plain colour; it can be read on any.
[[nodiscard]] Color TextOn(Color ground);

}  // namespace tessel
