#include "logic/results/cells/ExactSum.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace tessel {

namespace {

constexpr std::int64_t base = 1'000'000'000;
constexpr int digitsOfPart = 9;
constexpr int partsOfCarry = 3;  ///< So many behind the last one hold all that is carried.
constexpr int largestExponent = 5000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The digit with the value d x 10^exponent, in its part.
std::int64_t InPart(char digit, int exponent) {
  static constexpr std::int64_t powers[] = {1,      10,      100,      1000,     10000,
                                            100000, 1000000, 10000000, 100000000};
  const int within = ((exponent % digitsOfPart) + digitsOfPart) % digitsOfPart;
  return (digit - '0') * powers[within];
}

int PartOf(int exponent) {
  return exponent >= 0 ? exponent / digitsOfPart : -((-exponent + digitsOfPart - 1) / digitsOfPart);
}

std::string NineDigits(std::int64_t part) {
  std::string digits = std::to_string(part);
  return std::string(digitsOfPart - digits.size(), '0') + digits;
}

/// What stays of a part; the rest is carried into the next one.
std::int64_t TakePart(std::int64_t sum, std::int64_t& carry) {
  carry = sum >= 0 ? sum / base : -((-sum + base - 1) / base);
  return sum - carry * base;
}

/// Digits and point of a number, taken apart.
struct Written {
  bool negative = false;
  std::string_view digits;  ///< With the point.
  int exponent = 0;
};

bool Read(std::string_view text, Written& number) {
  number.negative = text.starts_with('-');
  if (number.negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t end = text.find_first_of("eE");
  number.digits = text.substr(0, end);
  if (number.digits.find_first_not_of("0123456789.") != std::string_view::npos) return false;
  if (number.digits.find_first_of("0123456789") == std::string_view::npos) return false;
  if (end == std::string_view::npos) return true;
  text.remove_prefix(end + 1);
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [last, error] =
      std::from_chars(text.data(), text.data() + text.size(), number.exponent);
  return error == std::errc() && last == text.data() + text.size() &&
         std::abs(number.exponent) <= largestExponent;
}

}  // namespace

bool ExactSum::Add(std::string_view text) {
  Written number;
  if (!Read(text, number)) return false;
  const std::size_t point = std::min(number.digits.find('.'), number.digits.size());
  int exponent = static_cast<int>(point) - 1 + number.exponent;
  for (const char c : number.digits) {
    if (!IsDigit(c)) continue;
    if (c != '0')
      parts_[PartOf(exponent)] += number.negative ? -InPart(c, exponent) : InPart(c, exponent);
    --exponent;
  }
  return true;
}

void ExactSum::Add(std::int64_t number) {
  for (int part = 0; number != 0; ++part, number /= base) parts_[part] += number % base;
}

/// Each part is brought between 0 and 999,999,999. What is carried out of the last one, far behind
/// all digits, is 0, or -1 for a negative sum, whose parts are then turned over.
std::string ExactSum::Text() const {
  std::map<int, std::int64_t> parts = parts_;
  parts.emplace(0, 0);
  const int first = parts.begin()->first;
  const int last = parts.rbegin()->first + partsOfCarry;
  std::int64_t carry = 0;
  for (int at = first; at <= last; ++at) parts[at] = TakePart(parts[at] + carry, carry);
  const bool negative = carry < 0;
  for (int at = first; negative && at <= last; ++at)
    parts[at] = TakePart((at == first ? 0 : carry) - parts[at], carry);
  std::string whole;
  for (int at = last; at >= 0; --at) whole += NineDigits(parts[at]);
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
  std::string fraction;
  for (int at = -1; at >= first; --at) fraction += NineDigits(parts[at]);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return (negative ? "-" : "") + whole + (fraction.empty() ? "" : "." + fraction);
}

}  // namespace tessel
