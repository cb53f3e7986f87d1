#include "logic/plan/chart/Thinning.h"

#include <algorithm>
#include <array>

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

/// The place of a value in a raster of so many places.
int PlaceOf(double value, const Range& range, int places) {
  const double part = (value - range.lower) / (range.upper - range.lower);
  return std::clamp(static_cast<int>(part * places), 0, places - 1);
}

/// The column that begins with the point at `i`, which goes behind it.
Column TakeColumn(const Points& all, std::size_t& i, std::size_t end, const Range& view,
                  int columns) {
  Column column{i, i, i, i};
  const int place = PlaceOf(all.x[i], view, columns);
  const double next = view.lower + (view.upper - view.lower) * (place + 1) / columns;
  for (++i; i < end && all.x[i] < next; ++i) {
    if (all.y[i] < all.y[column.lowest]) column.lowest = i;
    if (all.y[i] > all.y[column.highest]) column.highest = i;
  }
  column.last = i - 1;
  return column;
}

}  // namespace

Points ThinLine(const Points& points, const Range& view, int columns) {
  const auto lower = std::ranges::lower_bound(points.x, view.lower);
  const auto upper = std::upper_bound(lower, points.x.end(), view.upper);
  std::size_t i = static_cast<std::size_t>(lower - points.x.begin());
  const auto end = static_cast<std::size_t>(upper - points.x.begin());
  Points thinned;
  if (i > 0) Append(thinned, points, i - 1);
  while (i < end) Append(thinned, points, TakeColumn(points, i, end, view, columns));
  if (end < points.Count()) Append(thinned, points, end);
  return thinned;
}

Points ThinCloud(const Points& points, const Range& xView, const Range& yView, int columns,
                 int rows) {
  std::vector<bool> taken(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
  Points thinned;
  for (std::size_t i = 0; i < points.Count(); ++i) {
    const double x = points.x[i];
    const double y = points.y[i];
    if (x < xView.lower || x > xView.upper || y < yView.lower || y > yView.upper) continue;
    const auto place =
        static_cast<std::size_t>(PlaceOf(y, yView, rows)) * static_cast<std::size_t>(columns) +
        static_cast<std::size_t>(PlaceOf(x, xView, columns));
    if (taken[place]) continue;
    taken[place] = true;
    Append(thinned, points, i);
  }
  return thinned;
}

Range RangeOf(const std::vector<double>& values) {
  if (values.empty()) return {};
  const auto [low, high] = std::ranges::minmax_element(values);
  if (*low < *high) return {*low, *high};
  return {*low - 0.5, *high + 0.5};
}

}  // namespace tessel
