#include "logic/program/dlgAsync.h"

#include <functional>
#include <vector>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel {
namespace {

using Step = test::DesktopScript::Step;

class dlgAsyncTest : public test::LogicFixture {
 protected:
  dlgAsyncTest() {
    frame->Show();
    connection->SetConnectionString("Provider=Fake");
  }

  void OpenConnection() { test::OpenNow(*connection); }
  std::shared_ptr<QueryOperation> Query(const std::string& sql) {
    return connection->StartQuery(sql, LockType::ReadOnly);
  }
  static MemoryRows Rows(std::size_t count) {
    MemoryRows rows;
    for (std::size_t i = 0; i < count; ++i) rows.push_back({Value(static_cast<std::int64_t>(i))});
    return rows;
  }
  std::string Message() { return desktop.WindowOf("dlgAsync").Find<Label>("lblMessage").Caption(); }
  std::string Elapsed() { return desktop.WindowOf("dlgAsync").Find<Label>("lblTimer").Caption(); }
  static void Cancel(test::HeadlessWindow& w) { w.Click("cmdCancel"); }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  dlgAsync async{desktop, *frame};
  std::shared_ptr<Connection> connection = data.CreateConnection();
  std::int64_t affected = 0;
};

TEST(FormatElapsedTest, CountsHoursModulo24) {
  EXPECT_EQ(FormatElapsed(0), "00:00:00");
  EXPECT_EQ(FormatElapsed(67'999), "00:01:07");
  EXPECT_EQ(FormatElapsed(25LL * 3600 * 1000), "01:00:00");
}

TEST_F(dlgAsyncTest, ConnectsWithTheUserAndPasswordGiven) {
  EXPECT_TRUE(async.DoConnect(connection, "me", "secret"));
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_EQ(data.Log().opened.at(0).user, "me");
  EXPECT_EQ(data.Log().opened.at(0).password, "secret");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(dlgAsyncTest, ShowsWhatItDoesWhileConnecting) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    EXPECT_EQ(Message(), "\nConnecting...");
    EXPECT_EQ(Elapsed(), "00:00:00");
    desktop.AdvanceTime(67'000);
    EXPECT_EQ(Elapsed(), "00:01:07");
    EXPECT_FALSE(w.VisibleInFact("prgProgress"));
    data.Resume();
  });
  EXPECT_TRUE(async.DoConnect(connection, "", ""));
}

TEST_F(dlgAsyncTest, ACancelledConnectReturnsFalseAndRaisesNothing) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    Cancel(w);
    EXPECT_EQ(Message(), "\nCancelling...");
  });
  EXPECT_FALSE(async.DoConnect(connection, "", ""));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_EQ(data.Log().cancels, 1);
}

TEST_F(dlgAsyncTest, OnlyTheFirstCancelActs) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) {
    Cancel(w);
    Cancel(w);
  });
  EXPECT_FALSE(async.DoConnect(connection, "", ""));
  EXPECT_EQ(data.Log().cancels, 1);
}

TEST_F(dlgAsyncTest, ClosingTheWindowOrPressingEscapeCancels) {
  for (const bool escape : {false, true}) {
    data.holdConnecting = true;
    desktop.OnModal("dlgAsync", [escape](test::HeadlessWindow& w) {
      if (escape) w.PressKey(key::escape);
      else w.CloseByControlBox();
    });
    EXPECT_FALSE(async.DoConnect(connection, "", ""));
  }
  EXPECT_EQ(data.Log().cancels, 2);
}

TEST_F(dlgAsyncTest, EnterOnCancelCancels) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [](test::HeadlessWindow& w) { w.PressKey(key::enter); });
  EXPECT_FALSE(async.DoConnect(connection, "", ""));
  EXPECT_EQ(data.Log().cancels, 1);
}

TEST_F(dlgAsyncTest, ItsTitleNamesTheConnectionOfTheOperation) {
  const auto title = [&] { return desktop.WindowOf("dlgAsync").Caption(); };
  async.InitProcess("x");
  EXPECT_EQ(title(), "Tessel");
  async.Unload();
  async.NameConnection(connection, "first");
  async.NameConnection(connection, "Shop");
  async.InitProgress("x", 1, connection.get());
  EXPECT_EQ(title(), "Shop");
  async.Unload();
  async.InitProcess("x");
  EXPECT_EQ(title(), "Tessel") << "it may be for another one";
  async.Unload();
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [&](test::HeadlessWindow& w) {
    EXPECT_EQ(title(), "Shop");
    Cancel(w);
  });
  EXPECT_FALSE(async.DoConnect(connection, "", ""));
}

TEST_F(dlgAsyncTest, AnErrorOfTheCompletionIsRaisedWithItsPartsAfterTheWindowHasGone) {
  ErrorInfo failure = MemoryError("password authentication failed");
  failure.sqlState = "28P01";
  failure.helpContext = 7;
  data.openFailure = failure;
  try {
    async.DoConnect(connection, "", "");
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "password authentication failed");
    EXPECT_EQ(error.Number(), errorNumber::database);
    EXPECT_EQ(error.Info().sqlState, "28P01");
    EXPECT_EQ(error.Info().helpContext, 7);
  }
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(dlgAsyncTest, AnErrorRaisedAtOnceIsRaisedUnchanged) {
  data.openRefused = MemoryError("There is no provider 'X'.", errorNumber::providerNotFound);
  try {
    async.DoConnect(connection, "", "");
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), errorNumber::providerNotFound);
  }
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(dlgAsyncTest, FetchesRowsAndShowsHowManyThereAre) {
  OpenConnection();
  data.Answer("select", {MemoryField("n", DataType::Integer)}, Rows(250)).HoldAtRow(200);
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow&) {
    EXPECT_EQ(Message(), "Fetching records...\n200");
    data.Resume();
  });
  const auto query = Query("select");
  EXPECT_TRUE(async.DoQuery(query, affected, true));
  EXPECT_EQ(query->FirstRows()->State(), objectState::open);
  EXPECT_EQ(query->FirstRows()->RecordCount(), 250);
}

TEST_F(dlgAsyncTest, AnOperationThatIsOverBeforeTheWindowShowsEndsAtOnce) {
  OpenConnection();
  data.AnswerCount("update", 3);
  const auto query = Query("update");
  EXPECT_TRUE(async.DoQuery(query, affected, true));
  EXPECT_EQ(affected, 3);
}

TEST_F(dlgAsyncTest, AWindowThatBecomesActiveWhenTheWorkIsDoneHidesAtOnce) {
  data.holdConnecting = true;
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    frame->Activate();
    w.Activate();
    EXPECT_TRUE(w.Visible()) << "the work goes on";
    data.Resume();
    desktop.DrainEvents();
    EXPECT_FALSE(w.Visible());
    w.Show();
    EXPECT_FALSE(w.Visible()) << "active once more";
    w.Hide();
  });
  EXPECT_TRUE(async.DoConnect(connection, "", ""));
}

TEST_F(dlgAsyncTest, CancelDuringALongFetchReturnsFalseAndKeepsTheRowsSoFar) {
  OpenConnection();
  data.Answer("select", {MemoryField("n", DataType::Integer)}, Rows(1000)).HoldAtRow(300);
  desktop.OnModal("dlgAsync", Cancel);
  const auto query = Query("select");
  EXPECT_FALSE(async.DoQuery(query, affected, true));
  EXPECT_EQ(query->FirstRows()->State(), objectState::open);
  EXPECT_EQ(query->FirstRows()->RecordCount(), 300);
}

TEST_F(dlgAsyncTest, CancelDuringTheExecutionReturnsFalseWithTheRecordsetClosed) {
  OpenConnection();
  data.Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    EXPECT_EQ(Message(), "\nExecuting...");
    Cancel(w);
  });
  const auto query = Query("select");
  EXPECT_FALSE(async.DoQuery(query, affected, true));
  EXPECT_EQ(query->FirstRows(), nullptr);
}

TEST_F(dlgAsyncTest, AnActionStatementEndsWithItsCount) {
  OpenConnection();
  data.AnswerCount("update", 42);
  EXPECT_TRUE(async.DoQuery(Query("update"), affected, true));
  EXPECT_EQ(affected, 42);
}

TEST_F(dlgAsyncTest, AFailedExecutionIsRaised) {
  OpenConnection();
  data.AnswerError("select", MemoryError("no such table: x"));
  EXPECT_THROW(async.DoQuery(Query("select"), affected, true), Error);
}

TEST_F(dlgAsyncTest, AFetchThatFailsHalfwayIsRaised) {
  OpenConnection();
  data.Answer("select", {MemoryField("n", DataType::Integer)}, Rows(500))
      .FailAtRow(300, MemoryError("server gone"));
  const auto query = Query("select");
  try {
    async.DoQuery(query, affected, true);
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "server gone");
  }
}

TEST_F(dlgAsyncTest, BeforeTheExecutionHasCompletedTheCountIsMinusTwo) {
  OpenConnection();
  data.Answer("select", MemoryFields({"a"}), {}).HoldExecuting();
  const auto query = Query("select");
  desktop.OnModal("dlgAsync", [&](test::HeadlessWindow& w) {
    EXPECT_EQ(query->RecordsAffected(), -2);
    Cancel(w);
  });
  EXPECT_FALSE(async.DoQuery(query, affected, true));
  EXPECT_EQ(affected, -1) << "it ended, and told of none";
}

TEST_F(dlgAsyncTest, ItWaitsForSeveralOperationsAndCancelsThemAll) {
  const std::shared_ptr<Connection> other = data.CreateConnection();
  other->SetConnectionString("Provider=Other");
  for (const bool cancel : {false, true}) {
    data.holdConnecting = true;
    const dlgAsync::Operations opening = {connection->StartOpen({}, {}), other->StartOpen({}, {})};
    desktop.OnModal("dlgAsync", [&](test::HeadlessWindow& w) {
      EXPECT_EQ(Message(), "\nConnecting...");
      if (cancel) return Cancel(w);
      desktop.ProcessPending();
      data.ResumeAll();
    });
    EXPECT_EQ(async.RunAll(opening, "Connecting...", true), !cancel);
    for (const auto& operation : opening) EXPECT_TRUE(operation->HasEnded());
    EXPECT_EQ(connection->State(), cancel ? objectState::closed : objectState::open);
    EXPECT_EQ(other->State(), cancel ? objectState::closed : objectState::open);
    connection->Close();
    other->Close();
  }
}

TEST_F(dlgAsyncTest, ABlockingQueryShowsWaitAndCannotBeCancelled) {
  OpenConnection();
  data.Answer("select", {MemoryField("n", DataType::Integer)}, Rows(5));
  int yields = 0;
  desktop.OnProcessPending([&](int) {
    ++yields;
    EXPECT_EQ(Elapsed(), "wait...");
    desktop.AdvanceTime(1000);
    EXPECT_EQ(Elapsed(), "wait...");
    EXPECT_FALSE(desktop.WindowOf("dlgAsync").Find<Button>("cmdCancel").Enabled());
    EXPECT_FALSE(frame->Enabled());
  });
  const auto query = Query("select");
  EXPECT_TRUE(async.DoQuery(query, affected, false));
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(query->FirstRows()->RecordCount(), 5);
  EXPECT_TRUE(frame->Enabled());
}

TEST_F(dlgAsyncTest, ABlockingActionStatementGivesItsCount) {
  OpenConnection();
  data.AnswerCount("update", 9);
  EXPECT_TRUE(async.DoQuery(Query("update"), affected, false));
  EXPECT_EQ(affected, 9);
}

// --- changing rows -------------------------------------------------------------------------------

class dlgAsyncChangeTest : public dlgAsyncTest {
 protected:
  dlgAsyncChangeTest() {
    OpenConnection();
    table = data.Answer("rows", {MemoryField("n", DataType::Integer)}, Rows(3)).rows;
    rows = test::QueryNow(*connection, "rows", LockType::Optimistic);
  }

  /// Every way to change the records, or to take back what is pending.
  static std::vector<std::function<void()>> ChangesOf(Recordset& records) {
    return {[&] { records.SetFieldValue(0, Value(std::int64_t{30})); }, [&] { records.AddNew(); },
            [&] { (void)records.StartUpdate(); }, [&] { (void)records.StartDelete(); },
            [&] { records.CancelUpdate(); }};
  }
  /// Why something is refused; empty when it is not.
  static std::string ReasonOf(const std::function<void()>& change) {
    try {
      change();
    } catch (const Error& error) {
      return error.Description();
    }
    return {};
  }

  std::shared_ptr<MemoryRows> table;
  std::shared_ptr<Recordset> rows;
};

TEST_F(dlgAsyncChangeTest, WritesAndDeletes) {
  for (const bool asynchronously : {true, false}) {
    rows->SetFieldValue(0, Value(std::int64_t{asynchronously ? 10 : 20}));
    EXPECT_TRUE(async.Run(rows->StartUpdate(), "Saving the record...", asynchronously));
    EXPECT_EQ(table->at(0).at(0), Value(std::int64_t{asynchronously ? 10 : 20}));
    EXPECT_TRUE(frame->Enabled());
  }
  EXPECT_TRUE(async.Run(rows->StartDelete(), "Deleting the record...", true));
  EXPECT_EQ(table->size(), 2U);
  EXPECT_EQ(rows->State(), objectState::open);
}

TEST_F(dlgAsyncChangeTest, WithNothingPendingItIsOverAtOnce) {
  EXPECT_TRUE(async.Run(rows->StartUpdate(), "Saving the record...", true));
  EXPECT_EQ(data.Log().changes, 0);
}

TEST_F(dlgAsyncChangeTest, AFailureIsRaisedAndTheChangeStaysPending) {
  data.changeFailure = MemoryError("constraint failed");
  rows->SetFieldValue(0, Value(std::int64_t{10}));
  for (const bool asynchronously : {true, false}) try {
      static_cast<void>(async.Run(rows->StartUpdate(), "Saving the record...", asynchronously));
      FAIL() << "nothing was raised";
    } catch (const Error& error) {
      EXPECT_EQ(error.Description(), "constraint failed");
    }
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
}

TEST_F(dlgAsyncChangeTest, ACancelReturnsFalseAndTheChangeStaysPending) {
  data.holdChanges = true;
  rows->SetFieldValue(0, Value(std::int64_t{10}));
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    EXPECT_EQ(Message(), "\nSaving the record...");
    Cancel(w);
  });
  EXPECT_FALSE(async.Run(rows->StartUpdate(), "Saving the record...", true));
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
  desktop.OnModal("dlgAsync", [this](test::HeadlessWindow& w) {
    EXPECT_EQ(Message(), "\nDeleting the record...");
    Cancel(w);
  });
  EXPECT_FALSE(async.Run(rows->StartDelete(), "Deleting the record...", true));
  EXPECT_EQ(table->size(), 3U);
}

TEST_F(dlgAsyncChangeTest, RecordsThatAreStillArrivingAreNotChanged) {
  data.Answer("more", {MemoryField("n", DataType::Integer)}, Rows(250)).HoldAtRow(200);
  const auto query = connection->StartQuery("more", LockType::Optimistic);
  desktop.OnModal("dlgAsync", [&](test::HeadlessWindow&) {
    EXPECT_EQ(query->FirstRows()->RecordCount(), 200);
    for (const auto& change : ChangesOf(*query->FirstRows()))
      EXPECT_EQ(ReasonOf(change), "The records are still being fetched.");
    data.Resume();
  });
  EXPECT_TRUE(async.DoQuery(query, affected, true));
  const std::shared_ptr<Recordset> more = query->FirstRows();
  EXPECT_EQ(more->WhyNotChangeable(), std::nullopt);
  more->SetFieldValue(0, Value(std::int64_t{-1}));
  EXPECT_TRUE(async.Run(more->StartUpdate(), "Saving the record...", true));
}

TEST_F(dlgAsyncChangeTest, ARecordThatIsBeingWrittenIsLeftAlone) {
  data.holdChanges = true;
  rows->SetFieldValue(0, Value(std::int64_t{10}));
  desktop.OnModal("dlgAsync", [&](test::HeadlessWindow&) {
    for (const auto& change : ChangesOf(*rows))
      EXPECT_EQ(ReasonOf(change), "The change is being written.");
    data.Resume();
  });
  EXPECT_TRUE(async.Run(rows->StartUpdate(), "Saving the record...", true));
  EXPECT_EQ(table->at(0).at(0), Value(std::int64_t{10}));
  EXPECT_EQ(rows->Editing(), EditMode::None);
  EXPECT_EQ(data.Log().changes, 1);
}

// --- the program's own loops ---------------------------------------------------------------------

TEST_F(dlgAsyncTest, AProcessShowsItsMessageModelessWithoutABar) {
  async.InitProcess("Preprocessing SQL...");
  EXPECT_EQ(Message(), "\nPreprocessing SQL...");
  EXPECT_TRUE(desktop.WindowOf("dlgAsync").Visible());
  EXPECT_FALSE(desktop.WindowOf("dlgAsync").VisibleInFact("prgProgress"));
  EXPECT_TRUE(async.Yield());
  async.Unload();
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(dlgAsyncTest, TheFrameIsDisabledDuringEachYieldOnly) {
  async.InitProcess("x");
  desktop.OnProcessPending([this](int) { EXPECT_FALSE(frame->Enabled()); });
  async.Yield();
  EXPECT_TRUE(frame->Enabled());
  EXPECT_EQ(desktop.ProcessPendingCount(), 1);
  async.Unload();
}

TEST_F(dlgAsyncTest, CancelInALoopMakesTheNextStepReturnFalse) {
  async.InitProgress("Converting all 10 records...", 10);
  EXPECT_EQ(Message(), "Converting all 10 records...");
  desktop.OnProcessPending([this](int call) {
    if (call == 3) Cancel(desktop.WindowOf("dlgAsync"));
  });
  int steps = 1;
  while (async.DoProgress(1)) ++steps;
  EXPECT_EQ(steps, 3);
  async.Unload();
}

TEST_F(dlgAsyncTest, ALoopIsServedAtEachStepOfItsBarAndNotAtEachOfItsOwn) {
  struct Loop {
    std::int64_t count;
    std::vector<double> servedAt;
  };
  for (const Loop& loop :
       {Loop{1, {0}}, Loop{3, {0, 1, 2}},
        Loop{40, {0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30, 32, 34, 36, 38}}}) {
    std::vector<double> servedAt;
    std::int64_t taken = 0;
    desktop.OnProcessPending([&](int /*call*/) {
      servedAt.push_back(desktop.WindowOf("dlgAsync").Find<ProgressBar>("prgProgress").Value());
      EXPECT_EQ(static_cast<double>(taken), servedAt.back() + 1);
    });
    EXPECT_TRUE(async.ForEach("x", nullptr, loop.count, [&](std::int64_t /*i*/) { ++taken; }));
    EXPECT_EQ(servedAt, loop.servedAt);
    EXPECT_EQ(taken, loop.count);
  }
}

TEST_F(dlgAsyncTest, ALoopSaysHowManyRecordsAreDoneAndItsClockRuns) {
  std::vector<std::string> said;
  desktop.OnProcessPending([&](int call) {
    if (call <= 3) said.push_back(desktop.WindowOf("dlgAsync").Find<Label>("lblDone").Caption());
    if (call == 3) {
      EXPECT_EQ(Elapsed(), "00:00:02");
    }
    desktop.AdvanceTime(1000);
  });
  const auto step = [](std::int64_t /*i*/) {};
  EXPECT_TRUE(async.ForEach("Converting all 64 records...", nullptr, 64, step, 1, "records"));
  EXPECT_EQ(said, (std::vector<std::string>{"0 of 64 records, 0 %", "2 of 64 records, 3 %",
                                            "4 of 64 records, 6 %"}));
}

TEST_F(dlgAsyncTest, HowMuchIsDoneIsNotSaidMoreOftenThanAnybodyReads) {
  async.InitProgress("x", 32);
  const auto done = [this] {
    return desktop.WindowOf("dlgAsync").Find<Label>("lblDone").Caption();
  };
  for (int i = 0; i < 8; ++i) EXPECT_TRUE(async.DoProgress(1));
  EXPECT_EQ(done(), "0 of 32, 0 %");
  desktop.AdvanceTime(100);
  EXPECT_TRUE(async.DoProgress(1));
  EXPECT_EQ(done(), "8 of 32, 25 %");
  async.InitProcess("x");
  EXPECT_EQ(done(), "") << "no bar";
  async.Unload();
}

class ProgressTest : public dlgAsyncTest,
                     public ::testing::WithParamInterface<std::tuple<double, int, int>> {};

TEST_P(ProgressTest, TheBarYieldsAtEveryStep) {
  const auto [maximum, steps, yields] = GetParam();
  async.InitProgress("x", maximum);
  EXPECT_TRUE(desktop.WindowOf("dlgAsync").VisibleInFact("prgProgress"));
  for (int i = 0; i < steps; ++i) EXPECT_TRUE(async.DoProgress(1));
  EXPECT_EQ(desktop.ProcessPendingCount(), yields);
  EXPECT_EQ(desktop.WindowOf("dlgAsync").Find<ProgressBar>("prgProgress").Value(),
            std::min<double>(steps, maximum));
  async.Unload();
}

INSTANTIATE_TEST_SUITE_P(Maximums, ProgressTest,
                         ::testing::Values(std::tuple(100.0, 100, 25),    // every 4 units
                                           std::tuple(10000.0, 160, 10),  // every 16 units
                                           std::tuple(1.0, 1, 1)));       // every unit

}  // namespace
}  // namespace tessel
