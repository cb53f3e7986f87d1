#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/desktop/controls/ChartBox.h"
#include "logic/plan/chart/Thinning.h"

namespace tessel {

enum class ChartKind { Line, Bars, Points, Histogram };

/// A column that is not one of the rows': their number, or how many there are.
inline constexpr std::size_t noColumn = static_cast<std::size_t>(-1);

/// What a chart is made of.
struct ChartChoice {
  ChartKind kind = ChartKind::Line;
  std::size_t x = noColumn;  ///< A field; noColumn: the number of the row.
  std::size_t y = noColumn;  ///< A field; noColumn: the count of rows, of bars.
};

/// The fields that can stand on the x axis of a kind of chart, and on its y axis. A histogram has
/// no choice of y.
[[nodiscard]] std::vector<std::size_t> XColumns(ChartKind kind,
                                                const std::vector<FieldInfo>& fields);
[[nodiscard]] std::vector<std::size_t> YColumns(ChartKind kind,
                                                const std::vector<FieldInfo>& fields);

/// A value as a number of a chart: a moment as the seconds since the beginning of 1970. Nothing for
/// null, for what is no number, and for one that is not finite.
[[nodiscard]] std::optional<double> ChartNumber(const ValueView& value);

/// Takes the rows of a recordset for a chart, one after the other, and makes pictures of them.
class ChartRows {
 public:
  /// `fields` are those of the rows.
  ChartRows(const ChartChoice& choice, const std::vector<FieldInfo>& fields);

  void Take(const Recordset& rows, std::int64_t row);
  /// All rows have been taken: brings them into the order of the drawing, which takes a while for
  /// many. Any thread.
  void End();

  /// Rows without a number where one is needed: they are not drawn.
  [[nodiscard]] std::int64_t LeftOut() const { return leftOut_; }
  /// Names of bars that were put together as one, since there are too many to be read.
  [[nodiscard]] std::size_t PutTogether() const { return putTogether_; }
  [[nodiscard]] bool Empty() const { return points_.x.empty(); }

  /// The ends of the x axis.
  [[nodiscard]] Range Whole() const { return whole_; }
  /// The picture of a part of the x axis on so many pixels.
  [[nodiscard]] ChartPicture Picture(const Range& view, int width, int height) const;

 private:
  void TakeBar(const Recordset& rows, std::int64_t row);
  void TakePoint(const Recordset& rows, std::int64_t row);
  void EndBars();
  void EndHistogram();
  void SortByX();
  [[nodiscard]] std::string TitleOf(std::size_t column, const char* otherwise) const;

  ChartChoice choice_;
  std::vector<FieldInfo> fields_;
  Points points_;
  std::vector<std::string> names_;             ///< Of bars, in the order of their first rows.
  std::map<std::string, std::size_t> places_;  ///< Of the bars, by their names.
  std::int64_t leftOut_ = 0;
  std::size_t putTogether_ = 0;
  double barWidth_ = 1;
  Range whole_;
  Range high_;  ///< The ends of the y axis.
};

}  // namespace tessel
