#include "data/rows/order/NumberKey.h"

#include <bit>
#include <charconv>
#include <cmath>

namespace tessel {

namespace {

constexpr std::uint64_t signBit = std::uint64_t{1} << 63U;

/// All digits of the exact value; `to_chars` would give the shortest that reads back.
std::string ExactText(double value) {
  std::string text(1100, '\0');
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                          std::chars_format::scientific, 800);
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

char ClassOf(const DecimalDigits& number) {
  switch (number.kind) {
    case DecimalDigits::NotANumber: return '0';
    case DecimalDigits::MinusInfinity: return '1';
    case DecimalDigits::Infinity: return '5';
    default: return number.digits.empty() ? '3' : number.negative ? '2' : '4';
  }
}

}  // namespace

std::optional<double> ExactDouble(const ValueView& value) {
  constexpr std::int64_t most = std::int64_t{1} << 53;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* single = std::get_if<float>(&value)) return *single;
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    if (*number >= -most && *number <= most) return static_cast<double>(*number);
  }
  return std::nullopt;
}

DecimalDigits NumberDigits(const ValueView& value) {
  if (const auto* decimal = std::get_if<DecimalView>(&value)) return ToDigits(decimal->digits);
  if (const auto* real = std::get_if<double>(&value)) return ToDigits(ExactText(*real));
  if (const auto* single = std::get_if<float>(&value)) return ToDigits(ExactText(*single));
  return ToDigits(ToText(value));
}

std::uint64_t RealKey(double number) {
  if (std::isnan(number)) return 0;
  const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
  return (bits & signBit) != 0 ? ~bits : bits | signBit;
}

/// A kind, where the point stands, the digits. Of negative numbers each byte is turned over, and
/// fewer digits stand behind more of them.
void AppendDigitsKey(const DecimalDigits& number, std::string& out) {
  const char kind = ClassOf(number);
  out += kind;
  const bool negative = kind == '2';
  if (!negative && kind != '4') return;
  const std::size_t start = out.size();
  const std::uint64_t point = WholeKey(number.point);
  for (int shift = 56; shift >= 0; shift -= 8) out += static_cast<char>((point >> shift) & 0xFFU);
  out += number.digits;
  if (!negative) return;
  for (std::size_t i = start; i < out.size(); ++i) out[i] = static_cast<char>(~out[i]);
  out += '\xFF';
}

}  // namespace tessel
