#pragma once

#include <cstddef>
#include <string_view>

namespace tessel {

/// Whether a byte goes on with a character of UTF-8 that began before it.
[[nodiscard]] constexpr bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Bytes of the valid character of UTF-8 at the start of `text`, which is not empty; 0: there is
/// none.
[[nodiscard]] std::size_t CharacterLength(std::string_view text);

/// `position` taken back to the start of the character it falls into, at most to the end of the
/// text.
[[nodiscard]] std::size_t CharacterStart(std::string_view text, std::size_t position);

[[nodiscard]] bool IsValidUtf8(std::string_view text);

}  // namespace tessel
