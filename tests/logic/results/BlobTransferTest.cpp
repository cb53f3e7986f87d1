#include "logic/results/BlobTransfer.h"

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

class BlobTransferTest : public test::EditingFixture {
 protected:
  BlobTransferTest() { EXPECT_TRUE(Connect()); }

  /// Chooses a command of the menu that the cell's button pops up.
  void Choose(std::int64_t position, const std::string& command) {
    desktop.ExpectPopup("menuBLOB", command);
    W().ClickGridButton("DataGrid", position, picture);
  }
  void Put(const std::string& fileName, std::string_view content) {
    realFiles.ReplaceWhole(folder.File(fileName), content, false);
  }
};

TEST_F(BlobTransferTest, ValuesShowTheirSizeAndNullStaysNull) {
  RunRows();
  EXPECT_EQ(Grid().ShownText(0, picture), "[2048]");
  EXPECT_EQ(Grid().ShownText(1, picture), "NULL");
  EXPECT_EQ(Grid().ShownText(2, picture), "[0]") << "no bytes, and not null";
  EXPECT_TRUE(Grid().ColumnLocked(picture));
  EXPECT_TRUE(Grid().ColumnButton(picture));
  EXPECT_FALSE(Grid().ColumnButton(name));
}

TEST_F(BlobTransferTest, LockedRowsCanOnlyBeSaved) {
  RunRows();
  EXPECT_TRUE(W().Menu("mnuBLOBSave").Enabled());
  EXPECT_FALSE(W().Menu("mnuBLOBLoad").Enabled());
  EXPECT_FALSE(W().Menu("mnuBLOBNull").Enabled());
  RunUnlocked("again");
  EXPECT_TRUE(W().Menu("mnuBLOBLoad").Enabled());
  EXPECT_TRUE(W().Menu("mnuBLOBNull").Enabled());
}

TEST_F(BlobTransferTest, TheContextMenuKeyPopsUpTheMenuAtTheCell) {
  RunRows();
  ClickCell(0, picture);
  desktop.ExpectPopup("menuBLOB", "");
  Press(key::contextMenu);
  const Rect cell = Grid().CellBounds();
  EXPECT_EQ(desktop.Popups().back().at, "DataGrid");
  EXPECT_EQ(desktop.Popups().back().x, cell.left);
  EXPECT_EQ(desktop.Popups().back().y, cell.top + cell.height);
  ClickCell(0, name);
  Press(key::contextMenu);
  EXPECT_EQ(desktop.Popups().size(), 1U) << "only on binary columns";
}

TEST_F(BlobTransferTest, BinaryCellsCannotBeTypedInto) {
  RunUnlocked();
  ClickCell(0, picture);
  Type("x");
  Press(key::f2);
  Press('0', shiftState::ctrl);
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(BlobTransferTest, SavingWritesTheBytesAndProposesTheCompanionsName) {
  RunRows();
  desktop.AnswerFile(folder.File("saved.png"));
  Choose(0, "mnuBLOBSave");
  EXPECT_TRUE(desktop.FileDialogs().back().save);
  EXPECT_EQ(desktop.FileDialogs().back().fileName, "one.png");
  EXPECT_EQ(Content("saved.png"), std::string(2048, '\x07'));
}

TEST_F(BlobTransferTest, SavingReplacesAnExistingFile) {
  RunRows();
  Put("saved.png", std::string(5000, 'x'));
  desktop.AnswerFile(folder.File("saved.png"));
  Choose(0, "mnuBLOBSave");
  EXPECT_EQ(Content("saved.png"), std::string(2048, '\x07'));
}

TEST_F(BlobTransferTest, SavingNullOrNoBytesMakesAnEmptyFile) {
  RunRows();
  for (const std::int64_t row : {1, 2}) {
    Put("saved.png", "old");
    desktop.AnswerFile(folder.File("saved.png"));
    Choose(row, "mnuBLOBSave");
    EXPECT_EQ(desktop.FileDialogs().back().fileName, "") << "the companion is null";
    EXPECT_EQ(Content("saved.png"), "");
  }
}

TEST_F(BlobTransferTest, AFullDiskIsReportedAndTheOldFileStays) {
  RunRows();
  Put("saved.png", "old");
  files.FailWrites("No space left on device");
  desktop.AnswerFile(folder.File("saved.png"));
  ExpectNotice(folder.File("saved.png") + ": No space left on device");
  Choose(0, "mnuBLOBSave");
  EXPECT_EQ(Content("saved.png"), "old");
}

TEST_F(BlobTransferTest, LoadingShowsTheButtonsAndWritesOnlyWhenAccepted) {
  RunUnlocked();
  Put("new.bin", std::string("a\0b", 3));
  desktop.AnswerFile(folder.File("new.bin"));
  Choose(0, "mnuBLOBLoad");
  EXPECT_FALSE(desktop.FileDialogs().back().save);
  EXPECT_EQ(desktop.FileDialogs().back().fileName, "one.png") << "proposed here too";
  EXPECT_EQ(Grid().ShownText(0, picture), "[3]");
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Stored(0, picture), Value(BytesOf(2048)));
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, picture), Value(Bytes{std::byte{'a'}, std::byte{0}, std::byte{'b'}}));
}

TEST_F(BlobTransferTest, LoadingAnEmptyFileSetsNull) {
  RunUnlocked();
  Put("empty.bin", "");
  desktop.AnswerFile(folder.File("empty.bin"));
  Choose(0, "mnuBLOBLoad");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, picture), Value());
}

TEST_F(BlobTransferTest, LoadingAMissingFileSaysSoAndChangesNothing) {
  RunUnlocked();
  desktop.AnswerFile(folder.File("missing.bin"));
  ExpectNotice("The file does not exist.");
  Choose(0, "mnuBLOBLoad");
  EXPECT_FALSE(Grid().ChangePending());
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(BlobTransferTest, ACancelledDialogDoesNothing) {
  RunUnlocked();
  desktop.CancelFile();
  Choose(0, "mnuBLOBLoad");
  desktop.CancelFile();
  Choose(0, "mnuBLOBSave");
  EXPECT_FALSE(Grid().ChangePending());
}

TEST_F(BlobTransferTest, LoadingOnTheNewRowBeginsARecordWithoutButtons) {
  RunUnlocked();
  Put("new.bin", "abc");
  W().GoToNewRow("DataGrid");
  desktop.AnswerFile(folder.File("new.bin"));
  Choose(3, "mnuBLOBLoad");
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::Add);
  Press(key::down);
  EXPECT_EQ(table->size(), 4U);
}

TEST_F(BlobTransferTest, SavingFromTheEmptyNewRowMakesAnEmptyFile) {
  RunUnlocked();
  desktop.AnswerFile(folder.File("saved.bin"));
  Choose(3, "mnuBLOBSave");
  EXPECT_EQ(Content("saved.bin"), "");
}

TEST_F(BlobTransferTest, NullSetsTheFieldToNull) {
  RunUnlocked();
  Choose(0, "mnuBLOBNull");
  EXPECT_EQ(Grid().ShownText(0, picture), "NULL");
  EXPECT_TRUE(ButtonsShow());
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, picture), Value());
}

TEST_F(BlobTransferTest, AFailureToSetNullIsShownAndTheRecordUnchanged) {
  W().PressKey('L', shiftState::ctrl);
  std::vector<FieldInfo> fields{MemoryField("id", DataType::Integer),
                                MemoryField("picture", DataType::LongVarBinary)};
  fields[1].updatable = false;
  data.Answer("computed", fields, {{Value(std::int64_t{1}), Value(BytesOf(5))}});
  ASSERT_TRUE(Run("computed"));
  ExpectNotice("The field 'picture' cannot be changed.");
  desktop.ExpectPopup("menuBLOB", "mnuBLOBNull");
  W().ClickGridButton("DataGrid", 0, 1);
  EXPECT_EQ(Grid().ShownText(0, 1), "[5]");
  EXPECT_TRUE(NoButtonShows());
}

}  // namespace
}  // namespace tessel
