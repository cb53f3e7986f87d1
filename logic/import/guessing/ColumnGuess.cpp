// Guessing what columns hold. Every value of a file is looked at, so the first character decides
// what is tried at all, and columns that are text by now are only measured.

#include "logic/import/guessing/ColumnGuess.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "contract/text/Ascii.h"
#include "contract/text/NumberText.h"

namespace tessel {

namespace {

/// Kinds of values, a bit each.
constexpr unsigned flag = 1U;
constexpr unsigned whole = 2U;
constexpr unsigned exact = 4U;
constexpr unsigned real = 8U;
constexpr unsigned date = 16U;
constexpr unsigned timeOfDay = 32U;
constexpr unsigned stamp = 64U;
constexpr unsigned guid = 128U;
constexpr unsigned bytes = 256U;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHex(char c) {
  const char lower = AsciiLower(c);
  return IsDigit(c) || (lower >= 'a' && lower <= 'f');
}

/// `shape`: "d" stands for a digit, "h" for a hexadecimal one.
bool HasShape(std::string_view text, std::string_view shape) {
  return std::ranges::equal(text, shape, [](char have, char want) {
    if (want == 'd') return IsDigit(have);
    return want == 'h' ? IsHex(have) : have == want;
  });
}

std::size_t Digits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
}

/// A number without grouping. One with a zero in front, or a plus, is a code rather: it would not
/// come back as it was.
unsigned NumberKinds(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const std::size_t front = Digits(text);
  if (front == 0 || (front > 1 && text.front() == '0')) return 0;
  text.remove_prefix(front);
  if (text.empty()) return whole | exact | real;
  const bool hasPoint = text.front() == '.';
  if (hasPoint) {
    const std::size_t behind = Digits(text.substr(1));
    if (behind == 0) return 0;
    text.remove_prefix(behind + 1);
    if (text.empty()) return exact | real;
  }
  if (AsciiLower(text.front()) != 'e') return 0;
  text.remove_prefix(1);
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  return !text.empty() && Digits(text) == text.size() ? real : 0;
}

bool IsTime(std::string_view text) {
  constexpr std::size_t seconds = 8;
  if (!HasShape(text.substr(0, seconds), "dd:dd:dd") && !HasShape(text, "dd:dd")) return false;
  if (text.size() <= seconds) return true;
  return text[seconds] == '.' && text.size() > seconds + 1 &&
         Digits(text.substr(seconds + 1)) == text.size() - seconds - 1;
}

bool IsCalendarDate(std::string_view text) {
  if (!HasShape(text, "dddd-dd-dd")) return false;
  const int month = (text[5] - '0') * 10 + text[6] - '0';
  const int day = (text[8] - '0') * 10 + text[9] - '0';
  constexpr std::array days = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month >= 1 && month <= 12 && day >= 1 && day <= days[static_cast<std::size_t>(month - 1)];
}

unsigned MomentKinds(std::string_view text) {
  constexpr std::size_t dateLength = 10;
  if (IsTime(text)) return timeOfDay;
  if (!IsCalendarDate(text.substr(0, dateLength))) return 0;
  if (text.size() == dateLength) return date | stamp;
  const bool divided = text[dateLength] == ' ' || text[dateLength] == 'T';
  return divided && IsTime(text.substr(dateLength + 1)) ? stamp : 0;
}

bool IsBytes(std::string_view text) {
  return text.starts_with("0x") && text.size() % 2 == 0 &&
         std::ranges::all_of(text.substr(2), IsHex);
}

unsigned WordKinds(std::string_view text) {
  for (const std::string_view word : {"true", "false"})
    if (EqualNoCase(text, word)) return flag;
  for (const std::string_view word : {"nan", "inf", "-inf", "infinity", "-infinity"})
    if (EqualNoCase(text, word)) return real;
  return 0;
}

unsigned KindsOf(std::string_view text) {
  constexpr std::string_view guidShape = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";
  const char first = text.front();
  unsigned kinds = 0;
  if (text.size() == guidShape.size() && HasShape(text, guidShape)) return guid;
  if (IsDigit(first) || first == '-') kinds = NumberKinds(text);
  if (kinds == 0 && IsDigit(first)) kinds = IsBytes(text) ? bytes : MomentKinds(text);
  return kinds == 0 ? WordKinds(text) : kinds;
}

/// Whether a number of double precision has this text as its shortest one.
bool IsShortest(std::string_view text) {
  double number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size()) return false;
  std::string again;
  AppendNumber(number, again);
  return again == text;
}

bool IsLong(std::string_view text) {
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && stop == text.data() + text.size();
}

}  // namespace

bool IsPlainValue(std::string_view text) { return !text.empty() && KindsOf(text) != 0; }

void ColumnGuess::Add(const ImportCell& cell, char decimalSign, bool json) {
  if (cell.form == ImportForm::Null) {
    hasNull_ = true;
    return;
  }
  longest_ = std::max(longest_, static_cast<std::int64_t>(cell.size));
  hasValue_ = true;
  if (kinds_ == 0) return;
  const std::string_view text = cell.View();
  if (text.empty()) {
    kinds_ = 0;
    return;
  }
  std::string withPoint;
  unsigned kinds = KindsOf(text);
  if (kinds == 0 && decimalSign != '.' && text.find('.') == std::string_view::npos) {
    withPoint = text;
    std::ranges::replace(withPoint, decimalSign, '.');
    kinds = KindsOf(withPoint) & (exact | real);
  }
  if (json && cell.form == ImportForm::Quoted) kinds &= ~(flag | whole | exact);
  kinds_ &= kinds;
  if ((kinds_ & (exact | real)) != 0) AddNumber(withPoint.empty() ? text : withPoint);
}

void ColumnGuess::AddNumber(std::string_view text) {
  constexpr int safeDigits = 15;
  constexpr int integerDigits = 9;
  const std::string_view number = text.starts_with('-') ? text.substr(1) : text;
  const int before = static_cast<int>(Digits(number));
  const std::size_t point = number.find('.');
  const int behind =
      point == std::string_view::npos ? 0 : static_cast<int>(Digits(number.substr(point + 1)));
  wholeDigits_ = std::max(wholeDigits_, before);
  fractionDigits_ = std::max(fractionDigits_, behind);
  fitsInteger_ = fitsInteger_ && before <= integerDigits;
  fitsLong_ = fitsLong_ && (before <= safeDigits || IsLong(text));
  if (before + behind > safeDigits && fitsReal_) fitsReal_ = IsShortest(text);
}

ColumnType ColumnGuess::ExactType() const {
  constexpr int safeDigits = 15;
  const int digits = wholeDigits_ + fractionDigits_;
  if (digits > safeDigits && fractionDigits_ > 0 && fitsReal_) return {.type = DataType::Double};
  return {.type = DataType::Numeric, .precision = digits, .scale = fractionDigits_};
}

/// A date alone is a time stamp too; a column that has both is one of time stamps.
ColumnType ColumnGuess::Type() const {
  const ColumnType text{.type = DataType::LongVarWChar, .size = longest_};
  if (!hasValue_) return text;
  if ((kinds_ & flag) != 0) return {.type = DataType::Boolean};
  if ((kinds_ & whole) != 0) {
    if (!fitsLong_) return ExactType();
    return {.type = fitsInteger_ ? DataType::Integer : DataType::BigInt};
  }
  if ((kinds_ & exact) != 0) return ExactType();
  if ((kinds_ & real) != 0) return fitsReal_ ? ColumnType{.type = DataType::Double} : text;
  if ((kinds_ & date) != 0) return {.type = DataType::DBDate};
  if ((kinds_ & stamp) != 0) return {.type = DataType::DBTimeStamp};
  if ((kinds_ & timeOfDay) != 0) return {.type = DataType::DBTime};
  if ((kinds_ & guid) != 0) return {.type = DataType::Guid};
  if ((kinds_ & bytes) != 0) return {.type = DataType::LongVarBinary, .size = longest_ / 2};
  return text;
}

}  // namespace tessel
