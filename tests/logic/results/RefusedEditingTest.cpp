#include "data/providers/ConnectionMode.h"
#include "tests/logic/results/EditingFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel {
namespace {

using test::HeadlessWindow;

/// Records that may be edited, and what the user is told where they cannot be after all.
class OtherDatabaseTest : public test::EditingFixture {
 protected:
  static constexpr const char* refusal =
      "These records come from the database 'prod', and 'test' is in use now: choose 'prod' again, "
      "or run the query again. Nothing was changed.";

  OtherDatabaseTest() {
    data.defaultDatabase = "prod";
    data.catalogs = {"prod", "test"};
    EXPECT_TRUE(Connect());
  }
  void Use(const char* catalog) { test::UseCatalog(*data.Connections().front(), catalog); }
};

TEST_F(OtherDatabaseTest, RecordsAreReadAndRefuseTheFirstKeystroke) {
  RunUnlocked();
  Use("test");
  ClickCell(0, name);
  EXPECT_EQ(Grid().ShownText(0, name), "one");
  for (const int keyCode : {key::f2, key::f4, key::back, static_cast<int>('X')}) {
    ExpectNotice(refusal);
    Press(keyCode);
    EXPECT_FALSE(Grid().EditActive()) << keyCode;
  }
  Use("prod");
  Type("mine");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("mine"));
}

/// Records that come over a connection which its string makes read-only.
class ReadOnlyConnectionTest : public test::EditingFixture {
 protected:
  static constexpr const char* refusal = "The connection is read-only: Mode=ReadOnly.";

  ReadOnlyConnectionTest() {
    TellMode(data.properties, ConnectionMode::ReadOnly, true);
    EXPECT_TRUE(Connect());
  }
};

TEST_F(ReadOnlyConnectionTest, RecordsTellWhyTheyAreNotChanged) {
  RunUnlocked();
  ClickCell(0, name);
  EXPECT_EQ(Grid().ShownText(0, name), "one");
  for (const int keyCode : {key::f2, key::f4, key::back, static_cast<int>('X')}) {
    ExpectNotice(refusal);
    Press(keyCode);
    EXPECT_FALSE(Grid().EditActive()) << keyCode;
  }
  ExpectNotice(refusal);
  Press('0', shiftState::ctrl);
  EXPECT_TRUE(NoButtonShows());
  EXPECT_FALSE(Grid().AllowDelete());
  EXPECT_FALSE(Grid().AllowAddNew());
  EXPECT_FALSE(W().Menu("mnuBLOBLoad").Enabled());
  EXPECT_EQ(Stored(0, name), Text("one"));
}

TEST_F(ReadOnlyConnectionTest, LockedRecordsStayQuiet) {
  RunRows();
  ClickCell(0, name);
  Press(key::f2);
  Type("z");
  EXPECT_FALSE(Grid().EditActive());
  EXPECT_FALSE(Grid().AllowUpdate());
}

TEST_F(OtherDatabaseTest, RecordsAreNotDeleted) {
  RunUnlocked();
  Use("test");
  ClickCell(0, name);
  G().SelectRows({0});
  desktop.ExpectMessage("Delete 1 record(s)?", MessageResult::Yes);
  ExpectNotice(refusal);
  Press(key::del);
  EXPECT_EQ(table->size(), 3U);
}

TEST_F(OtherDatabaseTest, AChangeThatWasBegunStaysAndIsToldAbout) {
  RunUnlocked();
  ClickCell(0, name);
  Type("mine");
  Use("test");
  ExpectNotice(refusal);
  Press('S', shiftState::ctrl);
  EXPECT_TRUE(ButtonsShow());
  EXPECT_EQ(Grid().CellText(), "mine");
  EXPECT_EQ(Stored(0, name), Text("one"));
  Use("prod");
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, name), Text("mine"));
  EXPECT_TRUE(NoButtonShows());
}

TEST_F(OtherDatabaseTest, AChangeOfTheRecordCanBeTakenBack) {
  RunUnlocked();
  ClickCell(0, name);
  Type("mine");
  Press(key::tab);
  Use("test");
  ExpectNotice(refusal);
  Press(key::down);
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), 1) << "the user stays";
  Press('R', shiftState::ctrl);
  EXPECT_EQ(Grid().ShownText(0, name), "one");
  EXPECT_TRUE(NoButtonShows());
}

/// A text with a byte that is no UTF-8.
class BrokenTextTest : public test::EditingFixture {
 protected:
  static constexpr const char* broken = "caf\xe9 | tea";

  BrokenTextTest() {
    EXPECT_TRUE(Connect());
    W().PressKey('L', shiftState::ctrl);
    table = data.Answer("menu", MemoryFields({"id", "drink"}), {{Text("1"), Text(broken)}}).rows;
    EXPECT_TRUE(Run("menu"));
    ClickCell(0, 1);
  }
};

TEST_F(BrokenTextTest, IsNotEditedInItsCell) {
  for (const int keyCode : {key::f2, key::back, static_cast<int>('X')}) {
    ExpectNotice(
        "This text holds bytes that are no valid UTF-8, and editing it in its cell would lose "
        "them. Press F4 to edit it in a window, which keeps them.");
    Press(keyCode);
    EXPECT_FALSE(Grid().EditActive()) << keyCode;
  }
  EXPECT_TRUE(NoButtonShows());
  EXPECT_EQ(Grid().DataSource()->Editing(), EditMode::None);
}

TEST_F(BrokenTextTest, KeepsItsBytesInTheWindow) {
  desktop.OnModal("frmText", [](HeadlessWindow& w) {
    auto& box = w.Find<RichTextBox>("txtText");
    EXPECT_EQ(box.Text(), broken);
    box.SetText(box.Text() + "!");
    w.Click("cmdOK");
  });
  Press(key::f4);
  Press('S', shiftState::ctrl);
  EXPECT_EQ(Stored(0, 1), Value(std::string(broken) + "!"));
}

}  // namespace
}  // namespace tessel
