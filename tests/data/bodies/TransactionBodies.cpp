#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;

void TransactionBodies::SetUp() {
  WriteTest::SetUp();
  if (IsSkipped() || HasFatalFailure()) return;
  if (!Db().Traits().tellsTransaction) {
    EXPECT_EQ(State(), UserTransaction::Unknown) << "it must not be said that there is none";
    GTEST_SKIP() << "the driver does not tell";
  }
}

TEST_P(TransactionBodies, TheStateFollowsTheUsersText) {
  EXPECT_EQ(State(), UserTransaction::None);
  Run(*connection_, "select 1");
  EXPECT_EQ(State(), UserTransaction::None);
  const auto before = std::chrono::system_clock::now();
  Run(*connection_, "begin");
  EXPECT_EQ(State(), UserTransaction::Open);
  const auto since = connection_->Transaction().since;
  EXPECT_GE(since, before);
  EXPECT_LE(since, std::chrono::system_clock::now());
  Insert(10);
  Run(*connection_, "select * from " + table_->Name());
  EXPECT_EQ(State(), UserTransaction::Open);
  EXPECT_EQ(connection_->Transaction().since, since) << "when it was first seen";
  Run(*connection_, "rollback");
  EXPECT_EQ(State(), UserTransaction::None);
  Run(*connection_, "begin");
  Insert(11);
  Run(*connection_, "commit");
  EXPECT_EQ(State(), UserTransaction::None);
  EXPECT_THAT(Outside("select id from " + table_->Name() + " where id > 3"), ElementsAre("11"));
}

TEST_P(TransactionBodies, EveryChangeIsAnnounced) {
  std::vector<UserTransaction> seen;
  connection_->TransactionChanged = [&] { seen.push_back(State()); };
  const auto run = [&](const std::string& sql) {
    EventLog log;
    const auto recordset = Start(*connection_, sql, log);
    ASSERT_TRUE(PumpToEnd(log));
    queue_.Pump();
  };
  run("begin");
  run("select * from " + table_->Name());
  run("rollback");
  EXPECT_THAT(seen, ElementsAre(UserTransaction::Open, UserTransaction::None));
  run("begin");
  connection_->Close();
  queue_.Pump();
  EXPECT_THAT(seen, ElementsAre(UserTransaction::Open, UserTransaction::None, UserTransaction::Open,
                                UserTransaction::None));
}

TEST_P(TransactionBodies, AWrittenRowLeavesItAsItIs) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(1, std::string("changed"));
  Update(*recordset);
  EXPECT_EQ(State(), UserTransaction::None);
  Run(*connection_, "begin");
  const auto again = OpenAll();
  again->SetFieldValue(1, std::string("again"));
  Update(*again);
  EXPECT_EQ(State(), UserTransaction::Open);
  Run(*connection_, "rollback");
  EXPECT_EQ(State(), UserTransaction::None);
}

TEST_P(TransactionBodies, AStatementThatFailsLeavesItUnderWay) {
  Run(*connection_, "begin");
  Insert(10);
  static_cast<void>(ErrorOf([&] { Run(*connection_, "select * from there_is_no_such_table"); }));
  EXPECT_TRUE(IsUnderWay(State()));
  Run(*connection_, "rollback");
  EXPECT_EQ(State(), UserTransaction::None);
}

TEST_P(TransactionBodies, ACancelledCommandLeavesItUnderWay) {
  Run(*connection_, "begin");
  Insert(10);
  EventLog log;
  const auto recordset = Start(*connection_, Db().SlowStatement(), log);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(100));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_TRUE(IsUnderWay(State()));
  Run(*connection_, "rollback");
  EXPECT_EQ(State(), UserTransaction::None);
}

TEST_P(TransactionBodies, AClosedConnectionHasNone) {
  Run(*connection_, "begin");
  Insert(10);
  connection_->Close();
  EXPECT_EQ(State(), UserTransaction::None);
  EXPECT_THAT(Outside("select id from " + table_->Name() + " where id = 10"), ElementsAre());
  OpenNow(*connection_);
  EXPECT_EQ(State(), UserTransaction::None);
}

}  // namespace tessel::test
