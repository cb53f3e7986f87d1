#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/data/faults/FaultClients.h"
#include "tests/data/servers/FaultProxy.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/Slowdown.h"

namespace tessel::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Kind = Fault::Kind;

/// A cancel must be answered within this, on a machine with other work too.
constexpr milliseconds soon = slowdown * milliseconds(2000);
/// What is broken must be noticed within this; what is stalled must not have ended before.
constexpr milliseconds patience{3000};
/// No call on the UI thread may take longer, on a machine with other work too.
constexpr milliseconds longestCall{700};

constexpr std::int64_t rowCount = 60'000;

/// A place in the talk of client and server at which something goes wrong.
struct FaultPoint {
  std::string name;
  Fault where;
};

void PrintTo(const FaultPoint& point, std::ostream* out) { *out << point.name; }

FaultPoint InConnect() { return {"Connect", {.answerBytes = 0}}; }
FaultPoint InLogin() { return {"Login", {.answerBytes = 10}}; }
FaultPoint LateInLogin() { return {"LateLogin", {.answerBytes = 110}}; }
FaultPoint AtRequest() { return {"Request", {.request = "row ", .atRequest = true}}; }
FaultPoint AtAnswer() { return {"Answer", {.request = "row ", .answerBytes = 0}}; }
FaultPoint InColumns() { return {"Columns", {.request = "row ", .answerBytes = 40}}; }
FaultPoint InFirstRows() { return {"FirstRows", {.request = "row ", .answerBytes = 400}}; }
FaultPoint InMiddleRows() { return {"MiddleRows", {.request = "row ", .answerBytes = 500'003}}; }

std::string NameOf(Kind kind) {
  switch (kind) {
    case Kind::Reset: return "Reset";
    case Kind::Close: return "Closed";
    case Kind::Stall: return "Stalled";
    case Kind::Delay: return "Delayed";
    case Kind::Corrupt: return "Corrupted";
    case Kind::None: return "Well";
  }
  return {};
}

using FaultCase = std::tuple<FaultClient, FaultPoint, Kind>;

/// MariaDB's ODBC driver (3.1.15) crashes inside SQLExecDirect when the connection breaks while it
/// reads what the columns are.
bool DriverCrashes(const FaultCase& fault) {
  const auto& [client, point, kind] = fault;
  return client.name == "MariaOdbc" && point.name == "Columns" && kind != Kind::Stall;
}

std::string NameOfCase(const testing::TestParamInfo<FaultCase>& info) {
  const auto& [client, point, kind] = info.param;
  return client.name + "_" + point.name + "_" + NameOf(kind);
}

}  // namespace

/// Something goes wrong between the program and its server. Whatever it is: the UI thread is never
/// held, the work ends once, by itself or at a cancel, no wrong row is shown, and the program goes
/// on.
class FaultTest : public DataTest {
 protected:
  explicit FaultTest(const FaultClient& client)
      : client_(client), proxy_(client.server().Login().port) {}
  void TearDown() override { EXPECT_LT(longest_, longestCall); }

  /// The time that a call on the UI thread takes counts.
  template <class Call>
  void Timed(Call call) {
    const auto start = steady_clock::now();
    call();
    longest_ = std::max(longest_, steady_clock::now() - start);
  }
  bool PumpFor(const EventLog& log, milliseconds limit) {
    const auto end = steady_clock::now() + limit;
    while (log.Ends() == 0 && steady_clock::now() < end) {
      Timed([&] { queue_.Pump(); });
      std::this_thread::sleep_for(milliseconds(1));
    }
    return log.Ends() > 0;
  }
  [[nodiscard]] std::shared_ptr<Connection> Connect(int port) {
    return ConnectTo(client_.stringAt(port));
  }
  /// What stalls waits for a cancel; all else must end by itself, except what was corrupted: that
  /// may make the client wait for more than will ever come.
  void AwaitEnd(Operation& operation, const EventLog& log, Kind kind) {
    const bool ended = PumpFor(log, kind == Kind::Stall ? milliseconds(300) : patience);
    if (kind == Kind::Stall) {
      EXPECT_FALSE(ended);
    } else if (kind != Kind::Corrupt) {
      EXPECT_TRUE(ended);
    }
    if (!ended) ExpectCancelled(operation, log);
    (void)PumpFor(EventLog(), milliseconds(30));
    EXPECT_EQ(log.Ends(), 1);
  }
  void ExpectCancelled(Operation& operation, const EventLog& log) {
    const auto start = steady_clock::now();
    Timed([&] { operation.Cancel(); });
    ASSERT_TRUE(PumpFor(log, std::chrono::seconds(20)));
    EXPECT_LT(steady_clock::now() - start, soon);
    ASSERT_TRUE(log.LastError());
    EXPECT_EQ(log.LastError()->number, errorNumber::cancelled) << log.LastError()->description;
  }
  /// Every row is the right one; behind a corruption the last one may be what was corrupted.
  static void ExpectRightRows(const Recordset& recordset, Kind kind) {
    const std::int64_t good = recordset.RecordCount() - (kind == Kind::Corrupt ? 1 : 0);
    for (std::int64_t row = 0; row < good; ++row) {
      ASSERT_EQ(ToText(recordset.ValueAt(row, 0)), std::to_string(row + 1));
      ASSERT_EQ(ToText(recordset.ValueAt(row, 1)), "row " + std::to_string(row + 1));
    }
  }
  /// Once what is in the way is gone. Behind a corruption that nobody could see, client or server
  /// may still wait for what never comes; a cancel and a reconnect help.
  void ExpectGoesOn(Connection& connection, Kind kind) {
    proxy_.Clear();
    if (connection.State() == objectState::closed) OpenNow(connection);
    if (kind == Kind::Corrupt && !Answers(connection)) {
      connection.Close();
      OpenNow(connection);
    }
    EXPECT_EQ(ToText(ToView(Cell(connection, "select 42"))), "42");
  }
  /// Whether a command ends before it has to be cancelled.
  [[nodiscard]] bool Answers(Connection& connection) {
    EventLog log;
    const auto answer = Start(connection, "select 42", log);
    if (PumpFor(log, patience)) return !log.LastError();
    ExpectCancelled(answer.Operation(), log);
    return false;
  }

  const FaultClient client_;
  FaultProxy proxy_;
  steady_clock::duration longest_{};
};

class FaultPoints : public FaultTest, public testing::WithParamInterface<FaultCase> {
 protected:
  FaultPoints() : FaultTest(std::get<FaultClient>(GetParam())) {}

  [[nodiscard]] static Kind TheKind() { return std::get<Kind>(GetParam()); }
  [[nodiscard]] static Fault TheFault() {
    Fault fault = std::get<FaultPoint>(GetParam()).where;
    fault.kind = TheKind();
    return fault;
  }
  /// ODBC drivers read all rows before they give the first; a worker that stalls may keep those of
  /// the last moment.
  [[nodiscard]] static bool BreaksAmongRows() {
    return std::get<FaultPoint>(GetParam()).name == "MiddleRows" &&
           std::get<FaultClient>(GetParam()).name.ends_with("Native") &&
           (TheKind() == Kind::Reset || TheKind() == Kind::Close);
  }
  void RecordError(const EventLog& log) {
    if (log.LastError()) RecordProperty("error", log.LastError()->description);
  }
};

// --- connecting ----------------------------------------------------------------------------------

using FaultsInConnecting = FaultPoints;

TEST_P(FaultsInConnecting, EndAndLeaveTheConnectionClosed) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(client_.stringAt(proxy_.Port()));
  EventLog log;
  proxy_.Set(TheFault());
  std::shared_ptr<Operation> opening;
  Timed([&] { opening = connection->StartOpen({}, {}); });
  log.Watch(*opening);
  ASSERT_TRUE(proxy_.WaitUntilStruck(std::chrono::seconds(10)));
  AwaitEnd(*opening, log, TheKind());
  RecordError(log);
  EXPECT_TRUE(log.LastError());
  EXPECT_EQ(connection->State(), objectState::closed);
  ExpectGoesOn(*connection, TheKind());
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultsInConnecting,
    testing::Combine(testing::Values(PostgresNativeClient(), MariaNativeClient(),
                                     PostgresOdbcClient(), MariaOdbcClient()),
                     testing::Values(InConnect(), InLogin(), LateInLogin()),
                     testing::Values(Kind::Reset, Kind::Close, Kind::Stall, Kind::Corrupt)),
    NameOfCase);

// --- executing and fetching ----------------------------------------------------------------------

using FaultsInCommands = FaultPoints;

TEST_P(FaultsInCommands, EndWithTheRowsSoFar) {
  if (DriverCrashes(GetParam())) GTEST_SKIP() << "The driver crashes.";
  const auto connection = Connect(proxy_.Port());
  EventLog log;
  proxy_.Set(TheFault());
  StartedQuery recordset;
  Timed([&] { recordset = Start(*connection, client_.series(rowCount), log); });
  ASSERT_TRUE(proxy_.WaitUntilStruck(std::chrono::seconds(10)));
  AwaitEnd(recordset.Operation(), log, TheKind());
  RecordError(log);
  EXPECT_TRUE(log.LastError());
  const bool open = (recordset.State() & objectState::open) != 0;
  EXPECT_TRUE(open || !BreaksAmongRows()) << "those that came are there";
  if (open) {
    EXPECT_LT(recordset->RecordCount(), rowCount);
    EXPECT_TRUE(!BreaksAmongRows() || recordset->RecordCount() > 0);
    ExpectRightRows(*recordset, TheKind());
  }
  ExpectGoesOn(*connection, TheKind());
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultsInCommands,
    testing::Combine(testing::Values(PostgresNativeClient(), MariaNativeClient(),
                                     PostgresOdbcClient(), MariaOdbcClient()),
                     testing::Values(AtRequest(), AtAnswer(), InColumns(), InFirstRows(),
                                     InMiddleRows()),
                     testing::Values(Kind::Reset, Kind::Close, Kind::Stall, Kind::Corrupt)),
    NameOfCase);

// --- other places --------------------------------------------------------------------------------

class FaultsElsewhere : public FaultTest, public testing::WithParamInterface<FaultClient> {
 protected:
  FaultsElsewhere() : FaultTest(GetParam()) {}

  /// Starts a transaction with one row, whose commit then meets `fault`; returns how that ended.
  std::optional<ErrorInfo> CommitInto(Fault fault, const std::string& table) {
    proxy_.Clear();  // Drivers say "commit" while they connect, too.
    const auto connection = Connect(proxy_.Port());
    Run(*connection, "begin");
    Run(*connection, "insert into " + table + " values (1)");
    fault.request = "commit";
    proxy_.Set(fault);
    EventLog log;
    const auto recordset = Start(*connection, "commit", log);
    EXPECT_TRUE(proxy_.WaitUntilStruck(std::chrono::seconds(10)));
    AwaitEnd(recordset.Operation(), log, fault.kind);
    EXPECT_EQ(connection->State(), objectState::closed);
    return log.LastError();
  }
};

TEST_P(FaultsElsewhere, ASlowWayChangesNothing) {
  const auto connection = Connect(proxy_.Port());
  proxy_.Set({.kind = Kind::Delay});
  EventLog log;
  const auto recordset = Start(*connection, client_.series(rowCount), log);
  ASSERT_TRUE(PumpFor(log, std::chrono::seconds(60)));
  EXPECT_FALSE(log.LastError());
  EXPECT_EQ(recordset->RecordCount(), rowCount);
  ExpectRightRows(*recordset, Kind::None);
  ExpectGoesOn(*connection, Kind::None);
}

/// A commit that did not reach the server is never called done, and is not.
TEST_P(FaultsElsewhere, ACommitThatIsLostIsAFailureAndUndone) {
  for (const Kind kind : {Kind::Reset, Kind::Close, Kind::Stall}) {
    const auto direct = Connect(client_.server().Login().port);
    const ScratchTable table(direct, "n integer");
    EXPECT_TRUE(CommitInto({.kind = kind, .atRequest = true}, table.Name())) << NameOf(kind);
    proxy_.Clear();
    if (kind != Kind::Stall) {
      EXPECT_EQ(ToText(ToView(Cell(*direct, "select count(*) from " + table.Name()))), "0");
    }
  }
}

/// The server has committed, but nobody can know: the program says that the connection was lost.
TEST_P(FaultsElsewhere, ACommitWhoseAnswerIsLostIsNoSuccess) {
  for (const Kind kind : {Kind::Reset, Kind::Close, Kind::Stall}) {
    const auto direct = Connect(client_.server().Login().port);
    const ScratchTable table(direct, "n integer");
    EXPECT_TRUE(CommitInto({.kind = kind}, table.Name())) << NameOf(kind);
    EXPECT_EQ(ToText(ToView(Cell(*direct, "select count(*) from " + table.Name()))), "1");
  }
}

/// The request to cancel goes over a connection of its own.
TEST_P(FaultsElsewhere, ACancelThatDoesNotGetThroughEndsTheCommandAllTheSame) {
  for (const Kind kind : {Kind::Reset, Kind::Close, Kind::Stall, Kind::Corrupt}) {
    const auto connection = Connect(proxy_.Port());
    EventLog log;
    const auto recordset = Start(*connection, client_.sleep, log);
    EXPECT_FALSE(PumpFor(log, milliseconds(200)));
    proxy_.Set({.kind = kind, .fromConnection = proxy_.Connections() + 1});
    ExpectCancelled(recordset.Operation(), log);
    ExpectGoesOn(*connection, Kind::None);
  }
}

TEST_P(FaultsElsewhere, AServerThatStallsWhileTheConnectionIsClosedDoesNotHoldIt) {
  const auto connection = Connect(proxy_.Port());
  proxy_.Set({.kind = Kind::Stall, .atRequest = true});
  Timed([&] { connection->Close(); });
}

TEST_P(FaultsElsewhere, AStallThatEndsIsAsIfItHadNotBeen) {
  const auto connection = Connect(proxy_.Port());
  Fault fault = InMiddleRows().where;
  fault.kind = Kind::Stall;
  proxy_.Set(fault);
  EventLog log;
  const auto recordset = Start(*connection, client_.series(rowCount), log);
  ASSERT_TRUE(proxy_.WaitUntilStruck(std::chrono::seconds(10)));
  EXPECT_FALSE(PumpFor(log, milliseconds(200)));
  proxy_.Clear();
  ASSERT_TRUE(PumpFor(log, std::chrono::seconds(20)));
  EXPECT_FALSE(log.LastError());
  EXPECT_EQ(recordset->RecordCount(), rowCount);
  ExpectRightRows(*recordset, Kind::None);
}

TEST_P(FaultsElsewhere, AServerThatIsStartedAgainIsReachedAgain) {
  const auto connection = Connect(proxy_.Port());
  EventLog log;
  const auto recordset = Start(*connection, client_.sleep, log);
  EXPECT_FALSE(PumpFor(log, milliseconds(200)));
  client_.server().Restart();
  ASSERT_TRUE(PumpFor(log, patience));
  ASSERT_TRUE(log.LastError());
  EXPECT_NE(log.LastError()->number, errorNumber::cancelled);
  EXPECT_EQ(connection->State(), objectState::closed);
  ExpectGoesOn(*connection, Kind::None);
}

INSTANTIATE_TEST_SUITE_P(All, FaultsElsewhere,
                         testing::Values(PostgresNativeClient(), MariaNativeClient(),
                                         PostgresOdbcClient(), MariaOdbcClient()),
                         [](const auto& info) { return info.param.name; });

}  // namespace tessel::test
