// Sorting, finding, filtering and summing up the rows of a records window, as its user does it.

#include "logic/results/arrange/RowTools.h"

#include <gmock/gmock.h>

#include "contract/data/Operation.h"
#include "tests/logic/results/EditingFixture.h"
#include "tests/support/CombinedSteps.h"

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RowToolsTest : public test::EditingFixture {
 protected:
  RowToolsTest() { EXPECT_TRUE(Connect()); }

  void RunTowns(const std::string& sql = "towns", bool unlocked = false) {
    if (unlocked) Press('L', shiftState::ctrl);
    std::vector<FieldInfo> fields{MemoryField("id", DataType::Integer), MemoryField("town"),
                                  MemoryField("size", DataType::Numeric)};
    table = data.Answer(sql, fields,
                        {{Int(1), Text("Wien"), Value(Decimal{"10.5"})},
                         {Int(2), Text("Graz"), Value(Decimal{"2.25"})},
                         {Int(3), Value(), Value()},
                         {Int(4), Text("Linz"), Value(Decimal{"10.50"})},
                         {Int(5), Text("Graz"), Value(Decimal{"1"})}})
                .rows;
    EXPECT_TRUE(Run(sql));
  }
  void Settle() { desktop.AdvanceTime(500); }
  void Sort(int column, bool further = false) {
    G().ClickSort(column, further);
    Settle();
  }
  void OpenFilter() { Press('F', shiftState::ctrl | shiftState::shift); }
  void Filter(const char* text) {
    if (!Shows("fraFilterRows")) OpenFilter();
    W().Find<TextBox>("txtFilterRows").SetText(text);
    Settle();
  }
  void Find(const char* text) {
    Press('F', shiftState::ctrl);
    W().Find<TextBox>("txtFindRows").SetText(text);
    Press(key::enter);
    Settle();
  }
  void FindOn(int shift = shiftState::none) {
    Press(key::f3, shift);
    Settle();
  }
  [[nodiscard]] std::vector<std::string> Ids() {
    std::vector<std::string> ids;
    for (std::int64_t at = 0; at < Grid().DataSource()->RecordCount(); ++at)
      ids.push_back(ToText(Grid().DataSource()->ValueAt(at, id)));
    return ids;
  }
  [[nodiscard]] std::string Cell() {
    const auto position = Grid().DataSource()->PositionOf(Grid().DataSource()->CurrentBookmark());
    return std::to_string(position.value_or(-1)) + ":" + std::to_string(Grid().CurrentColumn());
  }
  [[nodiscard]] std::string Caption(const char* label) { return W().Find<Label>(label).Caption(); }
  [[nodiscard]] std::string StatusText() { return Status().substr(Status().find("]  ") + 3); }
};

// --- sorting -------------------------------------------------------------------------------------

TEST_F(RowToolsTest, AColumnIsSortedUpThenDownThenAsItWas) {
  RunTowns();
  Sort(2);
  EXPECT_THAT(Ids(), ElementsAre("3", "5", "2", "1", "4"));
  EXPECT_EQ(StatusText(), "5 record(s). Sorted by size.");
  Sort(2);
  EXPECT_THAT(Ids(), ElementsAre("1", "4", "2", "5", "3"));
  EXPECT_EQ(StatusText(), "5 record(s). Sorted by size descending.");
  Sort(2);
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "3", "4", "5"));
  EXPECT_EQ(StatusText(), "5 record(s).");
}

TEST_F(RowToolsTest, FurtherColumnsSortWhatIsEqual) {
  RunTowns();
  Sort(1);
  EXPECT_THAT(Ids(), ElementsAre("3", "2", "5", "4", "1"));
  Sort(2, true);
  EXPECT_THAT(Ids(), ElementsAre("3", "5", "2", "4", "1"));
  EXPECT_EQ(StatusText(), "5 record(s). Sorted by town, size.");
  Sort(0);
  EXPECT_EQ(StatusText(), "5 record(s). Sorted by id.");
}

TEST_F(RowToolsTest, KeysAndMenuSortByTheCurrentColumn) {
  RunTowns();
  ClickCell(0, 2);
  Press('S', shiftState::ctrl | shiftState::shift);
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("3", "5", "2", "1", "4"));
  EXPECT_EQ(Cell(), "3:2") << "the current record stays current";
  ClickCell(0, 0);
  W().ChooseMenu("mnuRowsSortFurther");
  Settle();
  W().ChooseMenu("mnuRowsSortFurther");
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("3", "5", "2", "4", "1"));
  W().ChooseMenu("mnuRowsSortNot");
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "3", "4", "5"));
}

TEST_F(RowToolsTest, AChangeThatWaitsIsSavedFirst) {
  RunTowns("towns", true);
  ClickCell(1, 1);
  Type("Aalen");
  Sort(1);
  EXPECT_EQ(Stored(1, 1), Text("Aalen"));
  EXPECT_THAT(Ids(), ElementsAre("3", "2", "5", "4", "1"));
}

/// A key that is held comes twice.
TEST_F(RowToolsTest, ASecondEscDoesNotKeepAFilterWhoseLineIsClosed) {
  RunTowns();
  Filter("Graz");
  EXPECT_THAT(Ids(), ElementsAre("2", "5"));
  W().Find<TextBox>("txtFilterRows").SetFocus();
  Press(key::escape);
  EXPECT_FALSE(Shows("fraFilterRows"));
  Press(key::escape);
  Settle();
  EXPECT_EQ(Ids().size(), 5U);
  EXPECT_EQ(StatusText(), "5 record(s).");
}

TEST_F(RowToolsTest, EscStopsItAndTheNextQueryForgetsIt) {
  RunTowns();
  G().ClickSort(2, false);
  Press(key::escape);
  EXPECT_EQ(StatusText(), "Stopped.");
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "3", "4", "5"));
  G().ClickSort(2, false);
  RunTowns("again");
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "3", "4", "5"));
}

// --- the filter ----------------------------------------------------------------------------------

TEST_F(RowToolsTest, TheFilterShowsWhatMatchesAsItIsTyped) {
  RunTowns();
  OpenFilter();
  EXPECT_TRUE(Shows("fraFilterRows"));
  EXPECT_EQ(W().FocusName(), "txtFilterRows");
  Filter("graz");
  EXPECT_THAT(Ids(), ElementsAre("2", "5"));
  EXPECT_EQ(StatusText(), "2 of 5 record(s).");
  EXPECT_EQ(Caption("labFiltered"), "2 of 5");
  EXPECT_EQ(Caption("lblRow"), "row 1 of 2");
  Sort(2);
  EXPECT_THAT(Ids(), ElementsAre("5", "2"));
  EXPECT_EQ(StatusText(), "2 of 5 record(s). Sorted by size.");
  Press(key::escape);
  Settle();
  EXPECT_FALSE(Shows("fraFilterRows"));
  EXPECT_THAT(Ids(), ElementsAre("3", "5", "2", "1", "4")) << "sorted still";
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RowToolsTest, TheFilterIsOfOneColumnOrOfAll) {
  RunTowns();
  Filter("2");
  EXPECT_THAT(Ids(), ElementsAre("2"));
  W().Find<ComboBox>("cboFilterColumn").SetListIndex(3);
  Filter(">= 2.25");
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "4"));
  Filter("=NULL");
  EXPECT_THAT(Ids(), ElementsAre("3"));
  Filter("=many");
  EXPECT_EQ(Caption("labFiltered"), "'many' is no value of the column 'size'.");
  EXPECT_THAT(Ids(), ElementsAre("3")) << "as before";
  Filter("nothing");
  EXPECT_THAT(Ids(), IsEmpty());
  EXPECT_EQ(StatusText(), "0 of 5 record(s).");
  EXPECT_EQ(Caption("lblRow"), "");
}

TEST_F(RowToolsTest, TheLinesStandAboveTheRows) {
  RunTowns();
  const Rect before = Grid().Bounds();
  OpenFilter();
  const Rect line = W().Find<PictureBox>("fraFilterRows").Bounds();
  EXPECT_EQ(line.top, before.top);
  EXPECT_GE(Grid().Bounds().top, line.top + line.height);
  EXPECT_EQ(Grid().Bounds().top + Grid().Bounds().height, before.top + before.height);
  Press('F', shiftState::ctrl);
  EXPECT_GT(W().Find<PictureBox>("fraFilterRows").Bounds().top,
            W().Find<PictureBox>("fraFindRows").Bounds().top);
  W().Click("cmdCloseFilter");
  W().Click("cmdCloseFindRows");
  EXPECT_EQ(Grid().Bounds(), before);
}

TEST_F(RowToolsTest, AnotherQueryShowsAllItsRows) {
  RunTowns();
  Filter("graz");
  RunTowns("again");
  Settle();
  EXPECT_THAT(Ids(), ElementsAre("1", "2", "3", "4", "5"));
  EXPECT_FALSE(Shows("fraFilterRows"));
  OpenFilter();
  EXPECT_EQ(W().Find<TextBox>("txtFilterRows").Text(), "");
}

TEST_F(RowToolsTest, ANewRecordIsOnShowAtTheEnd) {
  RunTowns("towns", true);
  Filter("graz");
  Grid().SetFocus();
  G().GoToNewRow();
  ClickCell(2, 1);
  Type("Bonn");
  Press('S', shiftState::ctrl);
  Press(key::up);
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 3);
  EXPECT_EQ(Caption("labFiltered"), "3 of 6");
}

TEST_F(RowToolsTest, ConversionsAndTagsTakeTheRowsOnShow) {
  RunTowns();
  Filter("graz");
  Sort(2);
  EXPECT_EQ(records->GetTagFieldValue("id", true, false), "(5, 2)");
  std::string shown;
  desktop.OnModal("frmText", [&](test::HeadlessWindow& text) {
    shown = text.Find<RichTextBox>("txtText").Text();
    text.CloseByControlBox();
  });
  W().ChooseMenu("mnuCvtCSV");
  EXPECT_EQ(shown, "id,town,size\r\n5,Graz,1\r\n2,Graz,2.25\r\n");
  EXPECT_EQ(Cell(), "1:0") << "the current record stays";
}

// --- finding -------------------------------------------------------------------------------------

TEST_F(RowToolsTest, FindGoesFromCellToCellAndRound) {
  RunTowns();
  Find("2");
  EXPECT_EQ(Cell(), "1:0");
  EXPECT_EQ(Caption("labFoundRows"), "1 of 2");
  FindOn();
  EXPECT_EQ(Cell(), "1:2");
  EXPECT_EQ(Caption("labFoundRows"), "2 of 2");
  FindOn();
  EXPECT_EQ(Cell(), "1:0");
  EXPECT_EQ(Caption("labFoundRows"), "1 of 2, went round");
  FindOn(shiftState::shift);
  EXPECT_EQ(Cell(), "1:2");
  EXPECT_TRUE(Grid().CellMarked(1, 0));
  EXPECT_FALSE(Grid().CellMarked(1, 1));
}

TEST_F(RowToolsTest, FindTellsWhatItDoesNotFindAndWhatIsWrong) {
  RunTowns();
  Find("Bonn");
  EXPECT_EQ(Caption("labFoundRows"), "Not found.");
  EXPECT_EQ(Cell(), "0:0");
  W().Click("chkFindRowsRegex");
  Find("(");
  EXPECT_NE(Caption("labFoundRows"), "");
  W().Find<TextBox>("txtFindRows").SetText("^g.*Z$");
  Press(key::enter);
  Settle();
  EXPECT_EQ(Cell(), "1:1");
  W().Click("chkFindRowsCase");
  FindOn();
  EXPECT_EQ(Caption("labFoundRows"), "Not found.");
  Press(key::escape);
  EXPECT_FALSE(Shows("fraFindRows"));
}

TEST_F(RowToolsTest, F3ShowsTheCellWhileTheFindLineIsShut) {
  RunTowns();
  ClickCell(0, 1);
  desktop.OnModal("frmText", [](test::HeadlessWindow& text) { text.CloseByControlBox(); });
  Press(key::f3);
  EXPECT_EQ(desktop.Modals().back(), "frmText");
}

TEST_F(RowToolsTest, WhatWasFoundIsForgottenWithItsRows) {
  RunTowns();
  Find("graz");
  EXPECT_EQ(Caption("labFoundRows"), "1 of 2");
  Sort(0);
  Sort(0);
  EXPECT_EQ(Caption("labFoundRows"), "");
  EXPECT_FALSE(Grid().CellMarked(0, 1));
  FindOn();
  EXPECT_EQ(Caption("labFoundRows"), "1 of 2, went round");
  EXPECT_EQ(Cell(), "0:1");
}

// --- sums ----------------------------------------------------------------------------------------

TEST_F(RowToolsTest, SelectedCellsAreSummedUpWhereTheRowStands) {
  RunTowns();
  G().DragCells({0, 3, 2, 2});
  Settle();
  EXPECT_EQ(Caption("lblRow"), "4 cells: sum 23.25, 2 distinct, 1 NULL");
  G().DragCells({1, 4, 1, 1});
  Settle();
  EXPECT_EQ(Caption("lblRow"), "4 cells: 2 distinct, 1 NULL");
  ClickCell(2, 0);
  G().SelectCells({});
  Settle();
  EXPECT_EQ(Caption("lblRow"), "row 3 of 5");
}

TEST_F(RowToolsTest, SelectedRowsAndColumnsToo) {
  RunTowns();
  G().SelectColumns(0, 0);
  Settle();
  EXPECT_EQ(Caption("lblRow"), "5 cells: sum 15, 5 distinct");
  G().SelectRows({4, 1});
  Settle();
  EXPECT_EQ(Caption("lblRow"), "6 cells: sum 10.25, 5 distinct");
  Filter("wien");
  EXPECT_EQ(Caption("lblRow"), "row 1 of 1");
}

// --- widths, cells to convert --------------------------------------------------------------------

TEST_F(RowToolsTest, KeysMakeTheCurrentColumnWiderAndNarrower) {
  RunTowns();
  ClickCell(0, 1);
  const int before = Grid().ColumnWidth(1);
  Press('W', shiftState::ctrl | shiftState::shift);
  EXPECT_EQ(Grid().ColumnWidth(1), before + 300);
  W().ChooseMenu("mnuColumnNarrower");
  W().ChooseMenu("mnuColumnNarrower");
  EXPECT_EQ(Grid().ColumnWidth(1), before - 300);
  W().ChooseMenu("mnuColumnFit");
  EXPECT_EQ(Grid().ColumnWidth(1), before);
}

TEST_F(RowToolsTest, AConversionTakesSelectedCellsWhenItIsAskedTo) {
  RunTowns();
  G().DragCells({1, 2, 1, 2});
  const auto csv = [&] {
    std::string shown;
    desktop.OnModal("frmText", [&](test::HeadlessWindow& text) {
      shown = text.Find<RichTextBox>("txtText").Text();
      text.CloseByControlBox();
    });
    W().ChooseMenu("mnuCvtCSV");
    return shown;
  };
  EXPECT_TRUE(csv().starts_with("id,town,size\r\n1,Wien,10.5\r\n"));
  W().ChooseMenu("mnuCvtCells");
  EXPECT_EQ(csv(), "town,size\r\nGraz,2.25\r\n,\r\n");
  W().ChooseMenu("mnuCvtCells");
  EXPECT_TRUE(csv().starts_with("id,town,size\r\n1,"));
}

TEST_F(RowToolsTest, CopyTakesTheSelectedRectangle) {
  RunTowns();
  G().DragCells({0, 1, 1, 2});
  Grid().SetFocus();
  Press('C', shiftState::ctrl);
  EXPECT_EQ(desktop.TheClipboard().Text(), "Wien\t10.5\r\nGraz\t2.25");
}

}  // namespace
}  // namespace tessel
