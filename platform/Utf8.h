#pragma once

namespace tessel {

/// Whether a byte goes on with a character of UTF-8 that began before it.
[[nodiscard]] constexpr bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace tessel
