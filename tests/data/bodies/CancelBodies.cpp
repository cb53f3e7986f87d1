#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;

namespace {

/// More rows than are fetched before a test has cancelled.
constexpr std::int64_t endless = 1'000'000'000;

}  // namespace

TEST_P(CancelBodies, WhileExecuting) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().SlowStatement(), log);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(50));
  recordset.Cancel();
  recordset.Cancel();
  EXPECT_EQ(recordset.State(), objectState::executing);
  ASSERT_TRUE(PumpToEnd(log));
  recordset.Cancel();
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(recordset.State(), objectState::closed);
  ASSERT_EQ(connection->State(), objectState::open);
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CancelBodies, AtOnce) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().SlowStatement(), log);
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CancelBodies, WhileFetchingKeepsTheRowsSoFar) {
  if (!Db().Traits().rowsBeforeLast) GTEST_SKIP() << "has every row before it shows one";
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(endless), log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  EXPECT_EQ(recordset.State(), objectState::open | objectState::fetching);
  recordset.Cancel();
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "failed 3712"));
  EXPECT_EQ(recordset.State(), objectState::open);
  ASSERT_GT(recordset->RecordCount(), 0);
  const std::int64_t last = recordset->RecordCount();
  EXPECT_EQ(ToText(recordset->ValueAt(last - 1, 0)), std::to_string(last));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CancelBodies, OfWhatHasEndedDoesNothing) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(5));
  recordset.Cancel();
  EXPECT_EQ(recordset->RecordCount(), 5);
  EXPECT_EQ(recordset.Operation().Outcome(), OperationOutcome::Done);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_P(CancelBodies, ALateCancelDoesNotHitTheNextCommand) {
  const auto connection = Connect();
  for (int round = 0; round < 150; ++round) {
    EventLog log;
    const auto recordset = Start(*connection, Db().Series(1 + round % 7), log);
    if (round % 3 == 0)
      queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(round % 5));
    recordset.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    ASSERT_EQ(log.Ends(), 1);
    ASSERT_EQ(connection->State(), objectState::open)
        << (log.LastError() ? log.LastError()->description : log.Lines().back());
    const auto next = Run(*connection, Db().Series(20));
    ASSERT_EQ(next->RecordCount(), 20) << "round " << round;
  }
}

TEST_P(CancelBodies, WorkThatWasDoneIsNotCalledCancelled) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  for (int round = 1; round <= 60; ++round) {
    EventLog log;
    const std::string id = std::to_string(round);
    const auto recordset =
        Start(*connection, "insert into " + table.Name() + " values (" + id + ")", log);
    recordset.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    const bool done = !log.LastError();
    const auto found = Run(*connection, "select id from " + table.Name() + " where id = " + id);
    ASSERT_EQ(found->RecordCount(), done ? 1 : 0) << log.Lines().back();
  }
}

TEST_P(CancelBodies, ClosingTheRecordsetCancels) {
  if (!Db().Traits().rowsBeforeLast) GTEST_SKIP() << "has every row before it shows one";
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(endless), log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  recordset->Close();
  EXPECT_EQ(recordset.State(), objectState::closed);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "failed 3712"));
  EXPECT_EQ(Run(*connection, Db().Series(4))->RecordCount(), 4);
}

TEST_P(CancelBodies, LettingGoOfTheOperationCancels) {
  const auto connection = Connect();
  EventLog log;
  auto recordset = Start(*connection, Db().SlowStatement(), log);
  recordset.Reset();
  ASSERT_TRUE(queue_.PumpUntil([&] { return connection->State() == objectState::open; }));
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CancelBodies, ClosingTheConnectionCancels) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().SlowStatement(), log);
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_EQ(recordset.State(), objectState::closed);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  OpenNow(*connection);
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CancelBodies, DroppingTheConnectionWhileExecutingEndsQuietly) {
  auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().SlowStatement(), log);
  connection.reset();
  queue_.Pump();
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(recordset.State(), objectState::closed);
  EXPECT_EQ(recordset.Operation().ActiveConnection(), nullptr);
  EXPECT_EQ(recordset.Operation().Outcome(), OperationOutcome::Cancelled);
}

TEST_P(CancelBodies, DroppingTheConnectionWhileFetchingLeavesTheRowsSoFar) {
  auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(100'000), log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  connection.reset();
  queue_.Pump();
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_LE(recordset->RecordCount(), 100'000);
}

TEST_P(CancelBodies, TheConnectionMayBeDroppedFromAHandler) {
  auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(10), log);
  bool dropped = false;
  recordset.Operation().Ended = [&] {
    connection.reset();
    dropped = true;
  };
  ASSERT_TRUE(queue_.PumpUntil([&] { return dropped; }));
  queue_.Pump();
  EXPECT_EQ(recordset.State(), objectState::open);
}

}  // namespace tessel::test
