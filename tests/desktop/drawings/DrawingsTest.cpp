// Charts and diagrams on real windows: what is drawn, what the user looks at, and the files.

#include <gmock/gmock.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QTest>
#include <QTreeView>
#include <set>

#include "contract/base/Error.h"
#include "contract/desktop/controls/ChartBox.h"
#include "contract/desktop/controls/TreeView.h"
#include "desktop/drawings/ChartWidget.h"
#include "desktop/drawings/DiagramWidget.h"
#include "desktop/look/Tokens.h"
#include "desktop/tree/KeyedTreeModel.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

constexpr const char* svg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400pt\" height=\"200pt\" "
    "viewBox=\"0 0 400 200\"><rect x=\"0\" y=\"0\" width=\"400\" height=\"200\" fill=\"white\"/>"
    "<text x=\"20\" y=\"100\" font-size=\"30\">orders</text></svg>";

ChartPicture Picture(ChartMarks marks, int count) {
  ChartPicture picture;
  picture.marks = marks;
  for (int i = 0; i < count; ++i) {
    picture.x.push_back(i);
    picture.y.push_back(i % 10);
  }
  picture.xAxis = {"x", AxisMeaning::Numbers, {}, 0, static_cast<double>(count)};
  picture.yAxis = {"y", AxisMeaning::Numbers, {}, 0, 10};
  return picture;
}

class DrawingsTest : public DesktopFixture {
 protected:
  template <class Widget>
  static Widget& Find() {
    for (QWidget* widget : QApplication::allWidgets())
      if (auto* found = qobject_cast<Widget*>(widget)) return *found;
    throw std::runtime_error("there is none");
  }
};

}  // namespace

TEST_F(DrawingsTest, AChartIsSavedInEachFormat) {
  const auto window = ShowForm("dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  EXPECT_THROW(static_cast<void>(chart.FileContent(DrawingFormat::Png)), Error);
  for (const ChartMarks marks : {ChartMarks::Line, ChartMarks::Points, ChartMarks::Bars}) {
    chart.SetPicture(Picture(marks, 50));
    host.Settle();
    const QByteArray png = QByteArray::fromStdString(chart.FileContent(DrawingFormat::Png));
    EXPECT_EQ(QImage::fromData(png).width(), 2 * Find<ChartWidget>().width());
    const std::string drawing = chart.FileContent(DrawingFormat::Svg);
    EXPECT_TRUE(QSvgRenderer(QByteArray::fromStdString(drawing)).isValid());
    EXPECT_THAT(chart.FileContent(DrawingFormat::Pdf), testing::StartsWith("%PDF"));
  }
}

TEST_F(DrawingsTest, APictureOfTheChartHasItsMarks) {
  const auto window = ShowForm("dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  chart.SetPicture(Picture(ChartMarks::Bars, 10));
  host.Settle();
  const auto colors = [] {
    const QImage image = Find<ChartWidget>().grab().toImage();
    std::set<QRgb> seen;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) seen.insert(image.pixel(x, y));
    return seen.size();
  };
  const std::size_t bars = colors();
  chart.SetPicture({});
  host.Settle();
  EXPECT_GT(bars, colors()) << "without a picture the bars are gone";
}

TEST_F(DrawingsTest, NamesAreWrittenAsTheyAre) {
  const auto window = ShowForm("dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  ChartPicture picture = Picture(ChartMarks::Bars, 2);
  picture.xAxis.meaning = AxisMeaning::Names;
  picture.xAxis.names = {"1f0e3dad", "12e5"};
  chart.SetPicture(picture);
  host.Settle();
  const std::string drawing = chart.FileContent(DrawingFormat::Svg);
  EXPECT_THAT(drawing, testing::HasSubstr("1f0e3dad"));
  EXPECT_THAT(drawing, testing::HasSubstr("12e5"));
}

TEST_F(DrawingsTest, ManyPointsAreDotsWhereTheyBelong) {
  const auto window = ShowForm("dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  auto& widget = Find<ChartWidget>();
  // All of the lower half of the axes, and nothing of the upper one.
  ChartPicture picture = Picture(ChartMarks::Points, 0);
  picture.xAxis.upper = picture.yAxis.upper = 400;
  for (int x = 0; x < 400; ++x) {
    for (int y = 1; y < 200; ++y) {
      picture.x.push_back(x);
      picture.y.push_back(y);
    }
  }
  chart.SetPicture(picture);
  host.Settle();
  const QRect axes = widget.axisRect()->rect();
  const QImage image = widget.grab().toImage();
  const QRgb dot = CurrentTokens().accent.rgb();
  const auto dots = [&](int top, int bottom) {
    int count = 0;
    for (int y = top; y < bottom; ++y)
      for (int x = axes.left(); x <= axes.right(); ++x) count += image.pixel(x, y) == dot ? 1 : 0;
    return count;
  };
  const int middle = axes.center().y();
  EXPECT_EQ(dots(axes.top(), middle - 2), 0);
  const int places = std::min(axes.width(), 400) * std::min(axes.height() / 2, 199);
  EXPECT_GT(dots(middle + 2, axes.bottom()), places * 3 / 4);
}

TEST_F(DrawingsTest, KeysLookAtAnotherPart) {
  const auto window = ShowForm("dlgChart");
  auto& chart = window->Find<ChartBox>("chtChart");
  chart.SetPicture(Picture(ChartMarks::Line, 100));
  std::vector<std::pair<double, double>> views;
  chart.ViewChanged = [&](double lower, double upper) { views.emplace_back(lower, upper); };
  auto& widget = Find<ChartWidget>();
  QTest::keyClick(&widget, Qt::Key_Plus);
  ASSERT_EQ(views.size(), 1U);
  EXPECT_DOUBLE_EQ(views[0].second - views[0].first, 80);
  QTest::keyClick(&widget, Qt::Key_Right);
  ASSERT_EQ(views.size(), 2U);
  EXPECT_GT(views[1].first, views[0].first);
}

TEST_F(DrawingsTest, ADiagramIsFittedZoomedAndSaved) {
  const auto window = ShowForm("dlgDiagram");
  auto& diagram = window->Find<DiagramBox>("dgmDiagram");
  EXPECT_FALSE(diagram.SetSvg("this is none"));
  EXPECT_THROW(static_cast<void>(diagram.FileContent(DrawingFormat::Png)), Error);
  ASSERT_TRUE(diagram.SetSvg(svg));
  host.Settle();
  EXPECT_EQ(diagram.Zoom(), 100) << "it has room";
  diagram.SetZoom(400);
  host.Settle();
  EXPECT_EQ(diagram.Zoom(), 400);
  EXPECT_GT(Find<DiagramWidget>().horizontalScrollBar()->maximum(), 0);
  diagram.SetZoom(0);
  EXPECT_EQ(diagram.FileContent(DrawingFormat::Svg), svg) << "as it was given";
  const QByteArray png = QByteArray::fromStdString(diagram.FileContent(DrawingFormat::Png));
  EXPECT_FALSE(QImage::fromData(png).isNull());
  EXPECT_THAT(diagram.FileContent(DrawingFormat::Pdf), testing::StartsWith("%PDF"));
}

TEST_F(DrawingsTest, TheWheelWithCtrlZoomsADiagram) {
  const auto window = ShowForm("dlgDiagram");
  auto& diagram = window->Find<DiagramBox>("dgmDiagram");
  diagram.SetSvg(svg);
  host.Settle();
  int zoomed = 0;
  diagram.Zoomed = [&] { ++zoomed; };
  QWidget* viewport = Find<DiagramWidget>().viewport();
  QWheelEvent wheel(QPointF(20, 20), viewport->mapToGlobal(QPointF(20, 20)), {}, {0, -120},
                    Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(viewport, &wheel);
  EXPECT_EQ(diagram.Zoom(), 90);
  EXPECT_EQ(zoomed, 1);
}

TEST_F(DrawingsTest, ANodeTellsItsNoteBelowItsName) {
  const auto window = ShowForm("frmMDI");
  auto& tree = window->Find<TreeView>("trvBrowser");
  tree.Add("", {"t", "orders", 2});
  tree.AddChildren("t", {{"f", "id", 3}, {"i", "by_id", 5, false}});
  tree.NodeNoted = [](const std::string& key, NodeNote& note) {
    if (key == "f") note = {"integer <b>", "int"};
  };
  QAbstractItemModel* model = WidgetAs<QTreeView>(*window, "trvBrowser").model();
  const QModelIndex table = model->index(0, 0);
  const QModelIndex field = model->index(0, 0, table);
  const QString tip = field.data(Qt::ToolTipRole).toString();
  EXPECT_EQ(tip, "id\ninteger <b>");
  EXPECT_FALSE(Qt::mightBeRichText(tip)) << "no markup is made of a name";
  EXPECT_EQ(field.data(detailRole).toString(), "int");
  EXPECT_TRUE(table.data(Qt::ToolTipRole).isNull());
  EXPECT_EQ(table.data(countRole).toInt(), 1) << "indexes are not counted with the fields";
}

}  // namespace tessel::test
