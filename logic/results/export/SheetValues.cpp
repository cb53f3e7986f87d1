#include "logic/results/export/SheetValues.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

#include "contract/text/NumberText.h"
#include "contract/text/Utf8.h"
#include "logic/results/export/formats/Cells.h"

namespace tessel {

namespace {

constexpr std::int64_t mostExactWhole = std::int64_t{1} << 53U;
constexpr std::size_t mostExactDigits = 15;
constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The number of exactly so many digits that `text` begins with, which it loses.
std::optional<int> TakeNumber(std::string_view& text, std::size_t digits) {
  int number = 0;
  const std::string_view part = text.substr(0, digits);
  if (part.size() != digits || part.find_first_not_of("0123456789") != std::string_view::npos)
    return std::nullopt;
  std::from_chars(part.data(), part.data() + digits, number);
  text.remove_prefix(digits);
  return number;
}

bool Take(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

/// Days by the count of sheets, which has a day too many before 1900-03-01.
std::optional<double> TakeDate(std::string_view& text) {
  const auto year = TakeNumber(text, 4);
  if (!year || !Take(text, '-')) return std::nullopt;
  const auto month = TakeNumber(text, 2);
  if (!month || !Take(text, '-')) return std::nullopt;
  const auto day = TakeNumber(text, 2);
  if (!day || *year < 1900) return std::nullopt;
  using namespace std::chrono;
  const year_month_day date{std::chrono::year{*year},
                            std::chrono::month(static_cast<unsigned>(*month)),
                            std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  constexpr sys_days begin = 1899y / December / 31;
  constexpr double firstOfMarch = 60;
  const auto days = static_cast<double>((sys_days(date) - begin).count());
  return days < firstOfMarch ? days : days + 1;
}

/// The part of a day; at most thousandths of a second are exact.
std::optional<double> TakeTime(std::string_view& text) {
  const auto hours = TakeNumber(text, 2);
  if (!hours || *hours > 23 || !Take(text, ':')) return std::nullopt;
  const auto minutes = TakeNumber(text, 2);
  if (!minutes || *minutes > 59 || !Take(text, ':')) return std::nullopt;
  const auto seconds = TakeNumber(text, 2);
  if (!seconds || *seconds > 59) return std::nullopt;
  int thousandths = 0;
  if (Take(text, '.')) {
    int weight = 100;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
      const int digit = text.front() - '0';
      if (weight == 0 && digit != 0) return std::nullopt;
      thousandths += digit * weight;
      weight /= 10;
    }
  }
  constexpr double perDay = 86'400'000;
  return (((*hours * 60.0 + *minutes) * 60 + *seconds) * 1000 + thousandths) / perDay;
}

bool IsExact(std::int64_t number) { return number >= -mostExactWhole && number <= mostExactWhole; }

/// Leading zeros apart; a decimal without an exponent.
bool IsExact(std::string_view digits) {
  if (!IsPlainNumber(digits) || digits.find_first_of("eE") != std::string_view::npos) return false;
  const std::size_t from = digits.find_first_of("123456789");
  if (from == std::string_view::npos) return true;
  std::size_t count = 0;
  for (const char c : digits.substr(from)) count += c == '.' ? 0U : 1U;
  return count <= mostExactDigits;
}

double NumberOf(std::string_view digits) {
  double number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

/// More bytes than a cell takes of any text, or as text of bytes.
constexpr std::size_t moreThanFits = 3 * (sheetLimit::characters + 1);

/// The bytes of `text` that a cell takes.
std::size_t FittingLength(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = CharacterLength(text.substr(at));
    units += length == 4 ? 2 : 1;
    if (units > sheetLimit::characters) return at;
    at += length;
  }
  return text.size();
}

}  // namespace

std::optional<SheetMoment> SheetMomentOf(std::string_view text) {
  std::string_view rest = text;
  if (text.size() > 2 && text[2] == ':') {
    const auto time = TakeTime(rest);
    if (!time || !rest.empty()) return std::nullopt;
    return SheetMoment{*time, SheetMoment::Kind::Time};
  }
  const auto date = TakeDate(rest);
  if (!date) return std::nullopt;
  if (rest.empty()) return SheetMoment{*date, SheetMoment::Kind::Date};
  if (!Take(rest, ' ') && !Take(rest, 'T')) return std::nullopt;
  const auto time = TakeTime(rest);
  if (!time || !rest.empty()) return std::nullopt;
  return SheetMoment{*date + *time, SheetMoment::Kind::DateAndTime};
}

std::string SheetValues::TextOf(BinaryView binary) const {
  TextSink sink;
  if (binary_ == BinaryForm::Hexadecimal) {
    sink.Text() += "0x";
    AppendHex(sink, binary);
  } else {
    AppendBase64(sink, binary);
  }
  return sink.Taken();
}

SheetCell SheetValues::Cell(const ValueView& value, std::string& room) const {
  if (IsNull(value)) return {};
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* text = std::get_if<std::string_view>(&value)) return *text;
  if (const auto* whole = std::get_if<std::int64_t>(&value); whole != nullptr && IsExact(*whole))
    return static_cast<double>(*whole);
  if (const auto* number = std::get_if<double>(&value); number != nullptr && std::isfinite(*number))
    return *number;
  if (const auto* decimal = std::get_if<DecimalView>(&value); decimal && IsExact(decimal->digits))
    return NumberOf(decimal->digits);
  if (const auto* moment = std::get_if<MomentView>(&value))
    if (const auto fitting = SheetMomentOf(moment->text)) return *fitting;
  room.clear();
  if (const auto* binary = std::get_if<BinaryView>(&value)) {
    room = TextOf({binary->bytes.first(std::min(binary->bytes.size(), moreThanFits))});
  } else if (const auto* single = std::get_if<float>(&value); single && std::isfinite(*single)) {
    AppendNumber(*single, room);
    return NumberOf(room);
  } else {
    AppendText(value, room);
    if (const auto* natural = std::get_if<std::uint64_t>(&value);
        natural && *natural <= static_cast<std::uint64_t>(mostExactWhole))
      return static_cast<double>(*natural);
  }
  return std::string_view(room);
}

SheetText FittingText(std::string_view text, std::string& room) {
  SheetText fitting{text.substr(0, CharacterStart(text, moreThanFits))};
  text = fitting.text;
  if (text.find('\0') != std::string_view::npos || !IsValidUtf8(text)) {
    std::string changed;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t length = CharacterLength(text.substr(at));
      if (length == 0 || text[at] == '\0') changed += replacement;
      else changed += text.substr(at, length);
      at += length == 0 ? 1 : length;
    }
    room = std::move(changed);
    fitting = {room, false, true};
  }
  if (fitting.text.size() <= sheetLimit::characters) return fitting;
  const std::size_t length = FittingLength(fitting.text);
  fitting.cut = length < fitting.text.size();
  fitting.text = fitting.text.substr(0, length);
  return fitting;
}

}  // namespace tessel
