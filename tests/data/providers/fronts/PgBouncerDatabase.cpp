#include "tests/data/bodies/AllBodies.h"
#include "tests/data/providers/postgresql/PostgresDatabase.h"

namespace tessel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string PooledString(const std::string& database) {
  return PostgresNative().StringAt(TestServers::Instance().PgBouncer().Login().port, database);
}

/// The test server behind a pooler that gives each transaction another connection to it.
class PgBouncerDatabase : public PostgresDatabase {
 public:
  [[nodiscard]] std::string ConnectionString() const override { return PooledString("pooled"); }
  [[nodiscard]] std::string TableCatalog() const override { return "pooled"; }
  [[nodiscard]] DatabaseTraits Traits() const override {
    DatabaseTraits traits = PostgresDatabase::Traits();
    traits.holdsLongValues = false;
    traits.patience = 4;
    return traits;
  }
  void RestartServer() override {
    PostgresDatabase::RestartServer();
    TestServers::Instance().PgBouncer().WaitUntilItAnswers();
  }
};

const DatabaseParam pgBouncer{"PgBouncer", [] { return std::make_shared<PgBouncerDatabase>(); }};

TESSEL_RUN_BODIES(Fronts, testing::Values(pgBouncer));
TESSEL_RUN_WRITE_BODIES(Fronts, testing::Values(pgBouncer));

}  // namespace

class PgBouncer : public DataTest {
 protected:
  /// What was listed of the last operation.
  [[nodiscard]] static std::vector<std::string> Reports(const Connection& connection) {
    std::vector<std::string> texts;
    for (const ErrorInfo& record : connection.Errors()) texts.push_back(record.description);
    return texts;
  }
};

TEST_F(PgBouncer, GivesTransactionsAnotherSession) {
  const auto connection = ConnectTo(PooledString("pooled"));
  const Value first = Cell(*connection, "select pg_backend_pid()");
  bool changed = false;
  for (int tries = 0; tries < 100 && !changed; ++tries) {
    (void)queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(50));
    changed = Cell(*connection, "select pg_backend_pid()") != first;
  }
  EXPECT_TRUE(changed);
}

TEST_F(PgBouncer, DatesAreReadWhateverTheServersFormIs) {
  const auto direct = ConnectTo(PostgresNative().ConnectionString());
  Run(*direct, "drop database if exists german");
  Run(*direct, "create database german");
  Run(*direct, "alter database german set datestyle to 'German, DMY'");
  const auto one = ConnectTo(PooledString("german"));
  const auto two = ConnectTo(PooledString("german"));
  for (int round = 0; round < 3; ++round) {
    for (Connection* connection : {one.get(), two.get()}) {
      EXPECT_EQ(ToText(ToView(Cell(*connection, "select date '2024-02-01'"))), "2024-02-01");
      EXPECT_EQ(ToText(ToView(Cell(*connection, "select timestamp '2024-02-01 10:00'"))),
                "2024-02-01 10:00:00");
    }
    Run(*one, round % 2 == 0 ? "begin" : "commit");
  }
}

/// Both clients use the same session of the server, one after the other.
TEST_F(PgBouncer, ALateCancelHitsNobodyElse) {
  const auto one = ConnectTo(PooledString("narrow"));
  const auto two = ConnectTo(PooledString("narrow"));
  for (int round = 0; round < 15; ++round) {
    EventLog log;
    const auto cancelled = Start(*one, "select 1", log);
    if (round % 3 != 0)
      (void)queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(round % 3));
    cancelled.Cancel();
    const auto other = Run(*two, "select generate_series(1, 200), pg_sleep(0.00001)");
    ASSERT_EQ(other->RecordCount(), 200) << "round " << round;
    ASSERT_TRUE(PumpToEnd(log));
  }
}

TEST_F(PgBouncer, WhatIsSetForASessionIsSaidToBeUncertain) {
  const auto pooled = ConnectTo(PooledString("pooled"));
  for (const char* sql :
       {"set search_path = public", "listen news", "prepare one as select 1",
        "create temporary table gone (n int)", "select set_config('work_mem', '8MB', false)",
        "select pg_advisory_lock(7)"}) {
    Run(*pooled, sql);
    EXPECT_THAT(Reports(*pooled), Contains(HasSubstr("through a pooler"))) << sql;
  }
  Run(*pooled, "select 'set'");
  EXPECT_THAT(Reports(*pooled), ElementsAre());
  Run(*pooled, "begin");
  Run(*pooled, "set local search_path = public");
  EXPECT_THAT(Reports(*pooled), ElementsAre());
  Run(*pooled, "rollback");
  Run(*pooled, "begin; set local search_path = public; commit");
  EXPECT_THAT(Reports(*pooled), ElementsAre());
  TestServers::Instance().PgBouncer().Restart();  // The sessions go, and what was set in them.
}

TEST_F(PgBouncer, NothingIsUncertainWithoutIt) {
  const auto direct = ConnectTo(PostgresNative().ConnectionString());
  Run(*direct, "set search_path = public");
  EXPECT_THAT(Reports(*direct), ElementsAre());
}

/// The server that a change was sent to ends before it answers.
TEST_F(PgBouncer, AServerThatEndsBehindItIsNoSuccess) {
  const auto connection = ConnectTo(PooledString("pooled"));
  const ScratchTable table(connection, "id integer primary key");
  EventLog log;
  const auto insert =
      Start(*connection, "insert into " + table.Name() + " select 1 from pg_sleep(30)", log);
  Run(*ConnectTo(PostgresNative().ConnectionString()), "checkpoint");
  PgBouncerDatabase database;
  database.KillServer();
  ASSERT_TRUE(PumpToEnd(log));
  database.RestartServer();
  EXPECT_TRUE(log.LastError());
  EXPECT_THAT(log.Lines(), Not(Contains("done")));
  connection->Close();
  OpenNow(*connection);
  EXPECT_EQ(Run(*connection, "select id from " + table.Name())->RecordCount(), 0);
}

}  // namespace tessel::test
