#include "logic/plan/chart/Thinning.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tessel {

namespace {

/// The points of one column of the screen.
struct Column {
  std::size_t first = 0;
  std::size_t last = 0;
  std::size_t lowest = 0;
  std::size_t highest = 0;
};

void Append(Points& points, const Points& all, std::size_t i) {
  points.x.push_back(all.x[i]);
  points.y.push_back(all.y[i]);
}

/// Each point once, in their order.
void Append(Points& points, const Points& all, const Column& column) {
  std::array<std::size_t, 4> kept = {column.first, column.lowest, column.highest, column.last};
  std::ranges::sort(kept);
  const auto end = std::unique(kept.begin(), kept.end());
  for (auto i = kept.begin(); i != end; ++i) Append(points, all, *i);
}

/// The places between the ends of a range.
class Raster {
 public:
  Raster(const Range& range, int places)
      : range_(range), perUnit_(places / (range.upper - range.lower)), last_(places - 1) {}

  [[nodiscard]] bool Has(double value) const {
    return value >= range_.lower && value <= range_.upper;
  }
  [[nodiscard]] std::size_t PlaceOf(double value) const {
    return static_cast<std::size_t>(
        std::clamp(static_cast<int>((value - range_.lower) * perUnit_), 0, last_));
  }
  [[nodiscard]] double EndOf(std::size_t place) const {
    return range_.lower + static_cast<double>(place + 1) / perUnit_;
  }

 private:
  Range range_;
  double perUnit_;
  int last_;
};

/// The column that begins with the point at `i`, which goes behind it.
Column TakeColumn(const Points& all, std::size_t& i, std::size_t end, const Raster& across) {
  Column column{i, i, i, i};
  const double next = across.EndOf(across.PlaceOf(all.x[i]));
  for (++i; i < end && all.x[i] < next; ++i) {
    if (all.y[i] < all.y[column.lowest]) column.lowest = i;
    if (all.y[i] > all.y[column.highest]) column.highest = i;
  }
  column.last = i - 1;
  return column;
}

/// The numbers of the first point within the view and of the first one behind it.
std::pair<std::size_t, std::size_t> PointsWithin(const Points& points, const Range& view) {
  const auto lower = std::ranges::lower_bound(points.x, view.lower);
  const auto upper = std::upper_bound(lower, points.x.end(), view.upper);
  return {static_cast<std::size_t>(lower - points.x.begin()),
          static_cast<std::size_t>(upper - points.x.begin())};
}

}  // namespace

Points ThinLine(const Points& points, const Range& view, int columns) {
  const Raster across(view, columns);
  auto [i, end] = PointsWithin(points, view);
  Points thinned;
  if (i > 0) Append(thinned, points, i - 1);
  while (i < end) Append(thinned, points, TakeColumn(points, i, end, across));
  if (end < points.Count()) Append(thinned, points, end);
  return thinned;
}

Points ThinCloud(const Points& points, const Range& xView, const Range& yView, int columns,
                 int rows) {
  const Raster across(xView, columns);
  const Raster down(yView, rows);
  const std::size_t places = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  std::vector<std::uint8_t> taken(places);
  // A point whose place is taken is written over by the next one: nothing has to be guessed.
  auto [i, end] = PointsWithin(points, xView);
  Points kept;
  kept.Resize(std::min(end - i, places) + 1);
  std::size_t count = 0;
  for (; i < end; ++i) {
    if (!down.Has(points.y[i])) continue;
    const std::size_t place =
        across.PlaceOf(points.x[i]) * static_cast<std::size_t>(rows) + down.PlaceOf(points.y[i]);
    kept.x[count] = points.x[i];
    kept.y[count] = points.y[i];
    count += 1U - taken[place];
    taken[place] = 1;
  }
  kept.Resize(count);
  return kept;
}

Range RangeOf(const std::vector<double>& values) {
  if (values.empty()) return {};
  const auto [low, high] = std::ranges::minmax_element(values);
  if (*low < *high) return {*low, *high};
  return {*low - 0.5, *high + 0.5};
}

}  // namespace tessel
