#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/postgresql/PostgresDatabase.h"

namespace tessel::test {

namespace {

std::string BalancedString() {
  return PostgresNative().StringAt(TestServers::Instance().PgPool().Login().port);
}

/// Two servers, of which one only shows what the other holds, behind a balancer that sends each
/// statement that only reads to one of them.
class PgPoolDatabase : public PostgresDatabase {
 public:
  [[nodiscard]] std::string ConnectionString() const override { return BalancedString(); }
  [[nodiscard]] DatabaseTraits Traits() const override {
    DatabaseTraits traits = PostgresDatabase::Traits();
    traits.holdsLongValues = false;
    return traits;
  }
  [[nodiscard]] std::vector<SkippedBody> Skipped() const override {
    const std::string cancel =
        "a request to cancel takes pgpool a second for each server: the session is given up";
    return {{"CancelBodies.WhileExecuting", cancel},
            {"CancelBodies.AtOnce", cancel},
            {"CancelBodies.WhileFetchingKeepsTheRowsSoFar", cancel},
            {"CancelBodies.ALateCancelDoesNotHitTheNextCommand", cancel},
            {"CancelBodies.WorkThatWasDoneIsNotCalledCancelled", cancel},
            {"CancelBodies.ClosingTheRecordsetCancels", cancel},
            {"CancelBodies.LettingGoOfTheOperationCancels", cancel},
            {"TransactionBodies.ACancelledCommandLeavesItUnderWay", cancel},
            {"WriteFaultBodies.ABlockedUpdateIsCancelled", cancel},
            {"WriteFaultBodies.ACancelNeitherLosesNorHalvesAChange", cancel},
            {"SchemaBodies.NamesThatNeedQuotesAreWrittenAsTheDatabaseTakesThem",
             "pgpool ends the session at a name with a quotation mark in it"}};
  }
  void KillServer() override { TestServers::Instance().PgPoolPrimary().Kill(); }
  void RestartServer() override {
    TestServers::Instance().PgPoolPrimary().Restart();
    TestServers::Instance().PgPool().WaitUntilItAnswers();
  }
};

const DatabaseParam pgPool{"PgPool", [] { return std::make_shared<PgPoolDatabase>(); }};

TESSEL_RUN_BODIES(Balanced, testing::Values(pgPool));
TESSEL_RUN_WRITE_BODIES(Balanced, testing::Values(pgPool));

}  // namespace

class PgPool : public DataTest {};

TEST_F(PgPool, ReadsFromBothServers) {
  const auto connection = ConnectTo(BalancedString());
  const ScratchTable table(connection, "id integer primary key");
  table.Insert("(1)");
  for (int round = 0; round < 40; ++round)
    ASSERT_EQ(Run(*connection, "select id from " + table.Name())->RecordCount(), 1);
  const auto nodes = Run(*connection, "show pool_nodes");
  ASSERT_EQ(nodes->RecordCount(), 2);
  const auto count = nodes->FindField("select_cnt");
  ASSERT_TRUE(count);
  for (const std::string& reads : TextsOf(*nodes, *count)) EXPECT_NE(reads, "0");
}

/// The server may go on for seconds; what was done is not called cancelled, and the other way
/// round.
TEST_F(PgPool, ACancelCostsTheConnectionAndIsToldAsItWas) {
  const auto connection = ConnectTo(BalancedString());
  const auto other = ConnectTo(BalancedString());
  const ScratchTable table(other, "id integer primary key");
  for (const bool isSlow : {false, true}) {
    const std::string id = isSlow ? "2" : "1";
    EventLog log;
    const auto insert = Start(*connection,
                              "insert into " + table.Name() + " select " + id +
                                  (isSlow ? " from pg_sleep(30)" : ""),
                              log);
    (void)queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(isSlow ? 100 : 0));
    insert.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    const std::string query = "select id from " + table.Name() + " where id = " + id;
    (void)queue_.PumpUntil(
        [&] { return Run(*other, query)->RecordCount() == (log.LastError() ? 0 : 1); },
        std::chrono::seconds(3));
    EXPECT_EQ(Run(*other, query)->RecordCount(), log.LastError() ? 0 : 1) << id;
    if (isSlow) {
      EXPECT_THAT(log.Lines(), testing::ElementsAre("failed 3712"));
    }
    connection->Close();
    OpenNow(*connection);
  }
}

}  // namespace tessel::test
