#include "data/combined/matching/MomentParts.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::int64_t secondsOfMinute = 60;
constexpr std::int64_t secondsOfHour = 3600;
constexpr std::int64_t secondsOfDay = 86400;

bool Take(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

/// Takes the digits at the front; false unless there are `fewest` to `most` of them.
bool TakeDigits(std::string_view& text, std::size_t fewest, std::size_t most, std::int64_t& value) {
  std::size_t count = 0;
  value = 0;
  for (; count < text.size() && count < most && text[count] >= '0' && text[count] <= '9'; ++count)
    value = value * 10 + (text[count] - '0');
  text.remove_prefix(count);
  return count >= fewest;
}

bool TakePair(std::string_view& text, std::int64_t& value) { return TakeDigits(text, 2, 2, value); }

struct Date {
  std::int64_t year = 0;
  std::int64_t month = 0;
  std::int64_t day = 0;
};

bool TakeDate(std::string_view& text, Date& date) {
  constexpr std::size_t yearDigits = 4;
  constexpr std::size_t mostYearDigits = 9;
  return TakeDigits(text, yearDigits, mostYearDigits, date.year) && Take(text, '-') &&
         TakePair(text, date.month) && Take(text, '-') && TakePair(text, date.day);
}

/// Days since 1970-01-01 in the calendar that is used today, also for the time before it.
std::int64_t DayNumber(const Date& date) {
  constexpr std::int64_t yearsOfEra = 400;
  constexpr std::int64_t daysOfEra = 146097;
  constexpr std::int64_t daysBefore1970 = 719468;
  const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);  // It begins in March.
  const std::int64_t era = (year >= 0 ? year : year - yearsOfEra + 1) / yearsOfEra;
  const std::int64_t yearInEra = year - era * yearsOfEra;
  const std::int64_t dayInYear = (153 * ((date.month + 9) % 12) + 2) / 5 + date.day - 1;
  const std::int64_t leapDays = yearInEra / 4 - yearInEra / 100;
  return era * daysOfEra + yearInEra * 365 + leapDays + dayInYear - daysBefore1970;
}

/// Hours, minutes and perhaps seconds; more hours than a day has are a span of time.
bool TakeTime(std::string_view& text, MomentParts& moment) {
  constexpr std::size_t mostHourDigits = 9;
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  if (!TakeDigits(text, 2, mostHourDigits, hours) || !Take(text, ':') || !TakePair(text, minutes))
    return false;
  if (Take(text, ':') && !TakePair(text, seconds)) return false;
  moment.seconds += hours * secondsOfHour + minutes * secondsOfMinute + seconds;
  if (!Take(text, '.')) return true;
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  moment.fraction = text.substr(0, digits);
  moment.fraction = moment.fraction.substr(0, moment.fraction.find_last_not_of('0') + 1);
  text.remove_prefix(digits);
  return true;
}

/// "Z", "+02", "-03:30", "+0330" or "+01:23:45": the seconds that the place is ahead of UTC.
std::optional<std::int64_t> TakeZone(std::string_view& text) {
  if (Take(text, 'Z')) return 0;
  std::string_view rest = text;
  Take(rest, ' ');
  const bool behind = rest.starts_with('-');
  if (!behind && !rest.starts_with('+')) return std::nullopt;
  rest.remove_prefix(1);
  std::int64_t parts[3] = {};
  if (!TakePair(rest, parts[0])) return std::nullopt;
  for (std::size_t i = 1; i < 3 && !rest.empty(); ++i) {
    Take(rest, ':');
    if (!TakePair(rest, parts[i])) break;
  }
  text = rest;
  const std::int64_t ahead = parts[0] * secondsOfHour + parts[1] * secondsOfMinute + parts[2];
  return behind ? -ahead : ahead;
}

void ApplyZone(std::string_view& text, MomentParts::Kind kind, MomentParts& moment) {
  const std::optional<std::int64_t> ahead = TakeZone(text);
  if (!ahead) return;
  moment.kind = kind;
  moment.seconds -= *ahead;
}

std::optional<MomentParts> ReadTime(std::string_view text) {
  MomentParts moment{.kind = MomentParts::Kind::Time, .seconds = 0, .fraction = {}};
  const bool negative = Take(text, '-');
  if (!TakeTime(text, moment)) return std::nullopt;
  if (negative) moment.seconds = -moment.seconds - (moment.fraction.empty() ? 0 : 1);
  ApplyZone(text, MomentParts::Kind::TimeWithZone, moment);
  return text.empty() ? std::optional(moment) : std::nullopt;
}

std::optional<MomentParts> ReadDay(std::string_view text, Date date) {
  MomentParts moment;
  if (Take(text, ' ') || Take(text, 'T')) {
    if (text != "BC") {
      if (!TakeTime(text, moment)) return std::nullopt;
      ApplyZone(text, MomentParts::Kind::Instant, moment);
      Take(text, ' ');
    }
  }
  if (text == "BC") date.year = 1 - date.year;
  else if (!text.empty()) return std::nullopt;
  moment.seconds += DayNumber(date) * secondsOfDay;
  return moment;
}

}  // namespace

std::optional<MomentParts> ReadMoment(std::string_view text) {
  std::string_view rest = text;
  Date date;
  return TakeDate(rest, date) ? ReadDay(rest, date) : ReadTime(text);
}

}  // namespace tessel
