#include <gmock/gmock.h>

#include "tests/logic/app/FrameFixture.h"

namespace tessel {
namespace {

/// The window that lists what came of the statements of one run.
class StatementsWindowTest : public test::FrameFixture {
 protected:
  void Run(const std::string& name) {
    data.ServerOf(name)
        .Answer(sql, MemoryFields({"a"}), {{Text("first")}})
        .Then(MemoryResult::Count(2))
        .Then(MemoryResult::Rows(MemoryFields({"b"}), {{Text("second")}, {Text("third")}}));
    Start();
    Connect(name);
    Select(sql);
    mdi().ChooseMenu("mnuDBExecute");
  }
  static Value Text(const char* text) { return std::string(text); }
  Window& Records() { return desktop.WindowOf("frmRecords"); }
  Window& List() { return desktop.WindowOf("frmRows"); }
  void OpenList() { Records().PressKey('S', shiftState::ctrl | shiftState::alt); }
  void GoToRow(std::int64_t row) {
    List().ClickGridCell("DataGrid", row, 0);
    List().Find<DataGrid>("DataGrid").SetFocus();
    List().PressKey(key::enter);
  }
  std::string FirstCell() {
    return ToText(Records().Find<DataGrid>("DataGrid").DataSource()->ValueAt(0, 0));
  }

  const std::string sql = "select a; update t; select b";
};

TEST_F(StatementsWindowTest, ItListsTheStatementsOfItsConnection) {
  Run("A");
  OpenList();
  EXPECT_EQ(List().Caption(), "Statements of A caption");
  EXPECT_EQ(List().Find<Label>("lblStatus").Caption(), "3 statements: 3 done");
  EXPECT_EQ(List().Find<DataGrid>("DataGrid").DataSource()->RecordCount(), 3);
  OpenList();
  EXPECT_EQ(desktop.WindowsOf("frmRows").size(), 1U) << "one window for all";
}

TEST_F(StatementsWindowTest, EnterGoesToTheRowsOfAStatement) {
  Run("A");
  OpenList();
  GoToRow(2);
  EXPECT_EQ(FirstCell(), "second");
  EXPECT_TRUE(Records().Active());
  EXPECT_EQ(Records().Find<ComboBox>("cboResult").ListIndex(), 1);
  GoToRow(1);
  EXPECT_EQ(FirstCell(), "second") << "the update has no rows";
  GoToRow(0);
  EXPECT_EQ(FirstCell(), "first");
}

TEST_F(StatementsWindowTest, ItGoesWithTheRowsItTellsOf) {
  Run("A");
  OpenList();
  data.ServerOf("A").Answer("select", MemoryFields({"a"}), {{Text("new")}});
  Select("select");
  mdi().ChooseMenu("mnuDBExecute");
  EXPECT_TRUE(desktop.WindowsOf("frmRows").empty()) << "it would hide what came of the new run";
  Select(sql);
  mdi().ChooseMenu("mnuDBExecute");
  OpenList();
  Records().Unload();
  EXPECT_TRUE(desktop.WindowsOf("frmRows").empty());
}

}  // namespace
}  // namespace tessel
