#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tessel {

/// What bytes are, told by how they begin.
struct ValueKind {
  std::string_view name;   ///< "PNG picture", "ZIP archive"; "Binary" when nothing is known.
  bool isPicture = false;  ///< One that the desktop may be able to show.
};

/// Looks at the first bytes only: what follows may still be broken.
[[nodiscard]] ValueKind KindOfBytes(std::string_view bytes);

/// The bytes as characters of a text, in place.
[[nodiscard]] inline std::string_view AsCharacters(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
/// The characters as bytes, in place.
[[nodiscard]] inline std::span<const std::byte> AsBytes(std::string_view text) {
  return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}

/// The bytes that a person means: pairs of hexadecimal digits, with blanks between them or not and
/// "0x" in front or not; a text in single or double quotes; any other text as it is. Nothing for
/// none.
[[nodiscard]] std::optional<std::string> BytesMeant(std::string_view typed);

/// A place in so many bytes: a number, or "0x" and hexadecimal digits. Nothing for what is none,
/// or lies behind the end.
[[nodiscard]] std::optional<std::size_t> OffsetMeant(std::string_view typed, std::size_t size);

/// "48 65 6C 6C 6F".
[[nodiscard]] std::string HexText(std::string_view bytes);

}  // namespace tessel
