// The menus of a records window that stand for its keys, and keys that have a second one.

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using test::EditingFixture;

class KeyMenuTest : public EditingFixture {
 protected:
  KeyMenuTest() { Connect(); }
  /// Whether the entry can be chosen when its menu opens.
  bool Usable(const char* title, const char* entry) {
    W().Menu(title).Choose();
    return W().Menu(entry).Enabled();
  }
};

TEST_F(KeyMenuTest, EntriesCanBeChosenWhileTheirControlsCanBeUsed) {
  EXPECT_FALSE(Usable("menuQuery", "mnuQueryAgain"));
  EXPECT_FALSE(Usable("menuQuery", "mnuQueryForwardTags"));
  EXPECT_FALSE(Usable("menuConnection", "mnuCnTakesPart"));
  EXPECT_TRUE(Usable("menuConnection", "mnuCnReconnect"));
  RunRows();
  EXPECT_TRUE(Usable("menuQuery", "mnuQueryAgain"));
  EXPECT_FALSE(Usable("menuQuery", "mnuQueryBack"));
  RunRows("select 2");
  EXPECT_TRUE(Usable("menuQuery", "mnuQueryBack"));
  records->OfferTakingPart(true);
  EXPECT_TRUE(Usable("menuConnection", "mnuCnTakesPart"));
}

TEST_F(KeyMenuTest, TheMenusDoWhatTheKeysDo) {
  RunRows();
  RunRows("select 2");
  W().ChooseMenu("mnuQueryBack");
  EXPECT_TRUE(W().Find<Button>("cmdHistoryForward").Enabled());
  W().ChooseMenu("mnuQueryForward");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryForward").Enabled());
  desktop.OnModal("frmText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<RichTextBox>("txtText").Text(), "select 2");
    w.CloseByControlBox();
  });
  W().ChooseMenu("mnuQueryProperties");
  W().ChooseMenu("mnuCnLock");
  EXPECT_FALSE(W().Find<CheckBox>("chkLock").Value());
  W().Menu("menuConnection").Choose();
  EXPECT_FALSE(W().Menu("mnuCnLock").Checked());
}

TEST_F(KeyMenuTest, TakingPartHasASecondKey) {
  records->OfferTakingPart(true);
  Press('T', shiftState::ctrl | shiftState::shift);
  EXPECT_FALSE(records->TakesPart());
  W().ChooseMenu("mnuCnTakesPart");
  EXPECT_TRUE(records->TakesPart());
  Press('T', shiftState::ctrl | shiftState::alt);
  EXPECT_FALSE(records->TakesPart());
}

TEST_F(KeyMenuTest, ForwardWithTagsHasASecondKey) {
  RunThreeRows("first");
  ClickCell(0, id);
  RunThreeRows("second <%=id%>", "second 1");
  W().Click("cmdHistoryBack");
  ClickCell(2, id);
  data.Answer("second 3", {MemoryField("n")}, {});
  Press(key::end, shiftState::alt);
  EXPECT_EQ(data.ExecutedSql().back(), "second 3");
  W().Click("cmdHistoryBack");
  W().ChooseMenu("mnuQueryForwardTags");
  EXPECT_EQ(data.ExecutedSql().back(), "second 1");
}

TEST_F(KeyMenuTest, ARowIsSelectedByTheMenuAndTakenBack) {
  RunUnlocked();
  ClickCell(1, name);
  W().ChooseMenu("mnuRowsSelect");
  EXPECT_EQ(G().SelBookmarks().size(), 1U);
  W().ChooseMenu("mnuRowsSelect");
  EXPECT_TRUE(G().SelBookmarks().empty());
}

TEST_F(KeyMenuTest, TheMenuDeletesTheSelectedRowsOrElseTheCurrentOne) {
  RunUnlocked();
  ClickCell(1, name);
  desktop.ExpectMessage("Delete 1 record(s)?", MessageResult::No);
  W().ChooseMenu("mnuRowsDelete");
  EXPECT_EQ(table->size(), 3U);
  desktop.ExpectMessage("Delete 1 record(s)?", MessageResult::Yes);
  W().ChooseMenu("mnuRowsDelete");
  ASSERT_EQ(table->size(), 2U);
  EXPECT_EQ(Stored(1, id), Int(3));
}

TEST_F(KeyMenuTest, RowsThatCannotChangeAreNotDeleted) {
  RunRows();
  EXPECT_FALSE(Usable("menuRecords", "mnuRowsDelete"));
}

TEST_F(KeyMenuTest, TheWarningTellsItsDetailsByKeyAndMenu) {
  RunUnlocked();
  Press('W', shiftState::ctrl | shiftState::alt);
  EXPECT_TRUE(desktop.Messages().empty()) << "there is no warning";
  EXPECT_FALSE(Usable("menuRecords", "mnuRowsWarning"));
  data.Answer("keyless", {MemoryField("a")}, {{Text("y")}}).UniqueRows(false);
  ASSERT_TRUE(Run("keyless"));
  desktop.ExpectMessage(warningDetails);
  Press('W', shiftState::ctrl | shiftState::alt);
  desktop.ExpectMessage(warningDetails);
  W().ChooseMenu("mnuRowsWarning");
}

TEST_F(KeyMenuTest, EscLeavesTheBoxesAndButtonsForTheRows) {
  RunRows();
  for (const char* control : {"chkLock", "cmdRequery", "cmdReconnect", "txtStatus"}) {
    W().Find<Control>(control).SetFocus();
    Press(key::escape);
    EXPECT_EQ(W().FocusName(), "DataGrid") << control;
  }
}

TEST_F(KeyMenuTest, TheMenuKeyOpensTheListBehindAHistoryButton) {
  RunRows();
  RunRows("select 2");
  W().Find<Control>("cmdHistoryBack").SetFocus();
  desktop.ExpectPopup("menuHistory", "");
  Press(key::contextMenu);
}

TEST_F(KeyMenuTest, TheFramesKeysComeFirst) {
  host.frameKey = key::tab;
  RunRows();
  ClickCell(0, id);
  Press(key::tab, shiftState::ctrl);
  EXPECT_EQ(G().CurrentColumn(), id);
  EXPECT_EQ(host.wired, &W());
}

}  // namespace
}  // namespace tessel
