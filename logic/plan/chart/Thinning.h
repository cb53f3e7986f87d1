#pragma once

#include <cstddef>
#include <vector>

namespace tessel {

/// Points of a drawing: x[i] and y[i] belong together.
struct Points {
  std::vector<double> x;
  std::vector<double> y;
  [[nodiscard]] std::size_t Count() const { return x.size(); }
  void Resize(std::size_t count) {
    x.resize(count);
    y.resize(count);
  }
};

/// From a lower to an upper end, which is more.
struct Range {
  double lower = 0;
  double upper = 1;
  bool operator==(const Range&) const = default;
};

/// The points of a line, whose x do not go down, that can be seen between the ends of `view` in so
/// many columns: of those in one column the first, the last, the lowest and the highest, in their
/// order. So the line looks the same, and no extreme is lost. The nearest points outside stay too.
[[nodiscard]] Points ThinLine(const Points& points, const Range& view, int columns);

/// Of the points, whose x do not go down, within both ranges one for each place of a raster that
/// has any, in their order.
[[nodiscard]] Points ThinCloud(const Points& points, const Range& xView, const Range& yView,
                               int columns, int rows);

/// The ends of the values, a little apart where they are all the same; 0 to 1 without any.
[[nodiscard]] Range RangeOf(const std::vector<double>& values);

}  // namespace tessel
