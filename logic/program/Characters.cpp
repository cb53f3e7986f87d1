#include "logic/program/Characters.h"

#include <utf8proc.h>

#include <algorithm>

namespace tessel {

bool IsIdentifierChar(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '#' || c == '@' || c == '$';
}

Character DecodeFirst(std::string_view text) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &code);
  if (length <= 0) return {-1, text.substr(0, 1)};
  return {code, text.substr(0, static_cast<std::size_t>(length))};
}

void UpperCharacter::Encode(const Character& character) {
  if (character.code < 0) {
    bytes_[0] = character.bytes.front();
    return;
  }
  auto* const start = reinterpret_cast<utf8proc_uint8_t*>(bytes_.data());
  size_ = static_cast<std::size_t>(utf8proc_encode_char(utf8proc_toupper(character.code), start));
}

std::string UpperCase(std::string_view text) {
  if (std::ranges::all_of(text, [](unsigned char c) { return c < 0x80; })) return AsciiUpper(text);
  std::string result;
  while (!text.empty()) result += UpperCharacter(TakeFirst(text)).Bytes();
  return result;
}

}  // namespace tessel
