#pragma once

#include <cstddef>
#include <string_view>

namespace tessel {

// All texts of the program are UTF-8, as RFC 3629 has it: at most four bytes, no surrogates,
// nothing beyond U+10FFFF, no form longer than needed. Positions and lengths are bytes. Nothing
// here fails or allocates; any thread.

/// Whether a byte goes on with a character of UTF-8 that began before it (0x80 to 0xBF).
[[nodiscard]] constexpr bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Bytes of the valid character of UTF-8 at the start of `text`, which is not empty; 0: there is
/// none, because the first byte begins no character, or what belongs to it is missing or wrong.
[[nodiscard]] std::size_t CharacterLength(std::string_view text);

/// `position` taken back to the start of the character it falls into, at most to the end of the
/// text. It looks for continuing bytes only, so it also works in a text that is not valid.
[[nodiscard]] std::size_t CharacterStart(std::string_view text, std::size_t position);

/// The byte at which character number `character` (from 0) of a valid text begins; the end of the
/// text when it has no more than so many.
[[nodiscard]] std::size_t ByteOfCharacter(std::string_view text, std::size_t character);

/// Whether the whole text is made of valid characters; an empty one is, and NUL is one too. Texts
/// of files and databases need not be: the program keeps their bytes and asks here before it edits
/// them in a box that would change them.
[[nodiscard]] bool IsValidUtf8(std::string_view text);

}  // namespace tessel
