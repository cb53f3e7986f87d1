#include <thread>

#include "tests/data/providers/odbc/OdbcFixture.h"
#include "tests/data/servers/Listener.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A cancel must be answered within this, on a machine with other work too.
constexpr std::int64_t soon = slowdown * 1000;

struct Server {
  std::string name;
  std::string connectionString;
  std::string sleep;  ///< A statement of a minute.
  std::string nap;    ///< A query of one row that takes 20 milliseconds.
  DatabaseServer& (*server)();
};

Server PostgresServer() {
  return {"PostgreSQL", PostgresString(), "select pg_sleep(60)",
          "select 'x' || pg_sleep(0.02)::text",
          []() -> DatabaseServer& { return TestServers::Instance().Postgres(); }};
}

Server MariaDbServer() {
  return {"MariaDB", MariaDbString(), "select sleep(60)", "select concat('x', sleep(0.02))",
          []() -> DatabaseServer& { return TestServers::Instance().MariaDb(); }};
}

std::vector<Server> Servers() { return {PostgresServer(), MariaDbServer()}; }

}  // namespace

class OdbcFaults : public OdbcTest {
 protected:
  /// Pumps for a while, so that what is started gets under way.
  void PumpFor(milliseconds time) {
    (void)queue_.PumpUntil([] { return false; }, time);
  }
  /// Cancels at a time near the end of a nap, a little later with each `round` of 100.
  static void CancelAbout(Operation& operation, int round) {
    std::this_thread::sleep_for(std::chrono::microseconds(15000 + 100 * round));
    operation.Cancel();
  }
  /// Cancels and checks that the end comes soon, once and as cancelled.
  void ExpectCancelled(const Pending& pending) {
    const auto start = steady_clock::now();
    pending.operation->Cancel();
    EXPECT_TRUE(Ends(pending));
    EXPECT_LT(MillisecondsSince(start), soon);
    ASSERT_TRUE(pending.error);
    EXPECT_EQ(pending.error->number, errorNumber::cancelled);
    PumpFor(milliseconds(50));
    EXPECT_EQ(pending.ends, 1);
  }
};

// --- connecting ----------------------------------------------------------------------------------

TEST_F(OdbcFaults, AServerThatNeverAnswersIsLeftAtACancel) {
  for (const auto at : {PostgresStringAt, MariaDbStringAt}) {
    const Listener silent(Listener::Behaviour::Silent);
    const auto connection = NewConnection(at(silent.Port()));
    const auto pending = StartOpen(connection);
    ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
    EXPECT_EQ(pending->ends, 0);
    ExpectCancelled(*pending);
    EXPECT_EQ(connection->State(), objectState::closed);
  }
}

TEST_F(OdbcFaults, AConnectionGivenUpMayBeOpenedAgain) {
  const Listener silent(Listener::Behaviour::Silent);
  const auto connection = NewConnection(PostgresStringAt(silent.Port()));
  const auto pending = StartOpen(connection);
  ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
  ExpectCancelled(*pending);
  connection->SetConnectionString(PostgresString());
  OpenNow(*connection);
  EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
}

TEST_F(OdbcFaults, DroppingAConnectionThatHangsDoesNotWait) {
  const Listener silent(Listener::Behaviour::Silent);
  auto connection = NewConnection(MariaDbStringAt(silent.Port()));
  const auto pending = StartOpen(connection);
  ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
  const auto start = steady_clock::now();
  connection.reset();
  EXPECT_LT(MillisecondsSince(start), soon);
}

// --- cancelling a statement ----------------------------------------------------------------------

TEST_F(OdbcFaults, AStatementIsCancelledAndTheConnectionStaysUsable) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    const auto pending = Start(connection, server.sleep);
    PumpFor(milliseconds(200));
    ASSERT_EQ(pending->ends, 0);
    ExpectCancelled(*pending);
    EXPECT_EQ(connection->State(), objectState::open);
    EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
  }
}

/// The driver of MariaDB goes on with what follows: it sends the statements of a text one by one.
TEST_F(OdbcFaults, WhatFollowsACancelledStatementIsNotRunByPostgreSql) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "create temp table cancelled as select 1 as n");
  const auto pending = Start(connection, "select pg_sleep(60); update cancelled set n = 2");
  PumpFor(milliseconds(200));
  ExpectCancelled(*pending);
  EXPECT_EQ(Single(*connection, "select n from cancelled"), Value(std::int64_t{1}));
}

/// Rows that a late cancel has taken away must not be asked for: the driver crashes.
TEST_F(OdbcFaults, ACancelWithinATextOfMariaDbEndsItOnce) {
  const auto connection = Connect(MariaDbString());
  for (int i = 0; i < 5; ++i) {
    const auto pending = Start(connection, "select sleep(60); select 1");
    PumpFor(milliseconds(100));
    pending->operation->Cancel();
    ASSERT_TRUE(Ends(*pending));
    PumpFor(milliseconds(20));
    EXPECT_EQ(pending->ends, 1);
    EXPECT_EQ(Single(*connection, "select 7"), Value(std::int64_t{7}));
  }
}

TEST_F(OdbcFaults, ACancelRightAfterTheStartIsNotLost) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    for (int i = 0; i < 20; ++i) {
      const auto pending = Start(connection, server.sleep);
      std::this_thread::sleep_for(std::chrono::microseconds(100 * i));
      ExpectCancelled(*pending);
      if (HasFailure()) return;
      ASSERT_EQ(connection->State(), objectState::open);
    }
    EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
  }
}

/// The request comes about when the statement ends: the end is announced once, as one or the other,
/// and the next statement is not hit.
/// On a busy machine a driver may take longer for a cancel than its session's patience.
static void OpenIfGivenUp(Connection& connection) {
  if (connection.State() == objectState::closed) OpenNow(connection);
}

TEST_F(OdbcFaults, ALateCancelHitsNothingElse) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    for (int i = 0; i < 100; ++i) {
      const auto pending = Start(connection, server.nap);
      CancelAbout(*pending->operation, i);
      ASSERT_TRUE(Ends(*pending));
      if (pending->error) {
        ASSERT_EQ(pending->error->number, errorNumber::cancelled) << pending->error->description;
      }
      OpenIfGivenUp(*connection);
      const auto next = Start(connection, "select 8 as n");
      ASSERT_TRUE(Ends(*next));
      ASSERT_EQ(pending->ends, 1);
      ASSERT_FALSE(next->error) << next->error->description;
      ASSERT_EQ(AllText(*next->recordset)[0][0], "8");
    }
  }
}

/// A change that was made is not called a failure, and one called cancelled was not made.
TEST_F(OdbcFaults, ALateCancelTellsTheTruthOfAChange) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    Run(*connection, "drop table if exists late");
    Run(*connection, "create table late (n varchar(20))");
    std::int64_t done = 0;
    for (int i = 0; i < 100; ++i) {
      const auto pending = Start(connection, "insert into late " + server.nap);
      CancelAbout(*pending->operation, i);
      ASSERT_TRUE(Ends(*pending));
      if (!pending->error) ++done;
    }
    EXPECT_EQ(Single(*connection, "select count(*) from late"), Value(done));
    Run(*connection, "drop table late");
  }
}

TEST_F(OdbcFaults, AFetchIsCancelledAndKeepsItsRows) {
  const auto connection = Connect(PostgresString());
  const auto pending =
      Start(connection, "select n, repeat('x', 200) from generate_series(1, 400000) n");
  ASSERT_TRUE(queue_.PumpUntil([&] { return pending->fetched > 0; }));
  ExpectCancelled(*pending);
  EXPECT_GT(pending->recordset->RecordCount(), 0);
  EXPECT_LT(pending->recordset->RecordCount(), 400000);
  EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
}

// --- a server that stops or dies -----------------------------------------------------------------

TEST_F(OdbcFaults, AStatementOnAFrozenServerIsLeftAtACancel) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    const auto pending = Start(connection, server.sleep);
    PumpFor(milliseconds(200));
    {
      const FrozenServer frozen(server.server());
      ExpectCancelled(*pending);
      EXPECT_EQ(connection->State(), objectState::closed);
    }
    OpenNow(*connection);
    EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
  }
}

TEST_F(OdbcFaults, AfterTheServersDeathTheConnectionIsClosedAndOpensAgain) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
    server.server().Kill();
    try {
      Run(*connection, "select 2");
      ADD_FAILURE() << "ran without a server";
    } catch (const Error& error) {
      EXPECT_NE(error.Description(), "");
      RecordProperty(server.name, error.Description());
    }
    EXPECT_EQ(connection->State(), objectState::closed);
    EXPECT_TRUE(FailureOf(server.connectionString));
    server.server().Restart();
    OpenNow(*connection);
    EXPECT_EQ(Single(*connection, "select 3"), Value(std::int64_t{3}));
  }
}

TEST_F(OdbcFaults, AServerThatDiesUnderAStatementEndsIt) {
  for (const Server& server : Servers()) {
    SCOPED_TRACE(server.name);
    const auto connection = Connect(server.connectionString);
    const auto pending = Start(connection, server.sleep);
    PumpFor(milliseconds(200));
    server.server().Kill();
    EXPECT_TRUE(Ends(*pending));
    ASSERT_TRUE(pending->error);
    EXPECT_NE(pending->error->number, errorNumber::cancelled);
    EXPECT_EQ(connection->State(), objectState::closed);
    server.server().Restart();
  }
}

}  // namespace tessel::test
