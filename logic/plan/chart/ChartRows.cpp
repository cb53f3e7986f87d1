// How rows become a chart: their values as numbers, put in order for a line, summed for bars,
// counted for a histogram, and thinned to what a screen can show.

#include "logic/plan/chart/ChartRows.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <numeric>

namespace tessel {

namespace {

constexpr std::size_t mostBars = 200;
constexpr double mostBins = 60;
constexpr double air = 0.04;  ///< Part of an axis that is left free at both ends.
constexpr const char* others = "(others)";

bool IsMoment(DataType type) {
  return type == DataType::Date || type == DataType::DBDate || type == DataType::DBTimeStamp;
}

bool IsScale(DataType type) { return IsNumericType(type) || IsMoment(type); }

template <class Wanted>
std::vector<std::size_t> Columns(const std::vector<FieldInfo>& fields, Wanted wanted) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (wanted(fields[i].type)) columns.push_back(i);
  return columns;
}

std::optional<double> Finite(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> NumberIn(std::string_view digits) {
  double number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return Finite(number);
}

/// The digits at a place of a moment's text.
std::optional<int> DigitsAt(std::string_view text, std::size_t at, std::size_t count) {
  int number = 0;
  if (text.size() < at + count) return std::nullopt;
  const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + count, number);
  if (error != std::errc() || end != text.data() + at + count) return std::nullopt;
  return number;
}

/// "YYYY-MM-DD", and behind it "HH:MM:SS" with a fraction that is left away.
std::optional<double> SecondsOf(std::string_view text) {
  const auto year = DigitsAt(text, 0, 4);
  const auto month = DigitsAt(text, 5, 2);
  const auto day = DigitsAt(text, 8, 2);
  if (!year || !month || !day || text[4] != '-') return std::nullopt;
  const std::chrono::sys_days date = std::chrono::year(*year) / *month / *day;
  const int seconds = DigitsAt(text, 11, 2).value_or(0) * 3600 +
                      DigitsAt(text, 14, 2).value_or(0) * 60 + DigitsAt(text, 17, 2).value_or(0);
  return static_cast<double>(std::chrono::sys_seconds(date).time_since_epoch().count() + seconds);
}

Range WithAir(const Range& range) {
  const double free = (range.upper - range.lower) * air;
  return {range.lower - free, range.upper + free};
}

/// Bars begin at zero.
Range WithZero(const Range& range) {
  return {std::min(0.0, range.lower), std::max(0.0, range.upper)};
}

}  // namespace

std::vector<std::size_t> XColumns(ChartKind kind, const std::vector<FieldInfo>& fields) {
  if (kind == ChartKind::Bars)
    return Columns(fields, [](DataType type) { return !IsBinaryType(type); });
  return Columns(fields, IsScale);
}

std::vector<std::size_t> YColumns(ChartKind kind, const std::vector<FieldInfo>& fields) {
  if (kind == ChartKind::Histogram) return {};
  return Columns(fields, IsNumericType);
}

std::optional<double> ChartNumber(const ValueView& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
  if (const auto* number = std::get_if<std::uint64_t>(&value)) return static_cast<double>(*number);
  if (const auto* number = std::get_if<double>(&value)) return Finite(*number);
  if (const auto* number = std::get_if<float>(&value)) return Finite(*number);
  if (const auto* number = std::get_if<DecimalView>(&value)) return NumberIn(number->digits);
  if (const auto* moment = std::get_if<MomentView>(&value)) return SecondsOf(moment->text);
  return std::nullopt;
}

ChartRows::ChartRows(const ChartChoice& choice, const std::vector<FieldInfo>& fields)
    : choice_(choice), fields_(fields) {}

void ChartRows::Take(const Recordset& rows, std::int64_t row) {
  if (choice_.kind == ChartKind::Bars) TakeBar(rows, row);
  else TakePoint(rows, row);
}

void ChartRows::TakePoint(const Recordset& rows, std::int64_t row) {
  const std::optional<double> x = choice_.x == noColumn
                                      ? std::optional(static_cast<double>(row + 1))
                                      : ChartNumber(rows.ValueAt(row, choice_.x));
  const bool counts = choice_.kind == ChartKind::Histogram;
  const std::optional<double> y = counts || choice_.y == noColumn
                                      ? std::optional(0.0)
                                      : ChartNumber(rows.ValueAt(row, choice_.y));
  if (!x || !y) {
    ++leftOut_;
    return;
  }
  points_.x.push_back(*x);
  points_.y.push_back(*y);
}

/// The values of one name are added up.
void ChartRows::TakeBar(const Recordset& rows, std::int64_t row) {
  const std::optional<double> y =
      choice_.y == noColumn ? std::optional(1.0) : ChartNumber(rows.ValueAt(row, choice_.y));
  if (!y) {
    ++leftOut_;
    return;
  }
  const ValueView value = rows.ValueAt(row, choice_.x);
  const std::string name = IsNull(value) ? "(null)" : ToText(value);
  const auto [place, added] = places_.try_emplace(name, points_.x.size());
  if (added) {
    points_.x.push_back(static_cast<double>(points_.x.size()));
    points_.y.push_back(0);
    names_.push_back(name);
  }
  points_.y[place->second] += *y;
}

void ChartRows::End() {
  switch (choice_.kind) {
    case ChartKind::Line:
    case ChartKind::Points: SortByX(); break;
    case ChartKind::Bars: EndBars(); break;
    case ChartKind::Histogram: EndHistogram(); break;
  }
  const bool bars = choice_.kind == ChartKind::Bars || choice_.kind == ChartKind::Histogram;
  high_ = RangeOf(points_.y);
  if (bars) high_ = WithZero(high_);
  high_ = WithAir(high_);
  whole_ = RangeOf(points_.x);
  if (!bars) whole_ = WithAir(whole_);
  else whole_ = {whole_.lower - barWidth_, whole_.upper + barWidth_};
}

/// A line goes from left to right; points are thinned in that order.
void ChartRows::SortByX() {
  if (std::ranges::is_sorted(points_.x)) return;
  std::vector<std::size_t> order(points_.Count());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [this](std::size_t i) { return points_.x[i]; });
  Points sorted;
  for (const std::size_t i : order) {
    sorted.x.push_back(points_.x[i]);
    sorted.y.push_back(points_.y[i]);
  }
  points_ = std::move(sorted);
}

/// Those behind the most that can be told apart become one.
void ChartRows::EndBars() {
  places_.clear();
  if (names_.size() <= mostBars) return;
  putTogether_ = names_.size() - (mostBars - 1);
  const auto rest = points_.y.begin() + static_cast<std::ptrdiff_t>(mostBars - 1);
  const double sum = std::accumulate(rest, points_.y.end(), 0.0);
  names_.resize(mostBars);
  names_.back() = others;
  points_.x.resize(mostBars);
  points_.y.resize(mostBars);
  points_.y.back() = sum;
}

void ChartRows::EndHistogram() {
  if (points_.x.empty()) return;
  const Range range = RangeOf(points_.x);
  const double root = std::ceil(std::sqrt(static_cast<double>(points_.Count())));
  const auto bins = static_cast<std::size_t>(std::clamp(root, 1.0, mostBins));
  barWidth_ = (range.upper - range.lower) / static_cast<double>(bins);
  Points counted;
  for (std::size_t i = 0; i < bins; ++i)
    counted.x.push_back(range.lower + (static_cast<double>(i) + 0.5) * barWidth_);
  counted.y.assign(bins, 0);
  for (const double x : points_.x)
    ++counted.y[std::min(bins - 1, static_cast<std::size_t>((x - range.lower) / barWidth_))];
  points_ = std::move(counted);
}

std::string ChartRows::TitleOf(std::size_t column, const char* otherwise) const {
  return column == noColumn ? otherwise : fields_[column].name;
}

ChartPicture ChartRows::Picture(const Range& view, int width, int height) const {
  const bool bars = choice_.kind == ChartKind::Bars;
  const bool counts = choice_.kind == ChartKind::Histogram;
  ChartPicture picture;
  picture.xAxis = {TitleOf(choice_.x, "Row"), AxisMeaning::Numbers, {}, view.lower, view.upper};
  picture.yAxis = {counts ? "Rows" : TitleOf(choice_.y, "Rows"),
                   AxisMeaning::Numbers,
                   {},
                   high_.lower,
                   high_.upper};
  if (bars) {
    picture.xAxis.meaning = AxisMeaning::Names;
    picture.xAxis.names = names_;
  } else if (choice_.x != noColumn && IsMoment(fields_[choice_.x].type)) {
    picture.xAxis.meaning = AxisMeaning::Times;
  }
  picture.width = bars ? 0.8 * barWidth_ : barWidth_;
  picture.marks = bars || counts                    ? ChartMarks::Bars
                  : choice_.kind == ChartKind::Line ? ChartMarks::Line
                                                    : ChartMarks::Points;
  Points shown;
  if (choice_.kind == ChartKind::Line) shown = ThinLine(points_, view, width);
  else if (bars || counts) shown = points_;
  else shown = ThinCloud(points_, view, high_, width, height);
  picture.x = std::move(shown.x);
  picture.y = std::move(shown.y);
  return picture;
}

}  // namespace tessel
