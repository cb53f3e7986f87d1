// The controls above the status line in windows of every width.

#include "logic/results/TopRow.h"

#include <vector>

#include "contract/desktop/controls/ListControls.h"
#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

class TopRowTest : public test::RecordsFixture {
 protected:
  static constexpr int margin = 60;

  TopRowTest() {
    data.defaultDatabase = "shop";
    data.catalogs = {"shop", "test"};
    EXPECT_TRUE(Connect());
    data.AnswerNothing("begin").Leaves(UserTransaction::Open);
  }

  struct Placed {
    std::string name;
    Rect at;
  };
  /// Those that show or keep their room, in their order from left to right.
  [[nodiscard]] std::vector<Placed> Controls() {
    std::vector<Placed> placed;
    for (const char* name :
         {"cmdHistoryBack", "cmdHistoryForward", "cmdHistoryForwardTags", "cmdRequery",
          "cmdRequeryTags", "cmdProperties", "chkLock", "chkRecords", "cmdAccept", "cmdReject",
          "lblRow", "lblTransaction", "lblTimer", "cmdCnErrors", "cmdReconnect", "cboCatalog"}) {
      const bool keepsRoom =
          std::string_view(name) == "cmdAccept" || std::string_view(name) == "cmdReject";
      const auto& control = W().Find<Control>(name);
      if (control.Visible() || keepsRoom) placed.push_back({name, control.Bounds()});
    }
    return placed;
  }
  [[nodiscard]] Rect At(const char* name) { return W().Find<Control>(name).Bounds(); }

  void ExpectOrderWithoutOverlap(int width) {
    const std::vector<Placed> placed = Controls();
    for (std::size_t i = 0; i < placed.size(); ++i) {
      const Rect& now = placed[i].at;
      EXPECT_GE(now.left, margin) << placed[i].name << " at " << width;
      EXPECT_LE(now.left + now.width, width - margin) << placed[i].name << " at " << width;
      EXPECT_LE(now.top + now.height, At("txtStatus").top) << placed[i].name << " at " << width;
      if (i == 0) continue;
      const Rect& before = placed[i - 1].at;
      const bool lower = now.top >= before.top + before.height;
      const bool higher = now.top + now.height <= before.top;
      EXPECT_FALSE(higher) << placed[i].name << " at " << width;
      EXPECT_TRUE(lower || now.left >= before.left + before.width)
          << placed[i].name << " at " << width;
    }
    EXPECT_GE(At("DataGrid").top, At("txtStatus").top + 330);
  }
};

TEST_F(TopRowTest, WhereThereIsRoomAllStandInOneRow) {
  RunThreeRows();
  W().ResizeTo(12000, 6000);
  ExpectOrderWithoutOverlap(12000);
  EXPECT_EQ(At("cboCatalog"), (Rect{12000 - margin - 2100, 45, 2100, 330}));
  EXPECT_EQ(At("txtStatus").top, 420);
  EXPECT_EQ(At("DataGrid").top, 840);
}

TEST_F(TopRowTest, TheListOfCatalogsBecomesNarrowerFirst) {
  W().ResizeTo(8100, 6000);
  ExpectOrderWithoutOverlap(8100);
  EXPECT_EQ(At("cboCatalog").top, 45);
  EXPECT_LT(At("cboCatalog").width, 2100);
  EXPECT_EQ(At("cboCatalog").left + At("cboCatalog").width, 8100 - margin);
  EXPECT_EQ(At("DataGrid").top, 840);
}

TEST_F(TopRowTest, ThenTheRightOnesGetARowOfTheirOwn) {
  W().ResizeTo(6000, 6000);
  ExpectOrderWithoutOverlap(6000);
  EXPECT_EQ(At("chkRecords").top, 45);
  EXPECT_EQ(At("cboCatalog").top, 45 + 420);
  EXPECT_EQ(At("cboCatalog").left + At("cboCatalog").width, 6000 - margin);
  EXPECT_EQ(At("txtStatus").top, 420 + 420);
  EXPECT_EQ(At("lblWarning").top, 750 + 420);
  EXPECT_EQ(At("DataGrid"), (Rect{60, 840 + 420, 6000 - 120, 6000 - 60 - 840 - 420}));
}

TEST_F(TopRowTest, AtEveryWidthTheyKeepTheirOrderAndDoNotOverlap) {
  Run("begin");
  desktop.DrainEvents();
  for (int width = 1800; width < 15000; width += 15) {
    W().ResizeTo(width, 9000);
    ExpectOrderWithoutOverlap(width);
    if (HasFailure()) return;
  }
}

TEST_F(TopRowTest, TheWordOfTheTransactionMakesTheRowFoldAndUnfold) {
  W().ResizeTo(9600, 6000);
  Run("begin");
  desktop.DrainEvents();
  ExpectOrderWithoutOverlap(9600);
  EXPECT_EQ(At("txtStatus").top, 420 + 420);
  data.AnswerNothing("commit").Leaves(UserTransaction::None);
  Run("commit");
  desktop.DrainEvents();
  EXPECT_EQ(At("txtStatus").top, 420);
}

TEST_F(TopRowTest, WhatIsHiddenLeavesNoHole) {
  RunThreeRows();
  W().ResizeTo(12000, 6000);
  EXPECT_EQ(At("cmdRequery").left, At("cmdHistoryForward").left + 420 + 120);
  EXPECT_EQ(At("cmdProperties").left, At("cmdRequery").left + 420);
  EXPECT_EQ(At("chkRecords").left, At("chkLock").left + At("chkLock").width);
  EXPECT_EQ(At("lblTimer").left + At("lblTimer").width + margin, At("cmdReconnect").left);
  W().Find<Control>("cmdRequeryTags").SetVisible(true);
  W().ResizeTo(12015, 6000);
  EXPECT_EQ(At("cmdProperties").left, At("cmdRequeryTags").left + 420);
}

TEST_F(TopRowTest, NothingMovesWhileTheUserTypes) {
  W().PressKey('L', shiftState::ctrl);
  RunThreeRows();
  for (const int width : {12000, 9000, 6000}) {
    W().ResizeTo(width, 6000);
    const std::vector<Placed> before = Controls();
    Grid().SetFocus();
    W().Type("DataGrid", "4");
    ASSERT_TRUE(Shows("cmdAccept"));
    const std::vector<Placed> now = Controls();
    ASSERT_EQ(now.size(), before.size());
    for (std::size_t i = 0; i < now.size(); ++i) EXPECT_EQ(now[i].at, before[i].at) << now[i].name;
    W().PressKey(key::escape);
    W().PressKey(key::escape);
  }
}

TEST_F(TopRowTest, TheNumberOfTheRowGoesWhereThereIsNoRoom) {
  RunThreeRows();
  W().ResizeTo(12000, 6000);
  EXPECT_TRUE(Shows("lblRow"));
  int folds = 0;
  for (int width = 12000; width > 5000; width -= 15) {
    W().ResizeTo(width, 6000);
    if (At("txtStatus").top > 420) folds = std::max(folds, width);
  }
  W().ResizeTo(folds + 15, 6000);
  EXPECT_FALSE(Shows("lblRow")) << "it went before the row was folded";
  W().ResizeTo(folds, 6000);
  EXPECT_TRUE(Shows("lblRow")) << "a row of its own has room for it";
}

/// Two windows side by side on a screen 1024 wide, the sidebar shown.
TEST_F(TopRowTest, InTwoTiledColumnsTwoRowsDo) {
  data.Answer("fails", MemoryFields({"a"}), {}).Leaves(UserTransaction::Failed);
  Run("fails");
  desktop.DrainEvents();
  ASSERT_EQ(W().Find<Label>("lblTransaction").Caption(), "Failed transaction since 14:05");
  W().ResizeTo(392 * 15, 6000);
  ExpectOrderWithoutOverlap(392 * 15);
  EXPECT_EQ(At("txtStatus").top, 420 + 420);
}

TEST_F(TopRowTest, TheWarningStandsBelowAFoldedRow) {
  W().ResizeTo(6000, 6000);
  W().PressKey('L', shiftState::ctrl);
  data.Answer("select", MemoryFields({"a"}), {{Value(std::string("x"))}}).UniqueRows(false);
  EXPECT_TRUE(Run("select"));
  EXPECT_EQ(At("DataGrid").top, 960 + 420);
  EXPECT_EQ(At("lblWarning").top, 750 + 420);
}

}  // namespace
}  // namespace tessel
