// The grid on the rows of a recordset.

#include <gtest/gtest.h>

#include "contract/base/Zoom.h"
#include "contract/data/RowArrangement.h"
#include "tests/contract/desktop/GridWindow.h"

namespace tessel::test {

namespace {

/// Two results, one of three rows, neither bound yet.
struct GridFixture : GridWindow {
  explicit GridFixture(ContractHost& contractHost) : GridWindow(contractHost) {
    data.Answer("rows", {MemoryField("id", DataType::Integer), MemoryField("name")},
                {{1, "one"}, {2, "<b>two</b>"}, {3, Value()}});
    data.Answer("none", MemoryFields({"id"}), {});
    recordset = Open("rows");
    grid.RowColChange = record.Noting("moved");
    grid.ButtonClick = [this](int column) { record.Add("button " + std::to_string(column)); };
    host.Settle();
  }

  void Bind() {
    grid.SetDataSource(recordset);
    host.Settle();
    static_cast<void>(record.Take());
  }
  [[nodiscard]] Bookmark At(std::int64_t position) const { return recordset->BookmarkAt(position); }
};

void BindingShowsTheFirstRow(ContractHost& host) {
  GridFixture test(host);
  test.recordset->MoveLast();
  test.grid.SetDataSource(test.recordset);
  EXPECT_EQ(test.grid.DataSource(), test.recordset);
  EXPECT_EQ(test.grid.ColumnCount(), 2);
  EXPECT_EQ(test.grid.CurrentColumn(), 0);
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(0));
  EXPECT_FALSE(test.grid.OnNewRow());
  EXPECT_EQ(test.record.Take(), Seen{"moved"});
}

void UnbindingEmptiesTheGrid(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.host.SelectGridRows(test.window, gridName, {1});
  static_cast<void>(test.record.Take());
  test.grid.SetDataSource(nullptr);
  EXPECT_EQ(test.grid.DataSource(), nullptr);
  EXPECT_EQ(test.grid.ColumnCount(), 0);
  EXPECT_EQ(test.grid.CurrentColumn(), -1);
  EXPECT_TRUE(test.grid.SelBookmarks().empty());
  EXPECT_EQ(test.record.Take(), Seen{});
}

void AnEmptyResultIsShown(ContractHost& host) {
  GridFixture test(host);
  test.grid.SetDataSource(test.Open("none"));
  EXPECT_EQ(test.grid.ColumnCount(), 1);
  EXPECT_EQ(test.record.Take(), Seen{});
}

void MovingInTheGridMovesTheRecord(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.host.ClickGridCell(test.window, gridName, 1, 1);
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(1));
  EXPECT_EQ(test.grid.CurrentColumn(), 1);
  EXPECT_EQ(test.record.Take(), Seen{"moved"});
  test.host.ClickGridCell(test.window, gridName, 1, 1);
  EXPECT_EQ(test.record.Take(), Seen{}) << "the same cell again";
  test.host.PressKey(test.window, key::down);
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(2));
  EXPECT_EQ(test.record.Take(), Seen{"moved"});
}

void RowsAreSelectedInTheUsersOrder(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.host.SelectGridRows(test.window, gridName, {2, 0});
  EXPECT_EQ(test.grid.SelBookmarks(), (std::vector{test.At(2), test.At(0)}));
  EXPECT_EQ(test.grid.SelStartCol(), -1);
}

void RowsAreSelectedByKeys(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.grid.SetFocus();
  const auto press = [&](int keyCode, int shift) { host.PressKey(test.window, keyCode, shift); };
  press(key::space, shiftState::shift);
  EXPECT_EQ(test.grid.SelBookmarks(), std::vector{test.At(0)});
  press(key::space, shiftState::shift);
  EXPECT_TRUE(test.grid.SelBookmarks().empty()) << "taken back";
  press(key::space, shiftState::ctrl);
  press(key::down, shiftState::shift);
  press(key::down, shiftState::shift);
  EXPECT_EQ(test.grid.SelBookmarks(), (std::vector{test.At(0), test.At(1), test.At(2)}));
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(2));
  press(key::down, shiftState::shift);
  EXPECT_EQ(test.grid.SelBookmarks().size(), 3U) << "there are no more";
  press(key::up, shiftState::shift);
  EXPECT_EQ(test.grid.SelBookmarks(), (std::vector{test.At(0), test.At(1)}));
  press(key::space, shiftState::ctrl);
  EXPECT_EQ(test.grid.SelBookmarks(), std::vector{test.At(0)}) << "the current row taken away";
  press(key::space, shiftState::shift);
  press(key::up, shiftState::shift);
  EXPECT_EQ(test.grid.SelBookmarks(), (std::vector{test.At(1), test.At(0)}));
}

void ARectangleOfCellsIsSelected(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.grid.SelectionChange = test.record.Noting("selected");
  EXPECT_TRUE(test.grid.SelCells().IsEmpty());
  const GridCells cells{0, 1, 0, 1};
  test.grid.SelectCells(cells);
  EXPECT_EQ(test.grid.SelCells(), cells);
  EXPECT_TRUE(test.grid.SelBookmarks().empty());
  EXPECT_EQ(test.grid.SelStartCol(), -1);
  EXPECT_EQ(test.record.Take(), Seen{"selected"});
  test.grid.SelectCells({1, 9, 1, 1});
  EXPECT_EQ(test.grid.SelCells(), (GridCells{1, 2, 1, 1})) << "there are no more rows";
  test.grid.SelectCells({});
  EXPECT_TRUE(test.grid.SelCells().IsEmpty());
  EXPECT_EQ(test.record.Take(), (Seen{"selected", "selected"}));
  test.grid.SelectCells({1, 1, 1, 1});
  EXPECT_TRUE(test.grid.SelCells().IsEmpty()) << "a single cell is none";
  test.host.SelectGridRows(test.window, gridName, {1});
  test.grid.SelectCells(cells);
  EXPECT_TRUE(test.grid.SelBookmarks().empty());
}

void GoingToACellIsAsAClick(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  EXPECT_TRUE(test.grid.GoToCell(2, 1));
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(2));
  EXPECT_EQ(test.grid.CurrentColumn(), 1);
  EXPECT_EQ(test.record.Take(), Seen{"moved"});
  EXPECT_FALSE(test.grid.GoToCell(3, 1));
  EXPECT_FALSE(test.grid.GoToCell(0, 2));
  EXPECT_FALSE(test.grid.GoToCell(-1, 0));
  EXPECT_EQ(test.recordset->CurrentBookmark(), test.At(2));
  EXPECT_TRUE(test.grid.GoToCell(2, 1));
  EXPECT_EQ(test.record.Take(), Seen{});
}

void ColumnsBecomeWiderAndNarrower(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  const int before = test.grid.ColumnWidth(1);
  test.grid.SetColumnWidth(1, before + 600);
  EXPECT_NEAR(test.grid.ColumnWidth(1), before + 600, 30);
  test.grid.SetColumnWidth(1, 15);
  EXPECT_GT(test.grid.ColumnWidth(1), 150) << "it can be seen still";
  test.grid.SetColumnWidth(1, 0);
  EXPECT_EQ(test.grid.ColumnWidth(1), before);
}

void PastingIsOfferedFirst(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  bool takes = true;
  test.grid.Paste = [&](bool& taken) {
    test.record.Add("paste");
    taken = takes;
  };
  test.grid.SetFocus();
  host.TheDesktop().TheClipboard().SetText("x");
  host.PressKey(test.window, 'V', shiftState::ctrl);
  EXPECT_EQ(test.record.Take(), Seen{"paste"});
}

void TheRowsOnShowAreThoseOfTheArrangement(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.grid.GoToCell(1, 1);
  const auto work = test.recordset->StartArrange(
      {.sort = {{0, true}},
       .conditions = {
           {.field = 0, .comparison = Comparison::NotEqual, .value = Value(std::int64_t{3})}}});
  while (!work->HasEnded()) work->Step();
  test.grid.Refresh();
  test.grid.SetFocus();
  host.Settle();
  EXPECT_EQ(test.recordset->RecordCount(), 2);
  EXPECT_EQ(test.grid.ShownText(0, 0), "2");
  EXPECT_EQ(test.grid.ShownText(1, 0), "1");
  EXPECT_EQ(test.recordset->CurrentBookmark(), 2);
  host.PressKey(test.window, key::down);
  EXPECT_EQ(test.recordset->CurrentBookmark(), 1);
}

void ColumnsKeepTheirSettings(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  DataFormat format;
  EXPECT_FALSE(test.grid.ColumnLocked(1));
  test.grid.SetColumnLocked(1, true);
  test.grid.SetColumnButton(1, true);
  test.grid.SetColumnFormat(1, &format);
  EXPECT_TRUE(test.grid.ColumnLocked(1));
  EXPECT_TRUE(test.grid.ColumnButton(1));
  EXPECT_EQ(test.grid.ColumnFormat(1), &format);
  EXPECT_FALSE(test.grid.ColumnLocked(0));
  test.grid.SetDataSource(test.recordset);
  EXPECT_FALSE(test.grid.ColumnLocked(1)) << "binding makes new columns";
  EXPECT_EQ(test.grid.ColumnFormat(1), nullptr);
}

void CellsAreMarkedUntilTheNextBinding(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  EXPECT_FALSE(test.grid.CellMarked(1, 0));
  test.grid.SetMarkedCells(
      [row = test.At(1)](Bookmark at, int column) { return at == row && column == 0; });
  EXPECT_TRUE(test.grid.CellMarked(1, 0));
  EXPECT_FALSE(test.grid.CellMarked(1, 1));
  EXPECT_FALSE(test.grid.CellMarked(0, 0));
  test.grid.SetDataSource(test.recordset);
  EXPECT_FALSE(test.grid.CellMarked(1, 0));
}

void EditingIsAllowedByFlags(ContractHost& host) {
  GridFixture test(host);
  for (const bool allow : {true, false}) {
    test.grid.SetAllowUpdate(allow);
    test.grid.SetAllowDelete(allow);
    test.grid.SetAllowAddNew(allow);
    EXPECT_EQ(test.grid.AllowUpdate(), allow);
    EXPECT_EQ(test.grid.AllowDelete(), allow);
    EXPECT_EQ(test.grid.AllowAddNew(), allow);
  }
}

void ValuesAreShownAsTheyAre(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  EXPECT_EQ(test.grid.ShownText(1, 0), "2");
  EXPECT_EQ(test.grid.ShownText(1, 1), "<b>two</b>");
  EXPECT_NE(test.grid.ShownText(2, 1), "") << "null looks different from an empty text";
}

void AFormatDecidesHowValuesAreShown(ContractHost& host) {
  GridFixture test(host);
  DataFormat format;
  format.Format = [](const ValueView& value, std::string& text) {
    if (ToText(value) == "one") text = "(first)";
  };
  test.Bind();
  test.grid.SetColumnFormat(1, &format);
  EXPECT_EQ(test.grid.ShownText(0, 1), "(first)");
  EXPECT_EQ(test.grid.ShownText(1, 1), "<b>two</b>") << "left empty: the ordinary form";
  test.grid.SetColumnFormat(1, nullptr);
  EXPECT_EQ(test.grid.ShownText(0, 1), "one");
}

void ChangesOfTheRowAreTold(ContractHost& host) {
  Record rows;
  GridFixture test(host);
  test.grid.RowsChange = rows.Noting("rows");
  test.Bind();
  EXPECT_EQ(rows.Take(), Seen{"rows"});
  test.host.ClickGridCell(test.window, gridName, 1, 1);
  EXPECT_EQ(rows.Take(), Seen{"rows"});
  test.grid.Refresh();
  EXPECT_EQ(rows.Take(), Seen{"rows"});
  test.grid.SetDataSource(nullptr);
  EXPECT_EQ(rows.Take(), Seen{"rows"});
}

void TheSizeIsOneOfThoseThereAre(ContractHost& host) {
  GridFixture test(host);
  EXPECT_EQ(test.grid.Zoom(), ordinaryZoom);
  test.Bind();
  test.grid.SetZoom(150);
  EXPECT_EQ(test.grid.Zoom(), 150);
  test.grid.SetZoom(1000);
  EXPECT_EQ(test.grid.Zoom(), 300);
  test.grid.SetZoom(101);
  EXPECT_EQ(test.grid.Zoom(), 100);
}

void CopyingTakesTheCurrentCellOrTheSelection(ContractHost& host) {
  GridFixture test(host);
  test.Bind();
  test.grid.SetFocus();
  test.host.PressKey(test.window, 'C', shiftState::ctrl);
  EXPECT_EQ(test.host.TheDesktop().TheClipboard().Text(), "1");
  test.host.SelectGridRows(test.window, gridName, {1});
  test.host.PressKey(test.window, 'C', shiftState::ctrl);
  EXPECT_EQ(test.host.TheDesktop().TheClipboard().Text(), "2\t<b>two</b>");
}

}  // namespace

std::vector<ContractCase> GridContract() {
  return {{"BindingShowsTheFirstRow", &BindingShowsTheFirstRow},
          {"UnbindingEmptiesTheGrid", &UnbindingEmptiesTheGrid},
          {"AnEmptyResultIsShown", &AnEmptyResultIsShown},
          {"MovingInTheGridMovesTheRecord", &MovingInTheGridMovesTheRecord},
          {"RowsAreSelectedInTheUsersOrder", &RowsAreSelectedInTheUsersOrder},
          {"RowsAreSelectedByKeys", &RowsAreSelectedByKeys},
          {"ARectangleOfCellsIsSelected", ARectangleOfCellsIsSelected},
          {"GoingToACellIsAsAClick", GoingToACellIsAsAClick},
          {"ColumnsBecomeWiderAndNarrower", ColumnsBecomeWiderAndNarrower},
          {"PastingIsOfferedFirst", PastingIsOfferedFirst},
          {"TheRowsOnShowAreThoseOfTheArrangement", TheRowsOnShowAreThoseOfTheArrangement},
          {"ColumnsKeepTheirSettings", &ColumnsKeepTheirSettings},
          {"CellsAreMarkedUntilTheNextBinding", &CellsAreMarkedUntilTheNextBinding},
          {"EditingIsAllowedByFlags", &EditingIsAllowedByFlags},
          {"ValuesAreShownAsTheyAre", &ValuesAreShownAsTheyAre},
          {"AFormatDecidesHowValuesAreShown", &AFormatDecidesHowValuesAreShown},
          {"ChangesOfTheRowAreTold", &ChangesOfTheRowAreTold},
          {"TheSizeIsOneOfThoseThereAre", &TheSizeIsOneOfThoseThereAre},
          {"CopyingTakesTheCurrentCellOrTheSelection", &CopyingTakesTheCurrentCellOrTheSelection}};
}

}  // namespace tessel::test
