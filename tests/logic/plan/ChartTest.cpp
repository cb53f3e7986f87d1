// Charts of rows: which columns suit, what is drawn of many points, and the window.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "logic/plan/chart/ChartRows.h"
#include "logic/plan/chart/dlgChart.h"
#include "tests/headless/HeadlessDrawings.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

using testing::ElementsAre;

// --- thinning ------------------------------------------------------------------------------------

TEST(ThinLine, NoExtremeIsLost) {
  Points points;
  for (int i = 0; i < 1'000'000; ++i) {
    points.x.push_back(i);
    points.y.push_back(std::sin(i / 5000.0));
  }
  points.y[123'456] = 99;
  points.y[654'321] = -99;
  const Points thinned = ThinLine(points, {0, 1'000'000}, 500);
  EXPECT_LE(thinned.Count(), 4U * 500 + 2);
  EXPECT_EQ(*std::ranges::max_element(thinned.y), 99);
  EXPECT_EQ(*std::ranges::min_element(thinned.y), -99);
  EXPECT_TRUE(std::ranges::is_sorted(thinned.x));
  EXPECT_EQ(thinned.x.front(), 0);
  EXPECT_EQ(thinned.x.back(), 999'999);
}

TEST(ThinLine, FewPointsStayAsTheyAre) {
  const Points points{{1, 2, 3, 4}, {5, 1, 9, 2}};
  const Points thinned = ThinLine(points, {0, 5}, 500);
  EXPECT_EQ(thinned.x, points.x);
  EXPECT_EQ(thinned.y, points.y);
}

TEST(ThinLine, OfAPartTheNearestPointsOutsideStay) {
  const Points points{{1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}};
  EXPECT_THAT(ThinLine(points, {2.5, 4.5}, 10).x, ElementsAre(2, 3, 4, 5));
  EXPECT_THAT(ThinLine(points, {7, 8}, 10).x, ElementsAre(6));
  EXPECT_TRUE(ThinLine({}, {0, 1}, 10).x.empty());
}

TEST(ThinCloud, EachPlaceOfTheRasterKeepsOne) {
  Points points;
  for (int i = 0; i < 100'000; ++i) {
    points.x.push_back(i / 10'000);
    points.y.push_back(i % 7);
  }
  const Points thinned = ThinCloud(points, {0, 10}, {0, 7}, 10, 7);
  EXPECT_EQ(thinned.Count(), 70U);
  EXPECT_EQ(ThinCloud(points, {100, 200}, {0, 7}, 10, 7).Count(), 0U);
}

TEST(ThinCloud, NoExtremeOfThePartIsLost) {
  Points points;
  for (int i = 0; i < 1000; ++i) {
    points.x.push_back(i);
    points.y.push_back(i % 50);
  }
  points.y[500] = 99;
  points.y[501] = -99;
  const Points thinned = ThinCloud(points, {400, 600}, {-100, 100}, 20, 200);
  EXPECT_EQ(std::ranges::max(thinned.y), 99);
  EXPECT_EQ(std::ranges::min(thinned.y), -99);
  EXPECT_THAT(thinned.x, testing::Each(testing::AllOf(testing::Ge(400), testing::Le(600))));
  EXPECT_TRUE(std::ranges::is_sorted(thinned.x));
}

// --- rows ----------------------------------------------------------------------------------------

TEST(ChartNumber, NumbersAndMomentsHaveAPlaceOnAnAxis) {
  EXPECT_EQ(ChartNumber(std::int64_t{5}), 5);
  EXPECT_EQ(ChartNumber(DecimalView{"-2.50"}), -2.5);
  EXPECT_EQ(ChartNumber(MomentView{"1970-01-02 00:01:02.5"}), 86462);
  EXPECT_EQ(ChartNumber(MomentView{"1969-12-31"}), -86400);
  EXPECT_EQ(ChartNumber(MomentView{"infinity"}), std::nullopt);
  EXPECT_EQ(ChartNumber(DecimalView{"NaN"}), std::nullopt);
  EXPECT_EQ(ChartNumber(std::nan("")), std::nullopt);
  EXPECT_EQ(ChartNumber(ValueView{}), std::nullopt);
}

class ChartTest : public test::LogicFixture {
 protected:
  using Window = test::HeadlessWindow;

  ChartTest() {
    frame->Show();
    for (int i = 0; i < 5; ++i)
      rows.push_back({Value(std::string(i % 2 == 0 ? "even" : "odd")), Value(std::int64_t{5 - i}),
                      Value(i * 1.5)});
  }

  std::shared_ptr<Recordset> Rows() {
    return data.MakeRecordset({MemoryField("name"), MemoryField("n", DataType::BigInt),
                               MemoryField("v", DataType::Double)},
                              rows);
  }
  void Show(const std::function<void(Window&)>& step) {
    desktop.OnModal("dlgChart", [step](Window& w) {
      step(w);
      w.Click("cmdClose");
    });
    dlgChart(global).Go(*frame, "A", Rows());
  }
  static const ChartPicture& Picture(Window& w) {
    return w.Find<test::HeadlessChartBox>("chtChart").Picture();
  }
  static void Choose(Window& w, const char* box, int entry) {
    w.Find<ComboBox>(box).SetListIndex(entry);
  }
  static std::vector<std::string> Entries(Window& w, const char* box) {
    const ComboBox& combo = w.Find<ComboBox>(box);
    std::vector<std::string> entries;
    for (int i = 0; i < combo.ListCount(); ++i) entries.push_back(combo.List(i));
    return entries;
  }

  std::unique_ptr<tessel::Window> frame = desktop.MakeWindow("frmMDI");
  std::vector<std::vector<Value>> rows;
};

TEST_F(ChartTest, ColumnsAreOfferedByWhatTheKindCanShow) {
  Show([](Window& w) {
    EXPECT_THAT(Entries(w, "cboX"), ElementsAre("(row number)", "n", "v"));
    EXPECT_THAT(Entries(w, "cboY"), ElementsAre("n", "v"));
    Choose(w, "cboKind", 1);
    EXPECT_THAT(Entries(w, "cboX"), ElementsAre("name", "n", "v"));
    EXPECT_THAT(Entries(w, "cboY"), ElementsAre("(number of rows)", "n", "v"));
    Choose(w, "cboKind", 3);
    EXPECT_THAT(Entries(w, "cboX"), ElementsAre("n", "v"));
    EXPECT_FALSE(w.Find<ComboBox>("cboY").Enabled());
  });
}

TEST_F(ChartTest, ALineGoesFromLeftToRight) {
  Show([](Window& w) {
    EXPECT_THAT(Picture(w).x, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(Picture(w).y, ElementsAre(5, 4, 3, 2, 1));
    Choose(w, "cboX", 1);
    Choose(w, "cboY", 1);
    EXPECT_EQ(Picture(w).marks, ChartMarks::Line);
    EXPECT_EQ(Picture(w).xAxis.title, "n");
    EXPECT_THAT(Picture(w).x, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(Picture(w).y, ElementsAre(6, 4.5, 3, 1.5, 0));
  });
}

TEST_F(ChartTest, BarsAddUpTheRowsOfAName) {
  Show([](Window& w) {
    Choose(w, "cboKind", 1);
    EXPECT_THAT(Picture(w).xAxis.names, ElementsAre("even", "odd"));
    EXPECT_THAT(Picture(w).y, ElementsAre(3, 2));
    EXPECT_LE(Picture(w).yAxis.lower, 0) << "bars begin at zero";
    Choose(w, "cboY", 1);
    EXPECT_THAT(Picture(w).y, ElementsAre(9, 6));
  });
}

TEST_F(ChartTest, BarsOfVeryManyNamesEndWithTheOthers) {
  rows.clear();
  for (int i = 0; i < 1000; ++i)
    rows.push_back({Value("n" + std::to_string(i)), Value(std::int64_t{1}), Value(1.0)});
  Show([](Window& w) {
    Choose(w, "cboKind", 1);
    EXPECT_EQ(Picture(w).y.size(), 200U);
    EXPECT_EQ(Picture(w).y.back(), 801);
    EXPECT_EQ(w.Find<Label>("lblChart").Caption(),
              "1000 rows; the last 801 names stand as one bar, (others)");
  });
}

TEST_F(ChartTest, AHistogramCountsRows) {
  rows.clear();
  for (int i = 0; i < 100; ++i)
    rows.push_back({Value(std::string("x")), Value(std::int64_t{i}), Value(0.0)});
  Show([](Window& w) {
    Choose(w, "cboKind", 3);
    EXPECT_EQ(Picture(w).marks, ChartMarks::Bars);
    EXPECT_EQ(Picture(w).y.size(), 10U);
    EXPECT_EQ(std::count(Picture(w).y.begin(), Picture(w).y.end(), 10), 10);
    EXPECT_DOUBLE_EQ(Picture(w).width, 9.9);
    Choose(w, "cboX", 1);
    EXPECT_EQ(*std::ranges::max_element(Picture(w).y), 100) << "all values are the same";
  });
}

TEST_F(ChartTest, RowsWithoutANumberAreCountedAndLeftOut) {
  rows.push_back({Value(std::string("odd")), Value(), Value(1.0)});
  Show([](Window& w) {
    EXPECT_EQ(Picture(w).x.size(), 5U);
    EXPECT_EQ(w.Find<Label>("lblChart").Caption(), "6 rows, 1 of them without a number: not drawn");
  });
}

TEST_F(ChartTest, RowsWithoutNumbersAreSaid) {
  desktop.OnModal("dlgChart", [](Window& w) {
    EXPECT_EQ(w.Find<Label>("lblChart").Caption(),
              "These rows have no column of numbers for such a chart.");
    EXPECT_TRUE(Picture(w).x.empty());
    Choose(w, "cboKind", 1);
    EXPECT_THAT(Picture(w).y, ElementsAre(1)) << "names can be counted";
    w.Click("cmdClose");
  });
  dlgChart(global).Go(*frame, "A",
                      data.MakeRecordset({MemoryField("t")}, {{Value(std::string("x"))}}));
}

TEST_F(ChartTest, AnotherPartIsThinnedForItself) {
  rows.clear();
  for (int i = 0; i < 20'000; ++i)
    rows.push_back({Value(std::string("x")), Value(std::int64_t{i % 100}), Value(0.0)});
  Show([this](Window& w) {
    auto& chart = w.Find<test::HeadlessChartBox>("chtChart");
    desktop.AdvanceTime(1000);
    EXPECT_LE(Picture(w).x.size(), 802U);
    chart.LookAt(100, 150);
    EXPECT_EQ(Picture(w).xAxis.lower, 100);
    EXPECT_EQ(Picture(w).x.size(), 53U) << "every point, and one beyond each end";
    chart.LookAt(5, 5);
    EXPECT_EQ(Picture(w).xAxis.lower, 100) << "nothing can be seen there";
    w.Click("cmdWhole");
    EXPECT_LT(Picture(w).xAxis.lower, 1);
  });
}

TEST_F(ChartTest, ItIsSavedInTheFormatOfTheName) {
  Show([this](Window& w) {
    for (const auto& [name, number] :
         {std::pair("a.png", "0"), std::pair("a.SVG", "1"), std::pair("a.pdf", "2")}) {
      desktop.AnswerFile(folder.File(name));
      w.Click("cmdSave");
      EXPECT_EQ(Content(name), std::string("chart ") + number + " of 5");
    }
    files.FailWrites();
    desktop.AnswerFile(folder.File("b.png"));
    desktop.ExpectMessage("The picture was not saved: " + folder.File("b.png") +
                          ": No space left on device");
    w.Click("cmdSave");
    w.Click("cmdCopy");
    EXPECT_EQ(w.Find<test::HeadlessChartBox>("chtChart").Copies(), 1);
  });
}

}  // namespace
}  // namespace tessel
