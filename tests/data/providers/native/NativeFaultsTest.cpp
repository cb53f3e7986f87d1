#include <chrono>
#include <thread>

#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/servers/Listener.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::Not;

/// A cancel must be answered within this, on a machine with other work too.
constexpr milliseconds soon = slowdown * milliseconds(1000);

}  // namespace

/// What a server may do to its clients, and a person to a command, at any moment.
class NativeFaults : public DataTest, public testing::WithParamInterface<NativeServer> {
 protected:
  [[nodiscard]] std::shared_ptr<Connection> NewConnection(const std::string& connectionString) {
    auto connection = data_.CreateConnection();
    connection->SetConnectionString(connectionString);
    return connection;
  }
  [[nodiscard]] std::shared_ptr<Connection> Connect() {
    return ConnectTo(GetParam().ConnectionString());
  }
  /// What the last StartOpen started.
  std::shared_ptr<Operation> opening_;

  std::shared_ptr<Connection> StartOpen(int port, EventLog& log) {
    auto connection = NewConnection(GetParam().StringAt(port));
    opening_ = connection->StartOpen({}, {});
    log.Watch(*opening_);
    return connection;
  }
  /// Pumps for a while, so that what is started gets under way.
  void PumpFor(milliseconds time) {
    (void)queue_.PumpUntil([] { return false; }, time);
  }
  /// Cancels, and checks that the end comes soon, once and as cancelled.
  void ExpectCancelled(Operation& operation, const EventLog& log) {
    const auto start = steady_clock::now();
    operation.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    EXPECT_LT(steady_clock::now() - start, soon);
    ASSERT_TRUE(log.LastError());
    EXPECT_EQ(log.LastError()->number, errorNumber::cancelled);
    PumpFor(milliseconds(50));
    EXPECT_EQ(log.Ends(), 1);
  }
  static void ExpectUsable(Connection& connection) {
    EXPECT_EQ(connection.State(), objectState::open);
    EXPECT_EQ(ToText(ToView(Cell(connection, "select 42"))), "42");
  }
};

// --- connecting ----------------------------------------------------------------------------------

TEST_P(NativeFaults, ARefusedConnectionIsAnErrorWithTheReason) {
  const Listener refusing(Listener::Behaviour::Refuse);
  const auto connection = NewConnection(GetParam().StringAt(refusing.Port()));
  const ErrorInfo error = ErrorOf([&] { OpenNow(*connection); });
  EXPECT_EQ(error.source, GetParam().name);
  EXPECT_THAT(error.description, HasSubstr("127.0.0.1"));
  EXPECT_TRUE(error.nativeError != 0 || error.sqlState == "08001");
  EXPECT_EQ(connection->State(), objectState::closed);
}

TEST_P(NativeFaults, AServerThatNeverAnswersIsLeftAtACancel) {
  const Listener silent(Listener::Behaviour::Silent);
  EventLog log;
  const auto connection = StartOpen(silent.Port(), log);
  ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
  PumpFor(milliseconds(50));
  EXPECT_EQ(log.Ends(), 0);
  ExpectCancelled(*opening_, log);
  EXPECT_EQ(connection->State(), objectState::closed);
  // The thread has come back by itself.
  EXPECT_TRUE(queue_.PumpUntil([&] { return !data_.HasAbandonedWork(); }, soon) ||
              !data_.HasAbandonedWork());
}

TEST_P(NativeFaults, AServerThatNeverAnswersIsLeftAfterTheTimeGiven) {
  const Listener silent(Listener::Behaviour::Silent);
  const auto connection = NewConnection(GetParam().StringAt(silent.Port()) + ";Connect Timeout=1");
  const auto start = steady_clock::now();
  const ErrorInfo error = ErrorOf([&] { OpenNow(*connection); });
  EXPECT_GE(steady_clock::now() - start, milliseconds(900));
  EXPECT_LT(steady_clock::now() - start, slowdown * milliseconds(5000));
  EXPECT_FALSE(error.description.empty());
}

TEST_P(NativeFaults, AConnectionGivenUpMayBeOpenedAgain) {
  const Listener silent(Listener::Behaviour::Silent);
  EventLog log;
  const auto connection = StartOpen(silent.Port(), log);
  ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
  ExpectCancelled(*opening_, log);
  connection->SetConnectionString(GetParam().ConnectionString());
  OpenNow(*connection);
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, DroppingAConnectionThatHangsDoesNotWait) {
  const Listener silent(Listener::Behaviour::Silent);
  EventLog log;
  auto connection = StartOpen(silent.Port(), log);
  ASSERT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
  const auto start = steady_clock::now();
  connection.reset();
  EXPECT_LT(steady_clock::now() - start, soon);
}

TEST_P(NativeFaults, AWrongPasswordIsNotShown) {
  const auto connection = data_.CreateConnection();
  const std::string string = GetParam().ConnectionString();
  connection->SetConnectionString(string.substr(0, string.rfind('=') + 1) + "Wr0ng-Secret");
  const ErrorInfo error = ErrorOf([&] { OpenNow(*connection); });
  EXPECT_THAT(error.description, HasSubstr("tessel"));
  EXPECT_THAT(error.description, Not(HasSubstr("Wr0ng-Secret")));
}

// --- cancelling ----------------------------------------------------------------------------------

TEST_P(NativeFaults, AStatementIsCancelledAndTheConnectionStaysUsable) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().sleep, log);
  PumpFor(milliseconds(200));
  ASSERT_EQ(log.Ends(), 0);
  ExpectCancelled(recordset.Operation(), log);
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, ACancelRightAfterTheStartIsNotLost) {
  const auto connection = Connect();
  for (int round = 0; round < 30; ++round) {
    EventLog log;
    const auto recordset = Start(*connection, GetParam().sleep, log);
    std::this_thread::sleep_for(std::chrono::microseconds(100 * round));
    ASSERT_NO_FATAL_FAILURE(ExpectCancelled(recordset.Operation(), log));
    ASSERT_EQ(connection->State(), objectState::open);
  }
  ExpectUsable(*connection);
}

/// The request comes about when the statement ends: the end is announced once, as one or the other,
/// and the next statement is not hit.
TEST_P(NativeFaults, ALateCancelHitsNothingElse) {
  const auto connection = Connect();
  for (int round = 0; round < 100; ++round) {
    EventLog log;
    const auto recordset = Start(*connection, GetParam().nap, log);
    std::this_thread::sleep_for(std::chrono::microseconds(15000 + 100 * round));
    recordset.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    if (log.LastError()) {
      ASSERT_EQ(log.LastError()->number, errorNumber::cancelled) << log.LastError()->description;
    }
    ASSERT_EQ(ToText(ToView(Cell(*connection, "select 8"))), "8") << "round " << round;
    ASSERT_EQ(log.Ends(), 1);
  }
}

/// A change that was made is not called a failure, and one called cancelled was not made.
TEST_P(NativeFaults, ALateCancelTellsTheTruthOfAChange) {
  const auto connection = Connect();
  const ScratchTable table(connection, "n varchar(20)");
  std::int64_t done = 0;
  for (int round = 0; round < 100; ++round) {
    EventLog log;
    const auto recordset =
        Start(*connection, "insert into " + table.Name() + " " + GetParam().nap, log);
    std::this_thread::sleep_for(std::chrono::microseconds(15000 + 100 * round));
    recordset.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    if (!log.LastError()) ++done;
  }
  EXPECT_EQ(Cell(*connection, "select count(*) from " + table.Name()), Value(done));
}

TEST_P(NativeFaults, AFetchWithoutEndIsCancelledAndKeepsItsRows) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().endless, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  ExpectCancelled(recordset.Operation(), log);
  EXPECT_GT(recordset->RecordCount(), 0);
  EXPECT_EQ(ToText(recordset->ValueAt(recordset->RecordCount() - 1, 0)),
            std::to_string(recordset->RecordCount()));
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, ClosingUnderAnEndlessFetchDoesNotWaitForItsRows) {
  auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().endless, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  const auto start = steady_clock::now();
  connection.reset();
  EXPECT_LT(steady_clock::now() - start, soon);
  EXPECT_GT(recordset->RecordCount(), 0);
}

// --- a server that stops or dies -----------------------------------------------------------------

TEST_P(NativeFaults, AStatementOnAFrozenServerIsLeftAtACancel) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().sleep, log);
  PumpFor(milliseconds(200));
  {
    const FrozenServer frozen(GetParam().server());
    ExpectCancelled(recordset.Operation(), log);
    EXPECT_EQ(connection->State(), objectState::closed);
  }
  OpenNow(*connection);
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, AChangeOfCatalogOnAFrozenServerIsLeftAtACancel) {
  const auto connection = Connect();
  EventLog log;
  {
    const FrozenServer frozen(GetParam().server());
    const auto change = connection->StartUseCatalog("elsewhere");
    log.Watch(*change);
    PumpFor(milliseconds(200));
    ExpectCancelled(*change, log);
  }
  connection->Close();
  OpenNow(*connection);
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, AFetchFromAFrozenServerIsLeftAtACancelWithItsRows) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().endless, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  {
    const FrozenServer frozen(GetParam().server());
    PumpFor(milliseconds(300));
    ExpectCancelled(recordset.Operation(), log);
    EXPECT_GT(recordset->RecordCount(), 0);
  }
  connection->Close();
  OpenNow(*connection);
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, AfterTheServersDeathTheConnectionIsClosedAndOpensAgain) {
  const auto connection = Connect();
  ExpectUsable(*connection);
  GetParam().server().Kill();
  const ErrorInfo error = ErrorOf([&] { Run(*connection, "select 2"); });
  EXPECT_FALSE(error.description.empty());
  EXPECT_EQ(error.source, GetParam().name);
  RecordProperty("error", error.description);
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_THROW(OpenNow(*connection), Error);
  GetParam().server().Restart();
  OpenNow(*connection);
  ExpectUsable(*connection);
}

TEST_P(NativeFaults, AServerThatDiesUnderAStatementEndsIt) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().sleep, log);
  PumpFor(milliseconds(200));
  GetParam().server().Kill();
  EXPECT_TRUE(PumpToEnd(log));
  GetParam().server().Restart();
  ASSERT_TRUE(log.LastError());
  EXPECT_NE(log.LastError()->number, errorNumber::cancelled);
  EXPECT_EQ(connection->State(), objectState::closed);
}

TEST_P(NativeFaults, AServerThatDiesUnderAFetchLeavesTheRowsSoFar) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, GetParam().endless, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  GetParam().server().Kill();
  EXPECT_TRUE(PumpToEnd(log));
  GetParam().server().Restart();
  ASSERT_TRUE(log.LastError());
  EXPECT_NE(log.LastError()->number, errorNumber::cancelled);
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_GT(recordset->RecordCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Native, NativeFaults, testing::Values(PostgresNative(), MariaNative()),
                         [](const auto& info) { return info.param.name; });

}  // namespace tessel::test
