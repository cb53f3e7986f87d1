// Editing cells, rows and new records in the grid.

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/contract/desktop/GridWindow.h"

namespace tessel::test {

namespace {

constexpr int id = 0;
constexpr int name = 1;
constexpr int flag = 2;

Value Number(std::int64_t number) { return number; }

/// Three rows that can be changed.
struct EditingFixture : GridWindow {
  explicit EditingFixture(ContractHost& contractHost) : GridWindow(contractHost) {
    FieldInfo keyField = MemoryField("id", DataType::Integer);
    keyField.isKey = true;
    data.Answer("rows", {keyField, MemoryField("name"), MemoryField("flag", DataType::Boolean)},
                {{Number(1), std::string("one"), true},
                 {Number(2), Value(), Value()},
                 {Number(3), std::string(), false}});
    recordset = Open("rows", LockType::Optimistic);
    Allow(true);
    grid.SetDataSource(recordset);
    grid.SetFocus();
    host.Settle();
    grid.Change = record.Noting("changed");
    grid.RowColChange = record.Noting("moved");
    grid.LeaveRow = [this](bool& stay) { Leave(stay); };
  }
  ~EditingFixture() { grid.LeaveRow = nullptr; }
  EditingFixture(const EditingFixture&) = delete;
  EditingFixture& operator=(const EditingFixture&) = delete;

  void Allow(bool allow) {
    grid.SetAllowUpdate(allow);
    grid.SetAllowDelete(allow);
    grid.SetAllowAddNew(allow);
  }
  void Leave(bool& stay) {
    record.Add("leaves");
    stay = stays;
    if (stays) return;
    Update(*recordset);
    grid.Refresh();
  }
  void Click(std::int64_t position, int column) {
    host.ClickGridCell(window, gridName, position, column);
    static_cast<void>(record.Take());
  }
  void Type(std::string_view text) { host.Type(window, gridName, text); }
  void Press(int keyCode, int shift = shiftState::none) { host.PressKey(window, keyCode, shift); }
  [[nodiscard]] std::string Shown(std::int64_t position, int column) const {
    return grid.ShownText(position, column);
  }
  void GoToNewRow() {
    Click(2, name);
    Press(key::down);
    static_cast<void>(record.Take());
  }

  bool stays = false;
};

void TypingReplacesTheTextOfTheCell(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  test.Type("ab");
  EXPECT_EQ(test.record.Take(), (Seen{"changed", "changed"}));
  EXPECT_TRUE(test.grid.EditActive());
  EXPECT_TRUE(test.grid.ChangePending());
  EXPECT_TRUE(test.grid.HasFocus());
  EXPECT_EQ(test.grid.CellText(), "ab");
  EXPECT_EQ(test.recordset->Editing(), EditMode::None) << "it lies in the cell only";
  test.grid.EndEdit();
  EXPECT_FALSE(test.grid.EditActive());
  EXPECT_TRUE(test.grid.HasFocus());
  EXPECT_EQ(test.Shown(0, name), "ab");
  EXPECT_EQ(test.recordset->Editing(), EditMode::InProgress);
}

void WhatMayNotBeEditedIsNot(ContractHost& host) {
  EditingFixture test(host);
  test.Allow(false);
  test.Click(0, name);
  test.Type("x");
  test.Press(key::del);
  test.grid.EditCell();
  EXPECT_FALSE(test.grid.EditActive());
  EXPECT_FALSE(test.grid.CanEditCell());
  test.Press(key::down);
  test.Press(key::down);
  test.Press(key::down);
  EXPECT_FALSE(test.grid.OnNewRow());
  test.Allow(true);
  test.grid.SetColumnLocked(name, true);
  test.Click(0, name);
  test.Type("x");
  EXPECT_FALSE(test.grid.EditActive());
  EXPECT_EQ(test.record.Take(), Seen{});
}

/// In whatever way the user begins.
void BytesThatAreNoTextAreNotEditedInPlace(ContractHost& host) {
  EditingFixture test(host);
  const std::string broken = "caf\xe9";
  test.Click(0, name);
  test.grid.SetCellText(broken);
  static_cast<void>(test.record.Take());
  const std::vector<std::function<void()>> beginnings{
      [&] { test.Type("x"); }, [&] { test.Press(key::del); }, [&] { test.Press(key::back); },
      [&] { test.grid.EditCell(); }};
  for (const auto& begin : beginnings) {
    host.OnMessage("This text holds bytes that are no valid UTF-8, and editing it in its cell "
                   "would lose them. Press F4 to edit it in a window, which keeps them.",
                   MessageResult::Ok);
    begin();
    EXPECT_FALSE(test.grid.EditActive());
  }
  test.grid.SelectCellText();
  EXPECT_FALSE(test.grid.EditActive()) << "it is selected to be copied";
  EXPECT_EQ(test.record.Take(), Seen{});
  EXPECT_EQ(test.grid.CellText(), broken);
  EXPECT_TRUE(test.grid.CanEditCell()) << "by other ways";
  test.grid.SetCellText("caf\u00e9");
  test.Type("tea");
  EXPECT_EQ(test.grid.CellText(), "tea");
}

/// The catalog in use is another than that of the rows.
void RecordsThatCannotBeChangedNowSaySoAtTheFirstKeystroke(ContractHost& host) {
  EditingFixture test(host);
  test.data.catalogs = {"elsewhere"};
  UseCatalog(*test.connection, "elsewhere");
  test.Click(0, name);
  host.OnMessage(
      "These records were read while no database was in use, and 'elsewhere' is in use now: "
      "run the query again. Nothing was changed.",
      MessageResult::Ok);
  test.Type("x");
  EXPECT_FALSE(test.grid.EditActive());
  EXPECT_EQ(test.Shown(0, name), "one");
  EXPECT_EQ(test.record.Take(), Seen{});
}

void ATextThatIsNoValueStaysInTheCell(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, id);
  test.Type("abc");
  EXPECT_EQ(ErrorNumberOf([&] { test.grid.EndEdit(); }), errorNumber::typeMismatch);
  EXPECT_TRUE(test.grid.EditActive());
  EXPECT_EQ(test.grid.CellText(), "abc");
  test.host.OnMessage("This is no value of the type of the field 'id'.", MessageResult::Ok);
  test.Press(key::tab);
  EXPECT_TRUE(test.grid.EditActive());
  EXPECT_EQ(test.grid.CurrentColumn(), id);
  test.grid.DropEdit();
  EXPECT_EQ(test.grid.CellText(), "1");
  EXPECT_FALSE(test.grid.ChangePending());
}

void TabAndEnterEndTheCellAndGoOn(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  test.Type("a");
  test.Press(key::tab);
  EXPECT_EQ(test.grid.CurrentColumn(), flag);
  EXPECT_EQ(test.Shown(0, name), "a");
  test.Click(0, name);
  test.Type("b");
  test.Press(key::enter);
  EXPECT_EQ(test.grid.CurrentColumn(), flag);
  EXPECT_EQ(test.Shown(0, name), "b");
  test.Press(key::enter);
  EXPECT_EQ(test.recordset->CurrentBookmark(), 2) << "and from row to row";
}

void LeavingARowWithAChangeAsks(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  test.Type("a");
  test.stays = true;
  static_cast<void>(test.record.Take());
  test.Press(key::down);
  EXPECT_EQ(test.record.Take(), Seen{"leaves"});
  EXPECT_EQ(test.recordset->CurrentBookmark(), 1);
  EXPECT_EQ(test.recordset->Editing(), EditMode::InProgress);
  host.ClickGridCell(test.window, gridName, 2, name);
  EXPECT_EQ(test.record.Take(), Seen{"leaves"}) << "by the mouse too";
  EXPECT_EQ(test.recordset->CurrentBookmark(), 1);
  test.stays = false;
  test.Press(key::down);
  EXPECT_EQ(test.record.Take(), (Seen{"leaves", "moved"}));
  EXPECT_EQ(test.recordset->CurrentBookmark(), 2);
  EXPECT_EQ(test.recordset->Editing(), EditMode::None);
  test.Press(key::down);
  EXPECT_EQ(test.record.Take(), Seen{"moved"}) << "nothing is pending";
}

void TheNewRowTakesARecord(ContractHost& host) {
  EditingFixture test(host);
  test.GoToNewRow();
  EXPECT_TRUE(test.grid.OnNewRow());
  EXPECT_EQ(test.Shown(3, name), "");
  EXPECT_EQ(test.grid.CellText(), "");
  EXPECT_EQ(test.recordset->Editing(), EditMode::None) << "nothing is begun by going there";
  test.Type("new");
  test.grid.EndEdit();
  EXPECT_EQ(test.recordset->Editing(), EditMode::Add);
  EXPECT_TRUE(test.grid.OnNewRow());
  EXPECT_EQ(test.Shown(3, name), "new");
  EXPECT_EQ(test.Shown(3, id), "NULL");
  EXPECT_EQ(test.Shown(4, name), "") << "the next one";
  test.Press(key::down);
  EXPECT_EQ(test.recordset->RecordCount(), 4);
  EXPECT_TRUE(test.grid.OnNewRow());
  EXPECT_EQ(test.Shown(4, name), "");
  test.Press(key::up);
  EXPECT_FALSE(test.grid.OnNewRow());
  EXPECT_EQ(test.grid.CellText(), "new");
}

void ANewRecordThatIsGivenUpLeavesTheEmptyRow(ContractHost& host) {
  EditingFixture test(host);
  test.GoToNewRow();
  test.Type("new");
  test.grid.EndEdit();
  test.recordset->CancelUpdate();
  test.grid.Refresh();
  EXPECT_TRUE(test.grid.OnNewRow());
  EXPECT_EQ(test.grid.CellText(), "");
  EXPECT_EQ(test.recordset->RecordCount(), 3);
}

void ANewRecordThatIsWrittenIsCurrent(ContractHost& host) {
  EditingFixture test(host);
  test.GoToNewRow();
  test.Type("new");
  test.grid.EndEdit();
  Update(*test.recordset);
  test.grid.Refresh();
  EXPECT_FALSE(test.grid.OnNewRow());
  EXPECT_EQ(test.grid.CellText(), "new");
  EXPECT_EQ(test.grid.CurrentColumn(), name);
}

void ValuesAreSetByCode(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  test.Type("x");
  static_cast<void>(test.record.Take());
  test.grid.SetCellText("");
  EXPECT_EQ(test.record.Take(), Seen{"changed"});
  EXPECT_FALSE(test.grid.EditActive()) << "in place of what was typed";
  EXPECT_EQ(test.Shown(0, name), "");
  test.grid.SetCellValue(Value());
  EXPECT_EQ(test.Shown(0, name), "NULL");
  test.Click(0, id);
  test.grid.SetCellText("");
  EXPECT_EQ(test.Shown(0, id), "NULL");
  EXPECT_EQ(ErrorNumberOf([&] { test.grid.SetCellText("abc"); }), errorNumber::typeMismatch);
  test.grid.SetColumnLocked(id, true);
  test.grid.SetCellText("7");
  EXPECT_EQ(test.Shown(0, id), "7") << "in locked columns too";
}

void EditingBeginsAtTheEndOrWithEverythingSelected(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  test.grid.EditCell();
  EXPECT_EQ(test.record.Take(), Seen{}) << "opening changes nothing";
  test.Type("!");
  EXPECT_EQ(test.grid.CellText(), "one!");
  test.grid.SelectCellText();
  test.Type("z");
  EXPECT_EQ(test.grid.CellText(), "z");
}

void DeleteAndBackspaceEmptyTheCell(ContractHost& host) {
  EditingFixture test(host);
  for (const int keyCode : {key::del, key::back}) {
    test.Click(0, name);
    test.Press(keyCode);
    EXPECT_EQ(test.record.Take(), Seen{"changed"});
    EXPECT_TRUE(test.grid.EditActive());
    EXPECT_EQ(test.grid.CellText(), "");
    test.grid.DropEdit();
  }
}

void AKeyIsNotEmptiedByOneKey(ContractHost& host) {
  EditingFixture test(host);
  for (const int keyCode : {key::del, key::back}) {
    test.Click(0, id);
    test.Press(keyCode);
    EXPECT_FALSE(test.grid.EditActive());
    EXPECT_EQ(test.record.Take(), Seen{});
  }
  EXPECT_TRUE(test.grid.CanEditCell());
  EXPECT_FALSE(test.grid.CanEmptyCell());
  test.Type("7");
  test.Press(key::back);
  EXPECT_EQ(test.grid.CellText(), "") << "what was typed";
  test.grid.DropEdit();
  test.GoToNewRow();
  test.Click(3, id);
  EXPECT_TRUE(test.grid.CanEmptyCell()) << "a record that is not there yet";
}

void ShiftAndSpaceTypeNothingIntoTheCell(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  for (const int shift : {shiftState::shift, shiftState::ctrl}) test.Press(key::space, shift);
  EXPECT_FALSE(test.grid.EditActive());
  test.Type("a");
  test.Press(key::space, shiftState::shift);
  test.Type("b");
  EXPECT_EQ(test.grid.CellText(), "a b") << "inside a text it is a blank";
  test.grid.DropEdit();
  test.GoToNewRow();
  test.Press(key::space, shiftState::shift);
  EXPECT_TRUE(test.grid.SelBookmarks().empty()) << "no record";
  EXPECT_FALSE(test.grid.EditActive());
}

void ACellThatIsOnlyOpenedKeepsItsNull(ContractHost& host) {
  EditingFixture test(host);
  test.Click(1, name);
  test.grid.EditCell();
  test.grid.EndEdit();
  EXPECT_EQ(test.Shown(1, name), "NULL");
  EXPECT_EQ(test.recordset->Editing(), EditMode::None);
}

void TheSpaceBarTurnsBooleansOver(ContractHost& host) {
  EditingFixture test(host);
  test.Click(1, flag);
  test.Press(key::space);
  EXPECT_EQ(test.Shown(1, flag), "True") << "from null";
  EXPECT_EQ(test.record.Take(), Seen{"changed"});
  test.Press(key::space);
  EXPECT_EQ(test.Shown(1, flag), "False");
  EXPECT_FALSE(test.grid.EditActive());
}

void DeletedRowsAreForgotten(ContractHost& host) {
  EditingFixture test(host);
  test.Click(0, name);
  const std::vector<Bookmark> rows{test.recordset->BookmarkAt(1), test.recordset->BookmarkAt(2)};
  test.host.SelectGridRows(test.window, gridName, {1, 2});
  test.recordset->MoveTo(rows[1]);
  Delete(*test.recordset);
  test.grid.Refresh();
  EXPECT_EQ(test.grid.SelBookmarks(), std::vector<Bookmark>{rows[0]});
  EXPECT_EQ(test.recordset->CurrentBookmark(), rows[0]) << "the last one is gone";
  EXPECT_FALSE(test.grid.OnNewRow());
  for (int left = 2; left > 0; --left) {
    test.recordset->MoveFirst();
    Delete(*test.recordset);
  }
  test.grid.Refresh();
  EXPECT_TRUE(test.grid.OnNewRow());
}

void TheCellStandsInsideTheGrid(ContractHost& host) {
  EditingFixture test(host);
  test.Click(1, name);
  const Rect cell = test.grid.CellBounds();
  EXPECT_GT(cell.width, 0);
  EXPECT_GT(cell.height, 0);
  EXPECT_GT(cell.left, 0);
  test.Click(0, name);
  EXPECT_LT(test.grid.CellBounds().top, cell.top);
  test.grid.SetDataSource(nullptr);
  EXPECT_EQ(test.grid.CellBounds(), Rect());
}

}  // namespace

std::vector<ContractCase> GridEditingContract() {
  return {{"TypingReplacesTheTextOfTheCell", &TypingReplacesTheTextOfTheCell},
          {"WhatMayNotBeEditedIsNot", &WhatMayNotBeEditedIsNot},
          {"BytesThatAreNoTextAreNotEditedInPlace", &BytesThatAreNoTextAreNotEditedInPlace},
          {"RecordsThatCannotBeChangedNowSaySoAtTheFirstKeystroke",
           &RecordsThatCannotBeChangedNowSaySoAtTheFirstKeystroke},
          {"ATextThatIsNoValueStaysInTheCell", &ATextThatIsNoValueStaysInTheCell},
          {"TabAndEnterEndTheCellAndGoOn", &TabAndEnterEndTheCellAndGoOn},
          {"LeavingARowWithAChangeAsks", &LeavingARowWithAChangeAsks},
          {"TheNewRowTakesARecord", &TheNewRowTakesARecord},
          {"ANewRecordThatIsGivenUpLeavesTheEmptyRow", &ANewRecordThatIsGivenUpLeavesTheEmptyRow},
          {"ANewRecordThatIsWrittenIsCurrent", &ANewRecordThatIsWrittenIsCurrent},
          {"ValuesAreSetByCode", &ValuesAreSetByCode},
          {"EditingBeginsAtTheEndOrWithEverythingSelected",
           &EditingBeginsAtTheEndOrWithEverythingSelected},
          {"DeleteAndBackspaceEmptyTheCell", &DeleteAndBackspaceEmptyTheCell},
          {"AKeyIsNotEmptiedByOneKey", &AKeyIsNotEmptiedByOneKey},
          {"ShiftAndSpaceTypeNothingIntoTheCell", &ShiftAndSpaceTypeNothingIntoTheCell},
          {"ACellThatIsOnlyOpenedKeepsItsNull", &ACellThatIsOnlyOpenedKeepsItsNull},
          {"TheSpaceBarTurnsBooleansOver", &TheSpaceBarTurnsBooleansOver},
          {"DeletedRowsAreForgotten", &DeletedRowsAreForgotten},
          {"TheCellStandsInsideTheGrid", &TheCellStandsInsideTheGrid}};
}

}  // namespace tessel::test
