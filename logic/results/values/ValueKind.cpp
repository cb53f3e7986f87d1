#include "logic/results/values/ValueKind.h"

#include <algorithm>
#include <charconv>

#include "contract/text/Ascii.h"
#include "contract/text/ByteOrderMark.h"
#include "contract/text/NumberText.h"

namespace tessel {

namespace {

using namespace std::string_view_literals;

/// How far an SVG may begin behind comments and declarations.
constexpr std::size_t headOfDrawing = 4096;

struct Signature {
  std::size_t at;
  std::string_view bytes;
  ValueKind kind;
};

constexpr Signature signatures[] = {
    {0, "\x89PNG\r\n\x1a\n"sv, {"PNG picture", true}},
    {0, "\xFF\xD8\xFF"sv, {"JPEG picture", true}},
    {0, "GIF87a"sv, {"GIF picture", true}},
    {0, "GIF89a"sv, {"GIF picture", true}},
    {8, "WEBPVP8"sv, {"WebP picture", true}},
    {0, "BM"sv, {"BMP picture", true}},
    {0, "\0\0\1\0"sv, {"Icon", true}},
    {0, "II*\0"sv, {"TIFF picture", true}},
    {0, "MM\0*"sv, {"TIFF picture", true}},
    {4, "ftypavif"sv, {"AVIF picture", true}},
    {4, "ftypheic"sv, {"HEIC picture", true}},
    {0, "%PDF-"sv, {"PDF document", false}},
    {0, "PK\3\4"sv, {"ZIP archive", false}},
    {0, "\x1F\x8B"sv, {"gzip data", false}},
    {0, "7z\xBC\xAF\x27\x1C"sv, {"7z archive", false}},
    {0, "\x28\xB5\x2F\xFD"sv, {"Zstandard data", false}},
    {0, "SQLite format 3\0"sv, {"SQLite database", false}},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, {"Compound document", false}},
    {0, "OggS"sv, {"Ogg data", false}},
    {0, "ID3"sv, {"MP3 sound", false}},
    {4, "ftyp"sv, {"MP4 data", false}},
};

bool IsDrawing(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, headOfDrawing);
  const std::size_t first = head.find_first_not_of(" \r\n\t", BehindMark(head));
  return first != std::string_view::npos && head[first] == '<' &&
         head.find("<svg") != std::string_view::npos;
}

bool IsHexDigit(char character) {
  const char lower = AsciiLower(character);
  return (character >= '0' && character <= '9') || (lower >= 'a' && lower <= 'f');
}

/// The digits without blanks; nothing when there is anything else, or half a byte.
std::optional<std::string> Digits(std::string_view typed) {
  if (StartsWithNoCase(typed, "0x")) typed.remove_prefix(2);
  std::string digits(typed);
  std::erase(digits, ' ');
  const bool pairs = !digits.empty() && digits.size() % 2 == 0;
  return pairs && std::ranges::all_of(digits, IsHexDigit) ? std::optional(digits) : std::nullopt;
}

char ByteOf(std::string_view pair) {
  unsigned byte = 0;
  std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
  return static_cast<char>(byte);
}

bool IsQuoted(std::string_view text) {
  return text.size() > 2 && text.front() == text.back() &&
         (text.front() == '"' || text.front() == '\'');
}

}  // namespace

ValueKind KindOfBytes(std::string_view bytes) {
  for (const Signature& signature : signatures)
    if (bytes.size() > signature.at && bytes.substr(signature.at).starts_with(signature.bytes))
      return signature.kind;
  if (IsDrawing(bytes)) return {"SVG picture", true};
  return {"Binary", false};
}

std::optional<std::string> BytesMeant(std::string_view typed) {
  const std::string_view text = TrimSpaces(typed);
  if (text.empty()) return std::nullopt;
  if (IsQuoted(text)) return std::string(text.substr(1, text.size() - 2));
  const std::optional<std::string> digits = Digits(text);
  if (!digits) return std::string(text);
  std::string bytes;
  for (std::size_t pair = 0; pair < digits->size(); pair += 2)
    bytes += ByteOf(std::string_view(*digits).substr(pair, 2));
  return bytes;
}

std::optional<std::size_t> OffsetMeant(std::string_view typed, std::size_t size) {
  std::string_view text = TrimSpaces(typed);
  const bool hex = StartsWithNoCase(text, "0x");
  if (hex) text.remove_prefix(2);
  std::size_t offset = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, offset, hex ? 16 : 10);
  const bool whole = error == std::errc() && stop == end && !text.empty();
  return whole && offset < size ? std::optional(offset) : std::nullopt;
}

std::string HexText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const char byte : bytes) {
    if (!text.empty()) text += ' ';
    const auto value = static_cast<unsigned char>(byte);
    text += hexDigits[value >> 4U];
    text += hexDigits[value & 15U];
  }
  return text;
}

}  // namespace tessel
