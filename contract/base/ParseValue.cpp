// What a person types becomes a value here: one function for each family of types, and the choice
// among them. The cells of a record that is edited are read by these rules, whatever the desktop.

#include <algorithm>
#include <charconv>
#include <limits>

#include "contract/base/Value.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

using Parsed = std::optional<Value>;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(words, [&](std::string_view word) { return EqualNoCase(text, word); });
}

/// Cuts the digits off the front of `text`; how many they were.
std::size_t TakeDigits(std::string_view& text) {
  const auto end = std::ranges::find_if_not(text, IsDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count;
}

bool Take(std::string_view& text, std::string_view what) {
  if (!text.starts_with(what)) return false;
  text.remove_prefix(what.size());
  return true;
}

// --- numbers -------------------------------------------------------------------------------------

template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

/// A whole number in the range of `Range`.
template <class Range>
Parsed ParseWhole(std::string_view text) {
  const auto number = ParseNumber<std::int64_t>(text);
  if (!number || *number < std::numeric_limits<Range>::min() ||
      *number > std::numeric_limits<Range>::max())
    return std::nullopt;
  return Value(*number);
}

/// "nan(...)" would be one too.
template <class Number>
Parsed ParseReal(std::string_view text) {
  const auto number = ParseNumber<Number>(text);
  if (!number || text.find('(') != std::string_view::npos) return std::nullopt;
  return Value(*number);
}

Parsed ParseUnsigned(std::string_view text) {
  const auto number = ParseNumber<std::uint64_t>(text);
  return number ? Parsed(Value(*number)) : std::nullopt;
}

bool TakeExponent(std::string_view& text) {
  if (!Take(text, "e") && !Take(text, "E")) return true;
  if (!Take(text, "-")) Take(text, "+");
  return TakeDigits(text) > 0;
}

bool IsDecimal(std::string_view text) {
  if (IsOneOf(text, {"NaN", "Infinity", "-Infinity"})) return true;
  if (!Take(text, "-")) Take(text, "+");
  std::size_t digits = TakeDigits(text);
  if (Take(text, ".")) digits += TakeDigits(text);
  return digits > 0 && TakeExponent(text) && text.empty();
}

Parsed ParseDecimal(std::string_view text) {
  if (!IsDecimal(text)) return std::nullopt;
  return Value(Decimal{std::string(text)});
}

Parsed ParseBoolean(std::string_view text) {
  if (IsOneOf(text, {"True", "1", "t", "yes"})) return Value(true);
  if (IsOneOf(text, {"False", "0", "f", "no"})) return Value(false);
  return std::nullopt;
}

// --- moments -------------------------------------------------------------------------------------

/// `separator` and two digits.
bool TakePair(std::string_view& text, std::string_view separator) {
  std::string_view rest = text;
  if (!Take(rest, separator) || rest.size() < 2 || !IsDigit(rest[0]) || !IsDigit(rest[1]))
    return false;
  text = rest.substr(2);
  return true;
}

/// Years have four digits or more.
bool TakeDate(std::string_view& text) {
  constexpr std::size_t yearDigits = 4;
  return TakeDigits(text) >= yearDigits && TakePair(text, "-") && TakePair(text, "-");
}

/// Hours may be more than a day has, and less than none.
bool TakeTime(std::string_view& text) {
  constexpr std::size_t hourDigits = 2;
  Take(text, "-");
  if (TakeDigits(text) < hourDigits || !TakePair(text, ":")) return false;
  if (!TakePair(text, ":")) return true;
  return !Take(text, ".") || TakeDigits(text) > 0;
}

/// "Z", "+02", "-03:30" or "+01:23:45"; none is as good.
void TakeZone(std::string_view& text) {
  if (Take(text, "Z")) return;
  if (!TakePair(text, "+") && !TakePair(text, "-")) return;
  if (TakePair(text, ":")) TakePair(text, ":");
}

bool IsDate(std::string_view text) {
  if (!TakeDate(text)) return false;
  Take(text, " BC");
  return text.empty();
}

bool IsTime(std::string_view text) {
  if (!TakeTime(text)) return false;
  TakeZone(text);
  return text.empty();
}

bool IsTimeStamp(std::string_view text) {
  if (!TakeDate(text)) return false;
  if (Take(text, " BC") || text.empty()) return text.empty();
  if ((!Take(text, " ") && !Take(text, "T")) || text.starts_with('-') || !TakeTime(text))
    return false;
  TakeZone(text);
  Take(text, " BC");
  return text.empty();
}

bool IsEndless(std::string_view text) { return IsOneOf(text, {"infinity", "-infinity"}); }

Parsed ParseMoment(std::string_view text, bool hasForm) {
  if (!hasForm) return std::nullopt;
  return Value(Moment{std::string(text)});
}

// --- others --------------------------------------------------------------------------------------

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  const char lower = AsciiLower(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

Parsed ParseBytes(std::string_view text) {
  if ((!Take(text, "0x") && !Take(text, "0X")) || text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const int high = HexDigit(text[at]);
    const int low = HexDigit(text[at + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(high * 16 + low));
  }
  return Value(std::move(bytes));
}

/// 8-4-4-4-12 hexadecimal digits.
Parsed ParseGuid(std::string_view text) {
  constexpr std::string_view shape = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";
  const bool fits = std::ranges::equal(text, shape, [](char have, char want) {
    return want == 'h' ? HexDigit(have) >= 0 : have == want;
  });
  return fits ? Parsed(Value(std::string(text))) : std::nullopt;
}

bool IsTextType(DataType type) {
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

Parsed ParseFull(DataType type, std::string_view text) {
  switch (type) {
    case DataType::TinyInt: return ParseWhole<std::int8_t>(text);
    case DataType::SmallInt: return ParseWhole<std::int16_t>(text);
    case DataType::Integer: return ParseWhole<std::int32_t>(text);
    case DataType::BigInt: return ParseWhole<std::int64_t>(text);
    case DataType::UnsignedTinyInt: return ParseWhole<std::uint8_t>(text);
    case DataType::UnsignedSmallInt: return ParseWhole<std::uint16_t>(text);
    case DataType::UnsignedInt: return ParseWhole<std::uint32_t>(text);
    case DataType::UnsignedBigInt: return ParseUnsigned(text);
    case DataType::Single: return ParseReal<float>(text);
    case DataType::Double: return ParseReal<double>(text);
    case DataType::Currency:
    case DataType::Decimal:
    case DataType::Numeric: return ParseDecimal(text);
    case DataType::Boolean: return ParseBoolean(text);
    case DataType::DBDate: return ParseMoment(text, IsDate(text) || IsEndless(text));
    case DataType::DBTime: return ParseMoment(text, IsTime(text));
    case DataType::Date:
    case DataType::DBTimeStamp: return ParseMoment(text, IsTimeStamp(text) || IsEndless(text));
    case DataType::Guid: return ParseGuid(text);
    case DataType::Binary:
    case DataType::VarBinary:
    case DataType::LongVarBinary: return ParseBytes(text);
    default: return Value(std::string(text));
  }
}

}  // namespace

std::optional<Value> ParseValue(DataType type, std::string_view text) {
  if (text.empty()) return IsTextType(type) ? Value(std::string()) : Value();
  return ParseFull(type, text);
}

}  // namespace tessel
