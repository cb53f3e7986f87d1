#pragma once

#include <algorithm>
#include <string>

#include "contract/base/Error.h"
#include "contract/desktop/controls/ChartBox.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

/// A chart that keeps its picture. It is 200 by 100 pixels large. Its file says what it shows.
class HeadlessChartBox final : public Headless<ChartBox> {
 public:
  using Headless::Headless;

  void SetPicture(ChartPicture picture) override {
    picture_ = std::move(picture);
    ++pictures_;
  }
  [[nodiscard]] int PlotWidth() const override { return 200; }
  [[nodiscard]] int PlotHeight() const override { return 100; }
  [[nodiscard]] std::string FileContent(DrawingFormat format) const override {
    if (pictures_ == 0) throw Error(errorNumber::application, "Tessel", "There is no drawing.");
    return "chart " + std::to_string(static_cast<int>(format)) + " of " +
           std::to_string(picture_.x.size());
  }
  void CopyPicture() const override { ++copies_; }

  [[nodiscard]] const ChartPicture& Picture() const { return picture_; }
  [[nodiscard]] int Pictures() const { return pictures_; }
  [[nodiscard]] int Copies() const { return copies_; }
  /// The user looks at another part of the x axis.
  void LookAt(double lower, double upper) { Raise(ViewChanged, lower, upper); }

 private:
  ChartPicture picture_;
  int pictures_ = 0;
  mutable int copies_ = 0;
};

/// A diagram that keeps its text. Fitted it shows at 50 percent.
class HeadlessDiagramBox final : public Headless<DiagramBox> {
 public:
  using Headless::Headless;

  bool SetSvg(std::string_view svg) override {
    svg_ = svg.find("<svg") == std::string_view::npos ? "" : svg;
    return !svg_.empty();
  }
  void SetZoom(int percent) override { zoom_ = percent == 0 ? 0 : std::clamp(percent, 10, 400); }
  [[nodiscard]] int Zoom() const override { return zoom_ == 0 ? 50 : zoom_; }
  [[nodiscard]] std::string FileContent(DrawingFormat /*format*/) const override {
    if (svg_.empty()) throw Error(errorNumber::application, "Tessel", "There is no drawing.");
    return svg_;
  }
  void CopyPicture() const override { ++copies_; }

  [[nodiscard]] int Copies() const { return copies_; }

 private:
  std::string svg_;
  int zoom_ = 0;
  mutable int copies_ = 0;
};

}  // namespace tessel::test
