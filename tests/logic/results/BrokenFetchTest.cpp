// A query whose rows break off: those that came are shown, with the reason.

#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

class BrokenFetchTest : public test::RecordsFixture {
 protected:
  static constexpr const char* reason =
      "server closed the connection\nThe rows fetched so far are kept.";

  BrokenFetchTest() {
    EXPECT_TRUE(Connect());
    MemoryRows rows;
    for (int i = 0; i < 500; ++i) rows.push_back({Value(std::int64_t{i})});
    data.Answer("broken", {MemoryField("n", DataType::Integer)}, rows)
        .FailAtRow(250, MemoryError(reason));
  }
};

TEST_F(BrokenFetchTest, TheRowsThatCameShowWithTheReason) {
  EXPECT_FALSE(Run("broken")) << "it did not complete";
  EXPECT_EQ(Status(), std::string("[12:00:00]  250 record(s). ") + reason);
  EXPECT_EQ(StatusColor(), 0x0000BFU);
  EXPECT_EQ(W().Find<TextBox>("txtStatus").Bounds().height, 2 * 240 + 90) << "grown";
  EXPECT_TRUE(Shows("cmdCnErrors"));
  ASSERT_TRUE(Shows("DataGrid"));
  EXPECT_EQ(Grid().DataSource()->RecordCount(), 250);
  EXPECT_EQ(Grid().ShownText(249, 0), "249");
  EXPECT_TRUE(W().Menu("menuRecords").Enabled());
}

TEST_F(BrokenFetchTest, ItIsOneEntryOfTheHistory) {
  RunThreeRows("select 1");
  EXPECT_FALSE(Run("broken"));
  W().PressKey(key::left, shiftState::alt);
  EXPECT_EQ(data.ExecutedSql().back(), "select 1");
  EXPECT_FALSE(W().Find<Button>("cmdHistoryBack").Enabled());
  EXPECT_EQ(W().Find<Button>("cmdHistoryForward").ToolTip(), "Forward to 250 record(s) of: broken");
}

TEST_F(BrokenFetchTest, ItBreaksTheSameWhereTheProviderBlocks) {
  data.properties.Set("Data Source Object Threading Model", std::int64_t{2});
  W().Click("cmdReconnect");
  EXPECT_FALSE(Run("broken"));
  EXPECT_EQ(Status(), std::string("[12:00:00]  250 record(s). ") + reason);
  EXPECT_TRUE(Shows("DataGrid"));
}

TEST_F(BrokenFetchTest, AnErrorOfTheExecutionHidesTheRowsThatWereThere) {
  RunThreeRows();
  data.AnswerError("bad", MemoryError("no such table"));
  EXPECT_FALSE(Run("bad"));
  EXPECT_EQ(Status(), "[12:00:00]  no such table");
  EXPECT_FALSE(Shows("DataGrid"));
}

}  // namespace
}  // namespace tessel
