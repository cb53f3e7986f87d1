#include "logic/results/export/formats/TextEncoder.h"

#include <algorithm>
#include <cstdint>

#include "contract/text/ByteOrderMark.h"
#include "contract/text/NumberText.h"
#include "contract/text/Utf8.h"

namespace tessel {

namespace {

constexpr char32_t lastOfLatin1 = 0xFF;
constexpr char32_t firstOfPairs = 0x10000;

/// The code point of a valid character.
char32_t CodePoint(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first;
  char32_t code = first & (0x7FU >> character.size());
  for (const char c : character.substr(1))
    code = code << 6U | (static_cast<unsigned char>(c) & 0x3FU);
  return code;
}

void AppendUnit(std::string& out, std::uint32_t unit) {
  out += static_cast<char>(unit & 0xFFU);
  out += static_cast<char>(unit >> 8U);
}

/// "U+20AC"
std::string Named(char32_t code) {
  std::string digits;
  for (std::uint32_t rest = code; rest != 0 || digits.size() < 4; rest >>= 4U)
    digits.insert(digits.begin(), hexDigits[rest & 15U]);
  return "U+" + digits;
}

}  // namespace

std::string_view TextEncoder::Mark() const {
  switch (code_) {
    case TextCode::Utf8WithMark: return byteOrderMark;
    case TextCode::Utf16: return utf16LittleMark;
    default: return "";
  }
}

std::string TextEncoder::Encoded(std::string_view text) const {
  std::string out;
  out.reserve(text.size() * (code_ == TextCode::Utf16 ? 2 : 1));
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) throw NoSuchCharacter{std::string(text.substr(0, 1))};
    AppendCharacter(out, CodePoint(text.substr(0, length)), text.substr(0, length));
    text.remove_prefix(length);
  }
  return out;
}

void TextEncoder::AppendCharacter(std::string& out, char32_t character,
                                  std::string_view text) const {
  if (code_ == TextCode::Latin1) {
    if (character > lastOfLatin1) throw NoSuchCharacter{std::string(text)};
    out += static_cast<char>(character);
  } else if (character < firstOfPairs) {
    AppendUnit(out, character);
  } else {
    AppendUnit(out, 0xD800U + ((character - firstOfPairs) >> 10U));
    AppendUnit(out, 0xDC00U + ((character - firstOfPairs) & 0x3FFU));
  }
}

std::optional<std::string> TextEncoder::FirstWithout(std::string_view text) const {
  try {
    static_cast<void>(Encoded(text));
    return std::nullopt;
  } catch (const NoSuchCharacter& none) {
    return none.character;
  }
}

std::string TextEncoder::WhyNot(std::string_view character) const {
  const std::string name = code_ == TextCode::Latin1 ? "ISO-8859-1" : "UTF-16";
  if (CharacterLength(character) == 0)
    return "the text is no valid UTF-8, so it has no form in " + name + ".";
  return "the character \"" + std::string(character) + "\" (" + Named(CodePoint(character)) +
         ") is not in " + name + ".";
}

}  // namespace tessel
