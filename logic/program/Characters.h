#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "contract/text/Ascii.h"

namespace tessel {

/// Whether a byte belongs to the class [A-Za-z0-9_#@$].
[[nodiscard]] bool IsIdentifierChar(char c);

/// A character at the start of a text, which it points into.
struct Character {
  std::int32_t code = -1;  ///< -1 for a byte that is no UTF-8, which counts as one character.
  std::string_view bytes;

  [[nodiscard]] bool IsAscii() const { return code >= 0 && code < 0x80; }
};

/// The first character of a text that has one.
[[nodiscard]] Character DecodeFirst(std::string_view text);
/// The bytes of a text's first character, which it has.
[[nodiscard]] inline std::string_view FirstCharacter(std::string_view text) {
  return DecodeFirst(text).bytes;
}
/// Takes the first character off a text that has one.
[[nodiscard]] inline Character TakeFirst(std::string_view& text) {
  const auto byte = static_cast<unsigned char>(text.front());
  const Character first = byte < 0x80 ? Character{byte, text.substr(0, 1)} : DecodeFirst(text);
  text.remove_prefix(first.bytes.size());
  return first;
}

/// A character in upper case. One of ASCII, as most are, needs no call.
class UpperCharacter {
 public:
  explicit UpperCharacter(const Character& character) {
    if (character.IsAscii()) bytes_[0] = AsciiUpper(static_cast<char>(character.code));
    else Encode(character);
  }
  [[nodiscard]] std::string_view Bytes() const { return {bytes_.data(), size_}; }

 private:
  void Encode(const Character& character);

  std::array<char, 4> bytes_;
  std::size_t size_ = 1;
};

/// `text` in upper case, by character.
[[nodiscard]] std::string UpperCase(std::string_view text);

}  // namespace tessel
