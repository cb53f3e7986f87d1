// The text of a value becomes what its column holds. What a database would silently change, as a
// number that is too large for its column, is refused here.

#include "logic/import/CellValues.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>

#include "contract/text/Ascii.h"
#include "contract/text/Utf8.h"

namespace tessel {

namespace {

constexpr const char* noWhole = "is no whole number.";
constexpr const char* noNumber = "is no number.";
constexpr const char* tooLarge = "is a number that the type of the column does not hold.";
constexpr const char* brokenText = "is no valid UTF-8. Choose another encoding.";
constexpr const char* halfCharacter =
    "holds half of a character of UTF-16, or the file is cut off in the middle of one.";

// --- numbers -------------------------------------------------------------------------------------

template <class Range, class Number = std::int64_t>
const char* ReadWhole(std::string_view text, ValueView& value) {
  if (text.starts_with('+')) text.remove_prefix(1);
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument) return noWhole;
  const bool fits = error == std::errc() && number >= std::numeric_limits<Range>::min() &&
                    number <= std::numeric_limits<Range>::max();
  if (!fits) return tooLarge;
  value = number;
  return nullptr;
}

template <class Number>
const char* ReadReal(std::string_view text, ValueView& value) {
  if (text.starts_with('+')) text.remove_prefix(1);
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument ||
      text.find('(') != std::string_view::npos)
    return noNumber;
  if (error != std::errc()) return tooLarge;
  value = number;
  return nullptr;
}

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::find_if_not(text, [](char c) { return c >= '0' && c <= '9'; }) - text.begin());
}

bool IsExact(std::string_view text) {
  for (const std::string_view word : {"NaN", "Infinity", "-Infinity", "inf", "-inf"})
    if (EqualNoCase(text, word)) return true;
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  std::size_t digits = CountDigits(text);
  text.remove_prefix(digits);
  if (text.starts_with('.')) {
    const std::size_t behind = CountDigits(text.substr(1));
    digits += behind;
    text.remove_prefix(behind + 1);
  }
  if (digits == 0 || text.empty()) return digits > 0;
  if (AsciiLower(text.front()) != 'e') return false;
  text.remove_prefix(1);
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  return !text.empty() && CountDigits(text) == text.size();
}

const char* ReadExact(std::string_view text, ValueView& value) {
  if (!IsExact(text)) return noNumber;
  value = DecimalView{text};
  return nullptr;
}

const char* ReadFlag(std::string_view text, ValueView& value) {
  constexpr std::array<std::string_view, 5> yes = {"true", "1", "t", "yes", "y"};
  constexpr std::array<std::string_view, 5> no = {"false", "0", "f", "no", "n"};
  const auto equals = [&](std::string_view word) { return EqualNoCase(text, word); };
  if (std::ranges::any_of(yes, equals)) value = true;
  else if (std::ranges::any_of(no, equals)) value = false;
  else return "is neither true nor false.";
  return nullptr;
}

// --- bytes ---------------------------------------------------------------------------------------

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = AsciiLower(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The number of bytes that the digits behind the first two characters make, which are put to the
/// front of `text`; nothing when there is a character that is none: then the text stays as it is.
std::optional<std::size_t> DecodeHex(char* text, std::size_t size) {
  constexpr int base = 16;
  const auto isDigit = [](char c) { return HexDigit(c) >= 0; };
  if (size % 2 != 0 || !std::all_of(text + 2, text + size, isDigit)) return std::nullopt;
  char* out = text;
  for (std::size_t at = 2; at < size; at += 2)
    *out++ = static_cast<char>(HexDigit(text[at]) * base + HexDigit(text[at + 1]));
  return static_cast<std::size_t>(out - text);
}

int Base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

/// The same of base64.
std::optional<std::size_t> DecodeBase64(char* text, std::size_t size) {
  constexpr std::size_t group = 4;
  if (size % group != 0) return std::nullopt;
  std::size_t digits = size;
  while (digits > 0 && size - digits < 2 && text[digits - 1] == '=') --digits;
  const auto isDigit = [](char c) { return Base64Digit(c) >= 0; };
  if (!std::all_of(text, text + digits, isDigit)) return std::nullopt;
  char* out = text;
  unsigned bits = 0;
  int count = 0;
  for (std::size_t at = 0; at < digits; ++at) {
    bits = bits << 6U | static_cast<unsigned>(Base64Digit(text[at]));
    count += 6;
    if (count < 8) continue;
    count -= 8;
    *out++ = static_cast<char>(bits >> static_cast<unsigned>(count));
  }
  return static_cast<std::size_t>(out - text);
}

const char* ReadBytes(const ImportCell& cell, bool json, ValueView& value) {
  const std::string_view text = cell.View();
  const bool isHex = text.starts_with("0x") || text.starts_with("0X") || text.starts_with("\\x");
  const auto size =
      isHex && !json ? DecodeHex(cell.text, cell.size) : DecodeBase64(cell.text, cell.size);
  if (!size) return "are no bytes: neither hexadecimal digits behind 0x nor base64.";
  value = BinaryView{std::as_bytes(std::span(cell.text, *size))};
  return nullptr;
}

// --- texts ---------------------------------------------------------------------------------------

bool IsAscii(std::string_view text) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::uint64_t all = 0;
  for (; text.size() >= sizeof all; text.remove_prefix(sizeof all)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data(), sizeof eight);
    all |= eight;
  }
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return (all & highBits) == 0;
}

/// Halves of characters of UTF-16 come as the three bytes that each of them would have.
bool HoldsHalf(std::string_view text) {
  constexpr char first = '\xED';
  for (; !text.empty(); text.remove_prefix(1))
    if (text[0] == first && text.size() > 1 && static_cast<unsigned char>(text[1]) >= 0xA0)
      return true;
  return false;
}

const char* CheckText(std::string_view text) {
  if (IsAscii(text) || IsValidUtf8(text)) return nullptr;
  return HoldsHalf(text) ? halfCharacter : brokenText;
}

bool IsText(DataType type) {
  switch (type) {
    case DataType::Char:
    case DataType::WChar:
    case DataType::VarChar:
    case DataType::LongVarChar:
    case DataType::VarWChar:
    case DataType::LongVarWChar: return true;
    default: return false;
  }
}

/// Without blanks around, and with "." as the decimal sign.
std::string_view NumberText(const ImportCell& cell, char decimalSign) {
  char* begin = cell.text;
  char* end = cell.text + cell.size;
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (begin != end && isBlank(*begin)) ++begin;
  while (begin != end && isBlank(end[-1])) --end;
  if (decimalSign != '.') std::replace(begin, end, decimalSign, '.');
  return {begin, static_cast<std::size_t>(end - begin)};
}

const char* ReadNumber(DataType type, std::string_view text, ValueView& value) {
  switch (type) {
    case DataType::TinyInt: return ReadWhole<std::int8_t>(text, value);
    case DataType::SmallInt: return ReadWhole<std::int16_t>(text, value);
    case DataType::Integer: return ReadWhole<std::int32_t>(text, value);
    case DataType::BigInt: return ReadWhole<std::int64_t>(text, value);
    case DataType::UnsignedTinyInt: return ReadWhole<std::uint8_t>(text, value);
    case DataType::UnsignedSmallInt: return ReadWhole<std::uint16_t>(text, value);
    case DataType::UnsignedInt: return ReadWhole<std::uint32_t>(text, value);
    case DataType::UnsignedBigInt: return ReadWhole<std::uint64_t, std::uint64_t>(text, value);
    case DataType::Single: return ReadReal<float>(text, value);
    case DataType::Double: return ReadReal<double>(text, value);
    case DataType::Boolean: return ReadFlag(text, value);
    default: return ReadExact(text, value);
  }
}

}  // namespace

const char* ReadCell(ImportCell& cell, DataType type, const CellStyle& style, ValueView& value) {
  value = std::monostate();
  if (cell.form == ImportForm::Null) return nullptr;
  if (IsText(type)) {
    value = cell.View();
    return CheckText(cell.View());
  }
  if (IsBinaryType(type))
    return cell.form == ImportForm::Bare && cell.size == 0 ? nullptr
                                                           : ReadBytes(cell, style.json, value);
  if (IsNumericType(type) || type == DataType::Boolean) {
    const std::string_view text = NumberText(cell, style.decimalSign);
    return text.empty() ? nullptr : ReadNumber(type, text, value);
  }
  if (cell.size == 0) return nullptr;
  value = MomentView{cell.View()};
  return CheckText(cell.View());
}

/// Behind the first colon of a time stand digits, colons, points, blanks, and "AM" or "PM";
/// anything else is an offset or the name of a zone.
const char* LossOfMoment(std::string_view text, DataType type) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return nullptr;
  if (type == DataType::DBDate) return "has a time of day, which the column would lose.";
  std::string rest = AsciiUpper(text.substr(colon));
  if (rest.ends_with("AM") || rest.ends_with("PM")) rest.resize(rest.size() - 2);
  return rest.find_first_not_of("0123456789:.,T ") == std::string::npos
             ? nullptr
             : "has an offset from UTC, which the column would lose.";
}

}  // namespace tessel
