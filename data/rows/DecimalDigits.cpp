#include "data/rows/DecimalDigits.h"

#include <algorithm>
#include <charconv>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

template <class T>
int Compare(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

std::int64_t TakeExponent(std::string_view& text) {
  const std::size_t at = text.find_first_of("eE");
  if (at == std::string_view::npos) return 0;
  std::string_view exponent = text.substr(at + 1);
  text = text.substr(0, at);
  if (exponent.starts_with('+')) exponent.remove_prefix(1);
  std::int64_t value = 0;
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), value);
  return value;
}

DecimalDigits::Class ClassOf(std::string_view text, bool negative) {
  if (StartsWithNoCase(text, "nan")) return DecimalDigits::NotANumber;
  if (StartsWithNoCase(text, "inf"))
    return negative ? DecimalDigits::MinusInfinity : DecimalDigits::Infinity;
  return DecimalDigits::Finite;
}

int CompareMagnitude(const DecimalDigits& a, const DecimalDigits& b) {
  if (a.digits.empty() || b.digits.empty()) return Compare(!a.digits.empty(), !b.digits.empty());
  if (a.point != b.point) return Compare(a.point, b.point);
  return Compare(a.digits, b.digits);
}

}  // namespace

DecimalDigits ToDigits(std::string_view text) {
  DecimalDigits number;
  number.negative = text.starts_with('-');
  if (number.negative || text.starts_with('+')) text.remove_prefix(1);
  number.kind = ClassOf(text, number.negative);
  if (number.kind != DecimalDigits::Finite) return number;
  number.point = TakeExponent(text);
  const std::size_t point = std::min(text.find('.'), text.size());
  number.point += static_cast<std::int64_t>(point);
  number.digits = text.substr(0, point);
  if (point < text.size()) number.digits += text.substr(point + 1);
  const std::size_t zeros = std::min(number.digits.find_first_not_of('0'), number.digits.size());
  number.digits.erase(0, zeros);
  number.point -= static_cast<std::int64_t>(zeros);
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
  if (number.digits.empty()) number.negative = false;
  return number;
}

int CompareDigits(const DecimalDigits& a, const DecimalDigits& b) {
  if (a.kind != b.kind || a.kind != DecimalDigits::Finite) return Compare(a.kind, b.kind);
  if (a.negative != b.negative) return a.negative ? -1 : 1;
  return a.negative ? CompareMagnitude(b, a) : CompareMagnitude(a, b);
}

}  // namespace tessel
