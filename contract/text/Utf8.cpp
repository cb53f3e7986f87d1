#include "contract/text/Utf8.h"

#include <algorithm>

namespace tessel {

std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const auto continues = [&](std::size_t i) {
    return i < text.size() && ContinuesCharacter(text[i]);
  };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    if (!continues(1) || !continues(2)) return 0;
    const bool overlong = first == 0xE0 && byte(1) < 0xA0;
    const bool surrogate = first == 0xED && byte(1) >= 0xA0;
    return overlong || surrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    if (!continues(1) || !continues(2) || !continues(3)) return 0;
    const bool overlong = first == 0xF0 && byte(1) < 0x90;
    const bool beyond = first == 0xF4 && byte(1) >= 0x90;
    return overlong || beyond ? 0 : 4;
  }
  return 0;
}

std::size_t CharacterStart(std::string_view text, std::size_t position) {
  position = std::min(position, text.size());
  while (position > 0 && position < text.size() && ContinuesCharacter(text[position])) --position;
  return position;
}

std::size_t ByteOfCharacter(std::string_view text, std::size_t character) {
  std::size_t byte = 0;
  for (; byte < text.size(); ++byte)
    if (!ContinuesCharacter(text[byte]) && character-- == 0) break;
  return byte;
}

bool IsValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace tessel
