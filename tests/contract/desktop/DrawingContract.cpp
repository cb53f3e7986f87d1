// The two boxes that draw: a chart, and a diagram.

#include "tests/contract/desktop/DrawingContract.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "contract/desktop/controls/ChartBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

constexpr DrawingFormat formats[] = {DrawingFormat::Png, DrawingFormat::Svg, DrawingFormat::Pdf};
constexpr const char* svg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"30\" viewBox=\"0 0 40 30\">"
    "<rect x=\"1\" y=\"1\" width=\"20\" height=\"10\"/></svg>";

ChartPicture Steps() {
  ChartPicture picture;
  picture.xAxis = {"Row", AxisMeaning::Numbers, {}, 0, 10};
  picture.yAxis = {"Value", AxisMeaning::Numbers, {}, -1, 5};
  picture.x = {1, 2, 3};
  picture.y = {0, 4, 2};
  return picture;
}

/// None that can be had of a drawing.
void ExpectNoFile(const DrawingBox& box) {
  for (const DrawingFormat format : formats)
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(box.FileContent(format)); }),
              errorNumber::application);
}

void AChartWithoutAPictureGivesNoFile(ContractHost& host) {
  const auto window = ShowForm(host, "dlgChart");
  const auto& chart = window->Find<ChartBox>("chtChart");
  ExpectNoFile(chart);
  EXPECT_GE(chart.PlotWidth(), 1);
  EXPECT_GE(chart.PlotHeight(), 1);
}

void AChartGivesAFileOfEachKind(ContractHost& host) {
  const auto window = ShowForm(host, "dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  Record record;
  chart.ViewChanged = [&](double, double) { record.Add("view"); };
  for (const ChartMarks marks : {ChartMarks::Line, ChartMarks::Points, ChartMarks::Bars}) {
    ChartPicture picture = Steps();
    picture.marks = marks;
    chart.SetPicture(std::move(picture));
    host.Settle();
    Seen contents;
    for (const DrawingFormat format : formats) contents.push_back(chart.FileContent(format));
    for (const std::string& content : contents) {
      EXPECT_NE(content, "");
      EXPECT_EQ(std::ranges::count(contents, content), 1) << "each kind is another one";
    }
  }
  EXPECT_EQ(record.Take(), Seen{}) << "nobody looked closer";
}

void WhatIsNoDiagramShowsNothing(ContractHost& host) {
  const auto window = ShowForm(host, "dlgDiagram");
  auto& diagram = window->Find<DiagramBox>("dgmDiagram");
  ExpectNoFile(diagram);
  EXPECT_TRUE(diagram.SetSvg(svg));
  for (const DrawingFormat format : formats) EXPECT_NE(diagram.FileContent(format), "");
  EXPECT_FALSE(diagram.SetSvg("digraph { a -> b }"));
  ExpectNoFile(diagram);
}

void ADiagramsZoomStaysInItsBounds(ContractHost& host) {
  const auto window = ShowForm(host, "dlgDiagram");
  auto& diagram = window->Find<DiagramBox>("dgmDiagram");
  Record record;
  diagram.Zoomed = record.Noting("zoomed");
  ASSERT_TRUE(diagram.SetSvg(svg));
  host.Settle();
  const int fitted = diagram.Zoom();
  EXPECT_GE(fitted, 10);
  EXPECT_LE(fitted, 400);
  for (const auto& [asked, got] : {std::pair(200, 200), {5, 10}, {1000, 400}, {0, fitted}}) {
    diagram.SetZoom(asked);
    host.Settle();
    EXPECT_EQ(diagram.Zoom(), got) << asked;
  }
  EXPECT_EQ(record.Take(), Seen{}) << "the user did none of it";
}

}  // namespace

std::vector<ContractCase> DrawingContract() {
  return {{"AChartWithoutAPictureGivesNoFile", &AChartWithoutAPictureGivesNoFile},
          {"AChartGivesAFileOfEachKind", &AChartGivesAFileOfEachKind},
          {"WhatIsNoDiagramShowsNothing", &WhatIsNoDiagramShowsNothing},
          {"ADiagramsZoomStaysInItsBounds", &ADiagramsZoomStaysInItsBounds}};
}

}  // namespace tessel::test
