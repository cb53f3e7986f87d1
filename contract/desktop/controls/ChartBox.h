#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// What a drawing can be saved as. Png is a picture of what shows, in twice its size; Svg and Pdf
/// keep lines as lines.
enum class DrawingFormat { Png, Svg, Pdf };

/// A control that draws something which can be taken elsewhere: into a file, whose bytes it gives
/// and the program writes, or to the clipboard. Making either takes no longer than drawing does, so
/// that nobody has to be asked to wait. It draws in the colours of the theme, and draws again when
/// those change.
class DrawingBox : public Control {
 public:
  using Control::Control;

  /// The whole content of a file with the drawing, on a light ground whatever the theme is. Raises
  /// Error(application) when it cannot be made: there is nothing, or too much of it.
  [[nodiscard]] virtual std::string FileContent(DrawingFormat format) const = 0;
  /// Puts a picture of it on the clipboard in place of all that was there.
  virtual void CopyPicture() const = 0;
};

/// How the points of a chart are shown.
enum class ChartMarks {
  Line,    ///< Joined in their order.
  Points,  ///< Each by itself.
  Bars     ///< From zero up or down to the value; `width` wide.
};

/// What the numbers of an axis mean.
enum class AxisMeaning {
  Numbers,
  Times,  ///< Seconds since the beginning of 1970, shown as date and time as they stand, without
          ///< time zones.
  Names   ///< 0, 1, 2, ... stand for `names`.
};

/// An axis of a chart, from `lower` to `upper`, which is more.
struct ChartAxis {
  std::string title;
  AxisMeaning meaning = AxisMeaning::Numbers;
  std::vector<std::string> names;
  double lower = 0;
  double upper = 1;
};

/// All that a chart shows: x[i] and y[i] are the place of a point; both are of one length and
/// finite.
struct ChartPicture {
  ChartMarks marks = ChartMarks::Line;
  ChartAxis xAxis;
  ChartAxis yAxis;
  std::vector<double> x;
  std::vector<double> y;
  double width = 1;  ///< Of a bar, in the measure of the x axis.
};

/// A chart of one row of points, with its axes and their titles. The wheel of the mouse and
/// dragging with its left button look at another part of the x axis, and so do the keys +, -, Left
/// and Right while it has the focus; the y axis stays. It draws every point that it is given: who
/// has very many gives those that can be seen (PlotWidth tells how many places there are), and is
/// asked again when the user looks closer. Changes by code raise nothing.
class ChartBox : public DrawingBox {
 public:
  using DrawingBox::DrawingBox;

  /// Shows that picture in place of the one before.
  virtual void SetPicture(ChartPicture picture) = 0;
  /// Pixels of the screen between the two ends of each axis; at least 1.
  [[nodiscard]] virtual int PlotWidth() const = 0;
  [[nodiscard]] virtual int PlotHeight() const = 0;

  /// The user looks at another part of the x axis, by the wheel or by dragging, or the control has
  /// another size: `lower` and `upper` of what is to be shown. The picture stays until it is set.
  Event<double, double> ViewChanged;
};

/// A drawing that is given as SVG, shown in the middle, scrolled where it is larger than the
/// control. Only what belongs to the drawing is shown: nothing is loaded from elsewhere.
class DiagramBox : public DrawingBox {
 public:
  using DrawingBox::DrawingBox;

  /// False when it is no SVG that can be shown; nothing shows then.
  virtual bool SetSvg(std::string_view svg) = 0;
  /// In percent of its own size, 10 to 400; 0 fits it into the control, as at first. The middle of
  /// what shows stays in the middle.
  virtual void SetZoom(int percent) = 0;
  /// The zoom in percent that it shows at, also when it is fitted.
  [[nodiscard]] virtual int Zoom() const = 0;
  /// The user zoomed with the wheel of the mouse and Ctrl held; Zoom tells the new one already.
  Event<> Zoomed;
};

}  // namespace tessel
