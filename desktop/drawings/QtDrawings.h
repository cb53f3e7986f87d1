#pragma once

#include "contract/desktop/controls/ChartBox.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/drawings/ChartWidget.h"
#include "desktop/drawings/DiagramWidget.h"

namespace tessel {

class QtChartBox final : public ControlOf<ChartBox, ChartWidget> {
 public:
  QtChartBox(ChartWidget& widget, const ControlSite& site);

  void SetPicture(ChartPicture picture) override { TheWidget().SetPicture(std::move(picture)); }
  [[nodiscard]] int PlotWidth() const override { return TheWidget().PlotSize().width(); }
  [[nodiscard]] int PlotHeight() const override { return TheWidget().PlotSize().height(); }
  [[nodiscard]] std::string FileContent(DrawingFormat format) const override;
  void CopyPicture() const override;
};

class QtDiagramBox final : public ControlOf<DiagramBox, DiagramWidget> {
 public:
  QtDiagramBox(DiagramWidget& widget, const ControlSite& site);

  bool SetSvg(std::string_view svg) override;
  void SetZoom(int percent) override { TheWidget().SetZoom(percent); }
  [[nodiscard]] int Zoom() const override { return TheWidget().Zoom(); }
  [[nodiscard]] std::string FileContent(DrawingFormat format) const override;
  void CopyPicture() const override;
};

}  // namespace tessel
