// The current record as a form beside the rows.

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

class RecordPaneTest : public test::EditingFixture {
 protected:
  RecordPaneTest() { EXPECT_TRUE(Connect()); }

  void OpenPane() { Press('R', shiftState::ctrl | shiftState::shift); }
  [[nodiscard]] test::HeadlessGrid& Fields() {
    return dynamic_cast<test::HeadlessGrid&>(W().Find<DataGrid>("RecordFields"));
  }
  void ClickField(int field) { W().ClickGridCell("RecordFields", field, 1); }
  [[nodiscard]] std::string Shown(int field) { return Fields().ShownText(field, 1); }
  [[nodiscard]] std::string Row() { return W().Find<Label>("lblRecord").Caption(); }
  /// The values of the record, as they are shown.
  [[nodiscard]] std::vector<std::string> Values() {
    std::vector<std::string> values;
    for (std::int64_t i = 0; i < Fields().DataSource()->RecordCount(); ++i)
      values.push_back(Shown(static_cast<int>(i)));
    return values;
  }
};

using Texts = std::vector<std::string>;

TEST_F(RecordPaneTest, TheFieldsOfTheRecordStandBelowEachOther) {
  RunRows();
  OpenPane();
  EXPECT_TRUE(Shows("fraRecord"));
  EXPECT_EQ(W().FocusName(), "RecordFields");
  EXPECT_EQ(Fields().ShownText(0, 0), "id");
  EXPECT_EQ(Fields().ShownText(4, 0), "picture_FileName");
  EXPECT_EQ(Values(), (Texts{"1", "one", "True", "[2048]", "one.png"}));
  EXPECT_EQ(Row(), "row 1 of 3");
  EXPECT_EQ(Fields().CurrentColumn(), 1) << "values are typed, not names";
  Press(key::escape);
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RecordPaneTest, ItBeginsAtTheFieldOfTheCurrentCell) {
  RunRows();
  ClickCell(1, 3);
  OpenPane();
  EXPECT_EQ(Fields().DataSource()->CurrentBookmark(), 4);
  EXPECT_EQ(Fields().CurrentColumn(), 1);
}

TEST_F(RecordPaneTest, TabGoesFromValueToValueAndBackToTheRecords) {
  RunRows();
  OpenPane();
  Press(key::tab);
  EXPECT_EQ(Fields().DataSource()->CurrentBookmark(), 2);
  EXPECT_EQ(Fields().CurrentColumn(), 1) << "the names are passed by";
  W().ClickGridCell("RecordFields", 3, 0);
  EXPECT_EQ(Fields().DataSource()->CurrentBookmark(), 4);
  EXPECT_EQ(Fields().CurrentColumn(), 1);
  for (int field = 3; field > 0; --field) Press(key::tab, shiftState::shift);
  EXPECT_EQ(Fields().DataSource()->CurrentBookmark(), 1);
  EXPECT_EQ(W().FocusName(), "RecordFields");
  Press(key::tab, shiftState::shift);
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RecordPaneTest, ItGoesWhereTheGridGoesAndNullsLookAsThere) {
  RunRows();
  OpenPane();
  ClickCell(1, 0);
  EXPECT_EQ(Values(), (Texts{"2", "NULL", "NULL", "NULL", "NULL"}));
  EXPECT_EQ(Row(), "row 2 of 3");
  ClickCell(2, 0);
  EXPECT_EQ(Values(), (Texts{"3", "", "False", "[0]", "NULL"}));
}

TEST_F(RecordPaneTest, TheGridGoesAlongWithNextAndPrevious) {
  RunRows();
  OpenPane();
  ClickField(name);
  W().Click("cmdRecordNext");
  EXPECT_EQ(Row(), "row 2 of 3");
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 2);
  Press(key::pageDown, shiftState::alt);
  Press(key::pageDown, shiftState::alt);
  EXPECT_EQ(Row(), "row 3 of 3") << "there is none behind it";
  EXPECT_EQ(Fields().DataSource()->CurrentBookmark(), name + 1) << "the field stays";
  Press(key::pageUp, shiftState::alt);
  W().Click("cmdRecordPrevious");
  W().Click("cmdRecordPrevious");
  EXPECT_EQ(Row(), "row 1 of 3");
}

TEST_F(RecordPaneTest, LockedRecordsAreNotEdited) {
  RunRows();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "x");
  Press(key::f2);
  Press('0', shiftState::ctrl);
  EXPECT_FALSE(Fields().EditActive());
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None);
}

TEST_F(RecordPaneTest, AFieldIsEditedAsACellOfTheGridIs) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "changed");
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Stored(0, name), Text("one")) << "nothing is written yet";
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("changed"));
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(G().ShownText(0, name), "changed");
  EXPECT_EQ(Shown(name), "changed");
}

TEST_F(RecordPaneTest, WhoAcceptsOrRejectsInAFieldGoesOnInIt) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "changed");
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(Fields().HasFocus());
  W().Type("RecordFields", "again");
  Press('R', shiftState::ctrl);
  EXPECT_TRUE(Fields().HasFocus());
  EXPECT_EQ(Shown(name), "changed");
}

TEST_F(RecordPaneTest, GoingOnInTheFieldsKeepsTheChangeAndGoingToAnotherRecordWritesIt) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "changed");
  Press(key::enter);
  EXPECT_EQ(G().ShownText(0, name), "changed");
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::InProgress);
  ClickField(4);
  W().Type("RecordFields", "f");
  Press(key::pageDown, shiftState::alt);
  EXPECT_EQ(Stored(0, name), Text("changed"));
  EXPECT_EQ(Stored(0, 4), Text("f"));
  EXPECT_EQ(Row(), "row 2 of 3");
}

TEST_F(RecordPaneTest, WhatIsTypedHereIsTheRecordsBeforeTheGridGoesOn) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "changed");
  ClickCell(2, name);
  EXPECT_EQ(Stored(0, name), Text("changed"));
  EXPECT_EQ(Stored(2, name), Text(""));
  EXPECT_FALSE(Fields().EditActive());
}

TEST_F(RecordPaneTest, WhatIsNoValueOfTheFieldIsSaidAndStaysToBeTypedAnew) {
  RunUnlocked();
  OpenPane();
  ClickField(active);
  W().Type("RecordFields", "perhaps");
  ExpectNotice("This is no value of the type of the field 'active'.");
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(Fields().EditActive());
  Press(key::escape);
  EXPECT_FALSE(Fields().EditActive());
  EXPECT_EQ(Shown(active), "True");
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(RecordPaneTest, EscTakesBackAndThenLeaves) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "x");
  Press(key::enter);
  Press(key::escape);
  EXPECT_EQ(Shown(name), "one");
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None);
  Press(key::escape);
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(RecordPaneTest, KeysDoInAFieldWhatTheyDoInACell) {
  RunUnlocked();
  OpenPane();
  ClickField(active);
  Press(key::space);
  EXPECT_EQ(Shown(active), "False");
  ClickField(name);
  Press('0', shiftState::ctrl);
  EXPECT_EQ(Shown(name), "NULL");
  ClickField(4);
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    EXPECT_TRUE(w.Caption().ends_with("picture_FileName, row 1 of 3")) << w.Caption();
    w.Find<TextControl>("txtText").SetText("from a window");
    w.Click("cmdOK");
  });
  Press(key::f4);
  EXPECT_EQ(Shown(4), "from a window");
  ClickField(picture);
  desktop.OnModal("frmValue", [](HeadlessWindow& w) { w.PressKey(key::escape); });
  Press(key::f3);
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Value());
  EXPECT_EQ(Stored(0, active), Value(false));
  EXPECT_EQ(Stored(0, 4), Text("from a window"));
}

TEST_F(RecordPaneTest, BytesAreNotTypedHere) {
  RunUnlocked();
  OpenPane();
  ClickField(picture);
  ExpectNotice("The bytes of 'picture' are loaded from a file, by the menu of its cell.");
  W().Type("RecordFields", "x");
  EXPECT_EQ(Shown(picture), "[2048]");
}

TEST_F(RecordPaneTest, AnotherQueryAsksForTheChangeThatIsTypedHere) {
  RunUnlocked();
  OpenPane();
  ClickField(name);
  W().Type("RecordFields", "changed");
  data.AnswerNothing("other");
  desktop.ExpectMessage("Save the change to this record?", MessageResult::Cancel);
  EXPECT_FALSE(Run("other"));
  EXPECT_TRUE(Fields().EditActive());
  desktop.ExpectMessage("Save the change to this record?", MessageResult::Yes);
  ASSERT_TRUE(Run("other"));
  EXPECT_EQ(Stored(0, name), Text("changed"));
  EXPECT_EQ(Fields().DataSource(), nullptr);
}

TEST_F(RecordPaneTest, ANewRecordIsBegunHereToo) {
  RunUnlocked();
  OpenPane();
  G().GoToNewRow();
  EXPECT_EQ(Row(), "new row");
  EXPECT_EQ(Values(), (Texts{"NULL", "NULL", "NULL", "NULL", "NULL"}));
  ClickField(name);
  W().Type("RecordFields", "fresh");
  Press(key::enter);
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::Add);
  EXPECT_EQ(Shown(name), "fresh");
  ClickCell(0, 0);
  EXPECT_EQ(Stored(3, name), Text("fresh"));
}

TEST_F(RecordPaneTest, HundredsOfFieldsAreReadOnlyWhereTheyAreLookedAt) {
  std::vector<FieldInfo> fields;
  std::vector<Value> values;
  for (int i = 0; i < 800; ++i) {
    fields.push_back(MemoryField("f" + std::to_string(i)));
    values.push_back(std::string("v") + std::to_string(i));
  }
  data.Answer("wide", fields, {values, values});
  ASSERT_TRUE(Run("wide"));
  OpenPane();
  EXPECT_EQ(Fields().DataSource()->RecordCount(), 800);
  EXPECT_EQ(Shown(799), "v799");
  W().Click("cmdRecordNext");
  EXPECT_EQ(Shown(799), "v799");
}

TEST_F(RecordPaneTest, ItShowsTheRowsInTheOrderTheyHave) {
  RunRows();
  OpenPane();
  Grid().DataSource()->SetSort("id DESC");
  Grid().Refresh();
  EXPECT_EQ(Row(), "row 3 of 3");
  W().Click("cmdRecordPrevious");
  EXPECT_EQ(Shown(id), "2");
}

}  // namespace
}  // namespace tessel
