// A block of cells from the clipboard in the rows of a records window.

#include "logic/results/cells/GridPaste.h"

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class GridPasteTest : public test::EditingFixture {
 protected:
  GridPasteTest() {
    EXPECT_TRUE(Connect());
    RunUnlocked();
  }

  void Paste(const char* text, const char* html = "") {
    desktop.TheClipboard().SetForms(text, html);
    Grid().SetFocus();
    Press('V', shiftState::ctrl);
  }
  [[nodiscard]] std::string Cell(std::int64_t row, std::size_t field) {
    return ToText(Grid().DataSource()->ValueAt(row, field));
  }
};

TEST_F(GridPasteTest, SeveralRowsAreSavedOneByOne) {
  ClickCell(0, name);
  Paste("uno\tFalse\r\ndos\tTrue\r\n");
  EXPECT_EQ(Stored(0, name), Text("uno"));
  EXPECT_EQ(Stored(0, active), Value(false));
  EXPECT_EQ(Stored(1, name), Text("dos"));
  EXPECT_EQ(Stored(1, active), Value(true));
  EXPECT_EQ(Stored(2, name), Text("")) << "as it was";
  EXPECT_FALSE(Grid().ChangePending());
  EXPECT_EQ(Grid().SelCells(), (GridCells{0, 1, name, active}));
  EXPECT_THAT(Status(), EndsWith("2 of 2 rows pasted."));
}

TEST_F(GridPasteTest, OneRowWaitsAsIfItWereTyped) {
  ClickCell(1, name);
  Paste("x\t 1 \r\n");
  EXPECT_EQ(Cell(1, name), "x");
  EXPECT_EQ(Cell(1, active), "True") << "blanks around it do not count";
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Stored(1, name), Value());
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(1, name), Text("x"));
}

TEST_F(GridPasteTest, AWrongValueRefusesTheWholeAndIsShownAtItsCell) {
  ClickCell(0, name);
  ExpectNotice(
      "Row 2, column 'active': 'maybe' is no value of its type.\r\n\r\nNothing was pasted.");
  Paste("uno\tTrue\ndos\tmaybe\n");
  EXPECT_EQ(Stored(0, name), Text("one"));
  EXPECT_FALSE(Grid().ChangePending());
  EXPECT_EQ(Grid().CurrentColumn(), active);
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 2);
}

TEST_F(GridPasteTest, WhatDoesNotFitIsRefused) {
  ClickCell(0, picture);
  ExpectNotice("The block has 3 columns, and there are not so many from this one on.\r\n\r\n"
               "Nothing was pasted.");
  Paste("0x00\tb\tc");
  RunRows("locked again");
  Press('L', shiftState::ctrl);
  RunRows("locked rows");
  ClickCell(0, name);
  ExpectNotice("The records were opened for reading only and cannot be changed.\r\n\r\n"
               "Nothing was pasted.");
  Paste("a\tTrue");
}

TEST_F(GridPasteTest, RowsBehindTheLastOneBecomeNewOnes) {
  ClickCell(2, name);
  Paste("tres\ncuatro\ncinco\n");
  ASSERT_EQ(Grid().DataSource()->RecordCount(), 5);
  EXPECT_EQ(Cell(2, name), "tres");
  EXPECT_EQ(Cell(3, name), "cuatro");
  EXPECT_EQ(Cell(4, name), "cinco");
  EXPECT_EQ(Stored(4, name), Text("cinco"));
}

TEST_F(GridPasteTest, OneValueFillsTheSelectedCells) {
  ClickCell(0, name);
  G().DragCells({0, 2, name, name});
  Paste("same");
  for (const std::size_t row : {0U, 1U, 2U}) EXPECT_EQ(Stored(row, name), Text("same"));
}

TEST_F(GridPasteTest, ASingleValueIsTyped) {
  ClickCell(0, name);
  Paste("typed");
  EXPECT_TRUE(Grid().EditActive());
  EXPECT_EQ(Grid().CellText(), "typed");
}

TEST_F(GridPasteTest, ALongBlockTellsHowFarItIsAndStopsWhereItIsCancelled) {
  std::string block;
  for (int i = 0; i < 500; ++i) block += "row\n";
  std::string told;
  desktop.OnProcessPending([&](int call) {
    desktop.AdvanceTime(100);
    told = desktop.WindowOf("dlgAsync").Find<Label>("lblDone").Caption();
    if (call == 5) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  ClickCell(0, name);
  Paste(block.c_str());
  EXPECT_THAT(told, HasSubstr(" of 500 rows, "));
  EXPECT_THAT(Status(), EndsWith(" of 500 rows pasted."));
  EXPECT_LT(Grid().DataSource()->RecordCount(), 500);
  EXPECT_FALSE(Grid().ChangePending()) << "a row is saved whole";
}

TEST_F(GridPasteTest, ASingleCellOfASpreadsheetHasNoLineEnd) {
  ClickCell(0, name);
  Paste("uno\r\n");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("uno"));
  Paste("\"l1\nl2\"\r\n");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("l1\nl2"));
}

TEST_F(GridPasteTest, ANumberWithALineEndIsNone) {
  ClickCell(0, active);
  Paste("0\r\n");
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_EQ(Cell(0, active), "False");
}

TEST_F(GridPasteTest, AnEmptyValueLeavesANull) {
  ClickCell(0, name);
  Paste("a\t\n\t\n");
  EXPECT_EQ(Stored(0, active), Value());
  EXPECT_EQ(Stored(1, name), Value());
}

TEST_F(GridPasteTest, ATableOfAPageIsABlockToo) {
  ClickCell(0, name);
  Paste("", "<table><tr><td>uno</td><td>0</td></tr><tr><td>dos</td><td>1</td></tr></table>");
  EXPECT_EQ(Stored(0, name), Text("uno"));
  EXPECT_EQ(Stored(1, active), Value(true));
}

TEST_F(GridPasteTest, ASingleCellOfAPageIsTakenWhereThereIsNoText) {
  ClickCell(0, name);
  Paste("", "<table><tr><td>tres</td></tr></table>");
  EXPECT_EQ(Cell(0, name), "tres");
}

TEST_F(GridPasteTest, TheRowThatTheDatabaseRefusesKeepsItsChange) {
  ClickCell(0, name);
  data.changeFailure = MemoryError("No.");
  ExpectNotice("No.");
  Paste("uno\ndos\n");
  EXPECT_EQ(Cell(0, name), "uno");
  EXPECT_TRUE(Grid().ChangePending());
  EXPECT_EQ(Stored(0, name), Text("one"));
  EXPECT_EQ(Cell(1, name), "");
  EXPECT_THAT(Status(), EndsWith("0 of 2 rows pasted."));
  EXPECT_TRUE(ButtonsShow());
  Press('R', shiftState::ctrl);
  EXPECT_EQ(Cell(0, name), "one");
  EXPECT_FALSE(ButtonsShow());
}

}  // namespace
}  // namespace tessel
