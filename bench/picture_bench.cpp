#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>

#include "bench/BenchDesktop.h"
#include "contract/desktop/controls/ChartBox.h"
#include "desktop/drawings/ChartWidget.h"
#include "logic/plan/chart/Thinning.h"
#include "logic/plan/diagram/DiagramText.h"
#include "system/PosixPrograms.h"

namespace tessel::bench {

namespace {

constexpr std::size_t count = 1'000'000;

/// A window with a chart on the screen, if there is one.
struct Charts {
  QtDesktop& desktop = TheDesktop();
  std::unique_ptr<ChartWidget> chart = std::make_unique<ChartWidget>();

  Charts() {
    chart->resize(1200, 700);
    chart->show();
    desktop.ProcessPending();
  }
};

Charts& TheCharts() {
  static auto* charts = new Charts;
  return *charts;
}

const Points& Million() {
  static const Points points = [] {
    Points made;
    for (std::size_t i = 0; i < count; ++i) {
      made.x.push_back(static_cast<double>(i));
      made.y.push_back(std::sin(static_cast<double>(i) / 40'000) * 100 +
                       static_cast<double>(i * 7919 % 101));
    }
    return made;
  }();
  return points;
}

/// As many points all over the plane, by their x.
const Points& Scattered() {
  static const Points points = [] {
    Points made;
    std::mt19937 random(1);
    for (std::size_t i = 0; i < count; ++i) {
      made.x.push_back(static_cast<double>(random() % count));
      made.y.push_back(static_cast<double>(random() % 30'000) / 100 - 100);
    }
    std::ranges::sort(made.x);
    return made;
  }();
  return points;
}

/// From the million points to what stands on the screen: a line, a band of points, points all over.
void BM_ChartOfAMillionPoints(benchmark::State& state) {
  ChartWidget& chart = *TheCharts().chart;
  const Points& all = state.range(0) == 2 ? Scattered() : Million();
  const Range view = RangeOf(all.x);
  for (auto _ : state) {
    const QSize size = chart.PlotSize();
    Points shown = state.range(0) == 0
                       ? ThinLine(all, view, size.width())
                       : ThinCloud(all, view, {-100, 201}, size.width(), size.height());
    ChartPicture picture;
    picture.marks = state.range(0) == 0 ? ChartMarks::Line : ChartMarks::Points;
    picture.xAxis = {"x", AxisMeaning::Numbers, {}, view.lower, view.upper};
    picture.yAxis = {"y", AxisMeaning::Numbers, {}, -110, 210};
    picture.x = std::move(shown.x);
    picture.y = std::move(shown.y);
    chart.SetPicture(std::move(picture));
    chart.replot(QCustomPlot::rpImmediateRefresh);
  }
}
BENCHMARK(BM_ChartOfAMillionPoints)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

/// 200 tables of 12 fields with 350 keys, laid out by dot.
void BM_DiagramOf200Tables(benchmark::State& state) {
  Structure structure;
  for (int i = 0; i < 200; ++i) {
    TableFacts& table = structure.Table("table_" + std::to_string(i));
    for (int f = 0; f < 12; ++f)
      table.fields.push_back({"field_" + std::to_string(f), "integer", f == 0, f == 0 ? 1 : 0});
  }
  for (int i = 0; i < 350; ++i)
    structure.AddForeignKey({"k",
                             "table_" + std::to_string(i * 7 % 200),
                             {"field_1"},
                             "table_" + std::to_string(i * 31 % 200),
                             {"field_0"}});
  PosixPrograms programs;
  const std::string path = programs.Find("dot");
  if (path.empty()) return state.SkipWithError("dot is not installed");
  for (auto _ : state) {
    const auto run = programs.Start(path, {"-Tsvg"}, MakeDiagramText(structure).text);
    while (!run->HasEnded(5)) {
    }
    if (run->ExitStatus() != 0) return state.SkipWithError(run->Complaints().c_str());
  }
}
BENCHMARK(BM_DiagramOf200Tables)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
