#include "data/combined/matching/SameValue.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string_view>

#include "data/combined/matching/MomentParts.h"
#include "data/rows/DecimalDigits.h"

namespace tessel {

namespace {

enum class Family { Null, Boolean, Number, Moment, Text, Binary };

Family FamilyOf(const ValueView& value) {
  using enum Family;
  constexpr Family families[] = {Null,   Boolean, Number, Number, Number,
                                 Number, Number,  Moment, Text,   Binary};
  static_assert(std::size(families) == std::variant_size_v<ValueView>);
  return families[value.index()];
}

// --- numbers -------------------------------------------------------------------------------------

/// A whole number of 64 bits, with or without a sign.
struct Whole {
  std::uint64_t bits = 0;
  bool isLarge = false;  ///< Beyond those with a sign.

  bool operator==(const Whole&) const = default;
};

Whole WholeOf(std::int64_t value) { return {static_cast<std::uint64_t>(value), false}; }
Whole WholeOf(std::uint64_t value) {
  return {value, value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())};
}

std::optional<Whole> WholeOf(double value) {
  constexpr double two63 = 9223372036854775808.0;
  if (value >= -two63 && value < two63) {
    const auto whole = static_cast<std::int64_t>(value);
    if (static_cast<double>(whole) == value) return WholeOf(whole);
  } else if (value >= two63 && value < 2 * two63) {
    return WholeOf(static_cast<std::uint64_t>(value));
  }
  return std::nullopt;
}

template <class Number>
std::optional<Number> ReadWhole(std::string_view text) {
  Number number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<Whole> WholeOf(const DecimalDigits& number) {
  constexpr std::int64_t mostDigits = 20;
  const auto count = static_cast<std::int64_t>(number.digits.size());
  if (number.kind != DecimalDigits::Finite) return std::nullopt;
  if (count == 0) return Whole();
  if (number.point < count || number.point > mostDigits) return std::nullopt;
  std::string text = (number.negative ? "-" : "") + number.digits;
  text.append(static_cast<std::size_t>(number.point - count), '0');
  if (const auto whole = ReadWhole<std::int64_t>(text)) return WholeOf(*whole);
  if (const auto whole = ReadWhole<std::uint64_t>(text)) return WholeOf(*whole);
  return std::nullopt;
}

/// Most decimals are plain: digits, and perhaps a point and zeros.
std::optional<Whole> WholeOfDigits(std::string_view text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const bool hasFraction = text.find_first_not_of('0', point + 1) != std::string_view::npos;
  if (hasFraction && text.find_first_of("eE") == std::string_view::npos) return std::nullopt;
  if (!hasFraction)
    if (const auto whole = ReadWhole<std::int64_t>(text.substr(0, point))) return WholeOf(*whole);
  return WholeOf(ToDigits(text));
}

std::optional<Whole> WholeWorth(const ValueView& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return WholeOf(*number);
  if (const auto* number = std::get_if<std::uint64_t>(&value)) return WholeOf(*number);
  if (const auto* number = std::get_if<double>(&value)) return WholeOf(*number);
  if (const auto* number = std::get_if<float>(&value)) return WholeOf(double{*number});
  if (const auto* number = std::get_if<DecimalView>(&value)) return WholeOfDigits(number->digits);
  return WholeOf(std::int64_t{std::get<bool>(value)});
}

bool SameNumber(const ValueView& a, const ValueView& b) {
  const auto* decimalA = std::get_if<DecimalView>(&a);
  const auto* decimalB = std::get_if<DecimalView>(&b);
  if (decimalA != nullptr && decimalB != nullptr && *decimalA == *decimalB) return true;
  const std::optional<Whole> wholeA = WholeWorth(a);
  const std::optional<Whole> wholeB = WholeWorth(b);
  if (wholeA || wholeB) return wholeA == wholeB;
  const auto* realA = std::get_if<double>(&a);
  const auto* realB = std::get_if<double>(&b);
  if (realA != nullptr && realB != nullptr)
    return *realA == *realB || (std::isnan(*realA) && std::isnan(*realB));
  return CompareDigits(ToDigits(ToText(a)), ToDigits(ToText(b))) == 0;
}

/// The floating number next to a decimal: of those that are written alike it is the same.
double DoubleOfText(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() ? number : 0;
}

double NearestDouble(const ValueView& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* number = std::get_if<DecimalView>(&value)) return DoubleOfText(number->digits);
  return DoubleOfText(ToText(value));
}

std::uint64_t HashOfNumber(const ValueView& value) {
  constexpr std::uint64_t notANumber = 0x3C6EF372FE94F82BU;
  constexpr std::uint64_t large = 0xA54FF53A5F1D36F1U;
  if (const std::optional<Whole> whole = WholeWorth(value))
    return MixBits(whole->bits ^ (whole->isLarge ? large : 0));
  const double number = NearestDouble(value);
  return MixBits(std::isnan(number) ? notANumber : ~std::bit_cast<std::uint64_t>(number));
}

// --- moments -------------------------------------------------------------------------------------

std::uint64_t HashOfBytes(std::string_view bytes, Family family) {
  return AddHash(static_cast<std::uint64_t>(family), std::hash<std::string_view>()(bytes));
}

bool SameMoment(std::string_view a, std::string_view b) {
  if (a == b) return true;
  const std::optional<MomentParts> partsA = ReadMoment(a);
  return partsA && partsA == ReadMoment(b);
}

std::uint64_t HashOfMoment(std::string_view text) {
  const std::optional<MomentParts> parts = ReadMoment(text);
  if (!parts) return HashOfBytes(text, Family::Moment);
  const std::uint64_t kind =
      AddHash(static_cast<std::uint64_t>(Family::Moment), static_cast<std::uint64_t>(parts->kind));
  const std::uint64_t seconds = AddHash(kind, static_cast<std::uint64_t>(parts->seconds));
  return parts->fraction.empty() ? seconds
                                 : AddHash(seconds, std::hash<std::string_view>()(parts->fraction));
}

std::string_view AsText(BinaryView value) {
  return {reinterpret_cast<const char*>(value.bytes.data()), value.bytes.size()};
}

}  // namespace

bool ValueSameness::Same(const ValueView& a, const ValueView& b) const {
  const auto family = [this](const ValueView& value) {
    const Family found = FamilyOf(value);
    return found == Family::Boolean && booleansAreNumbers ? Family::Number : found;
  };
  const Family both = family(a);
  if (both != family(b)) return false;
  switch (both) {
    case Family::Boolean: return std::get<bool>(a) == std::get<bool>(b);
    case Family::Number: return SameNumber(a, b);
    case Family::Moment:
      return SameMoment(std::get<MomentView>(a).text, std::get<MomentView>(b).text);
    case Family::Text: return std::get<std::string_view>(a) == std::get<std::string_view>(b);
    case Family::Binary: return AsText(std::get<BinaryView>(a)) == AsText(std::get<BinaryView>(b));
    default: return true;
  }
}

std::uint64_t ValueSameness::Hash(const ValueView& value) const {
  constexpr std::uint64_t booleans = 0x510E527FADE682D1U;
  switch (FamilyOf(value)) {
    case Family::Boolean:
      return booleansAreNumbers ? HashOfNumber(value)
                                : AddHash(booleans, std::get<bool>(value) ? 1 : 0);
    case Family::Number: return HashOfNumber(value);
    case Family::Moment: return HashOfMoment(std::get<MomentView>(value).text);
    case Family::Text: return HashOfBytes(std::get<std::string_view>(value), Family::Text);
    case Family::Binary: return HashOfBytes(AsText(std::get<BinaryView>(value)), Family::Binary);
    default: return HashOfNull();
  }
}

}  // namespace tessel
