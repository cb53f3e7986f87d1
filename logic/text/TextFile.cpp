#include "logic/text/TextFile.h"

#include <utf8proc.h>

#include <array>
#include <cstdint>

#include "contract/text/ByteOrderMark.h"
#include "contract/text/Fnv.h"

namespace tessel {

namespace {

constexpr std::int32_t replacement = 0xFFFD;

/// What Windows-1252 puts at 0x80 to 0x9F; its five unused bytes keep their own number.
constexpr std::array<std::int32_t, 32> windows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendCharacter(std::string& out, std::int32_t code) {
  utf8proc_uint8_t buffer[4];
  const auto length = utf8proc_encode_char(code, buffer);
  out.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length));
}

bool IsUtf8(std::string_view bytes) {
  const auto* next = reinterpret_cast<const utf8proc_uint8_t*>(bytes.data());
  auto left = static_cast<utf8proc_ssize_t>(bytes.size());
  while (left > 0) {
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(next, left, &code);
    if (length <= 0) return false;
    next += length;
    left -= length;
  }
  return true;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    const bool high = code >= 0x80 && code < 0xA0;
    AppendCharacter(text, high ? windows1252High[code - 0x80U] : code);
  }
  return text;
}

/// The three bytes that half of a character would have: no text of UTF-8 holds them.
void AppendHalf(std::string& out, std::int32_t unit) {
  out += static_cast<char>(0xE0 | unit >> 12);
  out += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
  out += static_cast<char>(0x80 | (unit & 0x3F));
}

/// `keepsHalves`: half of a character, which else becomes U+FFFD, can be told from a character.
std::string FromUtf16(std::string_view bytes, bool bigEndian, bool keepsHalves = false) {
  const auto unitAt = [&](std::size_t i) -> std::int32_t {
    const auto a = static_cast<unsigned char>(bytes[i]);
    const auto b = static_cast<unsigned char>(bytes[i + 1]);
    return bigEndian ? a << 8 | b : b << 8 | a;
  };
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const std::int32_t unit = unitAt(i);
    const bool first = unit >= 0xD800 && unit < 0xDC00;
    const std::int32_t next = first && i + 3 < bytes.size() ? unitAt(i + 2) : 0;
    if (first && next >= 0xDC00 && next < 0xE000) {
      AppendCharacter(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      i += 2;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      if (keepsHalves) AppendHalf(text, unit);
      else AppendCharacter(text, replacement);
    } else {
      AppendCharacter(text, unit);
    }
  }
  if (bytes.size() % 2 == 0) return text;
  if (keepsHalves) AppendHalf(text, 0xD800);
  else AppendCharacter(text, replacement);
  return text;
}

}  // namespace

DecodedText DecodeText(std::string bytes) {
  const std::string_view view = bytes;
  if (view.starts_with(utf16LittleMark))
    return {FromUtf16(view.substr(2), false), TextEncoding::Utf16LittleEndian};
  if (view.starts_with(utf16BigMark))
    return {FromUtf16(view.substr(2), true), TextEncoding::Utf16BigEndian};
  if (!IsUtf8(view)) return {FromWindows1252(view), TextEncoding::Windows1252};
  if (!view.starts_with(byteOrderMark)) return {std::move(bytes), TextEncoding::Utf8};
  bytes.erase(0, byteOrderMark.size());
  return {std::move(bytes), TextEncoding::Utf8WithMark};
}

std::string DecodePiece(std::string_view bytes, TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::Utf16LittleEndian: return FromUtf16(bytes, false, true);
    case TextEncoding::Utf16BigEndian: return FromUtf16(bytes, true, true);
    case TextEncoding::Windows1252: return FromWindows1252(bytes);
    default: return std::string(bytes);
  }
}

std::string EncodeText(std::string text, TextEncoding encoding) {
  if (encoding == TextEncoding::Utf8WithMark) text.insert(0, byteOrderMark);
  return text;
}

std::string StampOf(std::string_view bytes) {
  return std::to_string(bytes.size()) + "-" + std::to_string(Fnv1a(bytes));
}

bool ChangesEncoding(TextEncoding encoding) {
  return encoding != TextEncoding::Utf8 && encoding != TextEncoding::Utf8WithMark;
}

std::string_view EncodingName(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::Utf16LittleEndian:
    case TextEncoding::Utf16BigEndian: return "UTF-16";
    case TextEncoding::Windows1252: return "Windows-1252";
    default: return "UTF-8";
  }
}

}  // namespace tessel
