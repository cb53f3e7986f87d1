#include "logic/results/export/formats/Cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "contract/text/NumberText.h"

namespace tessel {

namespace {

constexpr std::string_view base64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t pieceBytes = 49152;  ///< A multiple of 3.

/// Appends up to three bytes as four digits.
void AppendThree(std::string& out, std::span<const std::byte> bytes) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 3; ++i)
    bits = bits << 8U | (i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0U);
  for (std::size_t i = 0; i < 4; ++i)
    out += i > bytes.size() ? '=' : base64Digits[bits >> (18 - 6 * i) & 63U];
}

/// Calls `append` for pieces of the bytes; the sink may hand on between them.
template <class Append>
void InPieces(TextSink& sink, std::span<const std::byte> bytes, Append append) {
  while (!bytes.empty()) {
    const std::size_t length = std::min(bytes.size(), pieceBytes);
    append(bytes.first(length));
    bytes = bytes.subspan(length);
    sink.Pass();
  }
}

Special SpecialOfNumber(double number) {
  if (std::isnan(number)) return Special::NotANumber;
  if (std::isfinite(number)) return Special::None;
  return number > 0 ? Special::Infinity : Special::MinusInfinity;
}

/// The words that servers have for it; digits come first in every other decimal.
Special SpecialOfDigits(std::string_view digits) {
  if (StartsWithNoCase(digits, "nan")) return Special::NotANumber;
  if (StartsWithNoCase(digits, "inf") || StartsWithNoCase(digits, "+inf")) return Special::Infinity;
  return StartsWithNoCase(digits, "-inf") ? Special::MinusInfinity : Special::None;
}

/// Takes the digits that `text` begins with; false when there are none.
bool TakeDigits(std::string_view& text) {
  const std::size_t length = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(length);
  return length != 0;
}

bool Take(std::string_view& text, std::string_view oneOf) {
  if (text.empty() || oneOf.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

std::string NameOf(const CellPlace& place) {
  std::string text = "Record " + std::to_string(place.record) + ", column \"";
  return text.append(place.column).append("\"");
}

void RaiseAtCell(const CellPlace& place, std::string_view reason) {
  throw Error(errorNumber::application, "Tessel", NameOf(place).append(": ").append(reason));
}

std::vector<std::string> DifferingNames(const std::vector<FieldInfo>& fields) {
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string wanted =
        fields[i].name.empty() ? "column_" + std::to_string(i + 1) : fields[i].name;
    std::string name = wanted;
    for (int number = 2; !taken.insert(AsciiUpper(name)).second; ++number)
      name = wanted + "_" + std::to_string(number);
    names.push_back(std::move(name));
  }
  return names;
}

void AppendHex(TextSink& sink, BinaryView binary) {
  InPieces(sink, binary.bytes, [&](std::span<const std::byte> piece) {
    for (const std::byte byte : piece) {
      const auto code = std::to_integer<unsigned>(byte);
      sink.Text() += hexDigits[code >> 4U];
      sink.Text() += hexDigits[code & 15U];
    }
  });
}

void AppendBase64(TextSink& sink, BinaryView binary) {
  InPieces(sink, binary.bytes, [&](std::span<const std::byte> piece) {
    for (std::size_t at = 0; at < piece.size(); at += 3)
      AppendThree(sink.Text(), piece.subspan(at, std::min<std::size_t>(3, piece.size() - at)));
  });
}

void AppendDoubled(TextSink& sink, std::string_view text, char mark) {
  AppendInPieces(sink, text, [&](std::string_view piece) {
    std::string& out = sink.Text();
    for (std::size_t at = piece.find(mark); at != std::string_view::npos; at = piece.find(mark)) {
      out.append(piece.substr(0, at + 1)).append(1, mark);
      piece.remove_prefix(at + 1);
    }
    out.append(piece);
  });
}

Special SpecialOf(const ValueView& value) {
  if (const auto* number = std::get_if<double>(&value)) return SpecialOfNumber(*number);
  if (const auto* single = std::get_if<float>(&value)) return SpecialOfNumber(*single);
  if (const auto* decimal = std::get_if<DecimalView>(&value))
    return SpecialOfDigits(decimal->digits);
  return Special::None;
}

bool IsPlainNumber(std::string_view text) {
  Take(text, "-");
  const bool leadingZero = text.starts_with('0');
  const std::size_t before = text.size();
  if (!TakeDigits(text) || (leadingZero && before - text.size() > 1)) return false;
  if (Take(text, ".") && !TakeDigits(text)) return false;
  if (!Take(text, "eE")) return text.empty();
  Take(text, "+-");
  return TakeDigits(text) && text.empty();
}

}  // namespace tessel
