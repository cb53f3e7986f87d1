#include "tests/data/providers/sqlite/SqliteTest.h"
#include "tests/data/support/ListFeed.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::HasSubstr;

namespace {

/// Rows of two hundred characters each.
LoadRequest LongRows() {
  const auto make = [](std::int64_t number) -> std::optional<std::vector<Value>> {
    if (number == 5'000) return std::nullopt;
    return std::vector<Value>{Text(std::string(200, 'x'))};
  };
  return {.table = "t",
          .columns = {{"v", DataType::VarWChar}},
          .rows = std::make_shared<ListFeed>(make)};
}

}  // namespace

TEST_F(SqliteTest, ALoadForWhichThereIsNoRoomLeavesNothing) {
  const auto connection = OpenFile("full.db");
  Run(*connection, "create table t (v text)");
  Run(*connection, "pragma max_page_count = 20");
  const auto load = connection->StartLoad(LongRows());
  load->Wait();
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  EXPECT_THAT(load->Failure()->description, HasSubstr("full"));
  EXPECT_FALSE(load->Refused());
  EXPECT_EQ(Cell(*connection, "select count(*) from t"), Whole(0));
}

TEST_F(SqliteTest, AFileThatSomebodyElseWritesBlamesNoRow) {
  const auto connection = OpenFile("locked.db", "Timeout=0");
  Run(*connection, "create table t (v text)");
  const auto other = OpenFile("locked.db");
  Run(*other, "begin immediate");
  const auto load = connection->StartLoad(LongRows());
  load->Wait();
  EXPECT_THAT(load->Failure()->description, HasSubstr("locked"));
  EXPECT_FALSE(load->Refused());
}

}  // namespace tessel::test
