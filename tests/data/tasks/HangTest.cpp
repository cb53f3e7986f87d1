#include "tests/data/tasks/WorkerTest.h"

#include <thread>

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

/// Drivers that do not come back.
class HangTest : public WorkerTest {
 protected:
  /// Shared with the script, which may outlive the test.
  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

TEST_F(HangTest, AConnectThatHangsEndsWhenCancelled) {
  script_->open = [gate = gate_](WorkContext&) { gate->Pass(); };
  EventLog log;
  const auto connection = NewConnection();
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  gate_->AwaitArrival();
  EXPECT_EQ(connection->State(), objectState::connecting);
  opening->Cancel();
  opening->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_TRUE(leftBehind_->Any());

  script_->open = nullptr;
  OpenNow(*connection);
  EXPECT_EQ(connection->State(), objectState::open);
  connection->Close();

  gate_->Open();
  EXPECT_TRUE(AllGone());
  EXPECT_EQ(script_->opens, 2);
  EXPECT_EQ(script_->closes, 2);
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
}

TEST_F(HangTest, IsWaitedForAsManyTimesLongerAsTheBuildIsSlow) {
  script_->open = [gate = gate_](WorkContext&) { gate->Pass(); };
  patienceFactor_ = 4;
  EventLog log;
  const auto connection = NewConnection();
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  gate_->AwaitArrival();
  const auto start = std::chrono::steady_clock::now();
  opening->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 4 * script_->patience);
  gate_->Open();
  EXPECT_TRUE(AllGone());
}

TEST_F(HangTest, AnExecutionThatHangsEndsWhenCancelledAndClosesTheConnection) {
  script_->execute = [gate = gate_](const std::string&, WorkContext&) {
    gate->Pass();
    return OneColumn();
  };
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  recordset.Cancel();
  EXPECT_EQ(connection->State(), objectState::open | objectState::executing);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_EQ(recordset.State(), objectState::closed);
  EXPECT_GT(script_->cancels, 0);

  const ErrorInfo error = ErrorOf([&] { Start(*connection, log); });
  EXPECT_EQ(error.number, errorNumber::objectClosed);
  EXPECT_THAT(error.description, HasSubstr("did not react to a cancel"));

  gate_->Open();
  EXPECT_TRUE(AllGone());
  queue_.Pump();
  EXPECT_EQ(log.Lines().size(), 1U) << "what comes too late is not told";
  EXPECT_EQ(script_->closes, 1);
}

TEST_F(HangTest, RowsFetchedBeforeAHangAreKept) {
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [gate = gate_, next = std::int64_t{1}](RowSink& rows, std::size_t,
                                                          WorkContext&) mutable {
    if (next > 4) gate->Pass();
    AddNumbers(rows, next, next);
    ++next;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return true;
  };
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "failed 3712"));
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2", "3", "4"));
  EXPECT_EQ(connection->State(), objectState::closed);
  gate_->Open();
  EXPECT_TRUE(AllGone());
  EXPECT_EQ(recordset->RecordCount(), 4);
}

TEST_F(HangTest, ACancelThatBlocksItselfDoesNotHoldTheEnd) {
  const auto cancelGate = std::make_shared<Gate>();
  script_->execute = [gate = gate_](const std::string&, WorkContext&) {
    gate->Pass();
    return NoColumns();
  };
  script_->cancel = [cancelGate] { cancelGate->Pass(); };
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  recordset.Cancel();
  cancelGate->AwaitArrival();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(connection->State(), objectState::closed);
  gate_->Open();
  cancelGate->Open();
  EXPECT_TRUE(AllGone());
}

TEST_F(HangTest, WorkThatIsDoneStaysDoneWhenItsAftermathHangs) {
  script_->execute = [](const std::string&, WorkContext& context) {
    context.EndStatement(4);
    return NoColumns();
  };
  const auto connection = Connect();
  script_->catalog = [gate = gate_] {
    gate->Pass();
    return std::string("late");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
  EXPECT_EQ(log.RecordsAffected(), 4);
  EXPECT_EQ(connection->State(), objectState::closed) << "the session hangs all the same";
  gate_->Open();
  EXPECT_TRUE(AllGone());
}

/// Works until it is cancelled, and then takes back what it did until the gate is open.
class TakenBackTask : public Task {
 public:
  explicit TakenBackTask(std::shared_ptr<Gate> gate) : gate_(std::move(gate)) {}
  bool Step(ProviderSession& /*session*/) override {
    begun_.Pass();
    if (!StopAsked()) return true;
    BeginTakingBack();
    gate_->Pass();
    ThrowIfStopped();
    return false;
  }
  /// Lets it go on from its beginning.
  void AwaitBegin() {
    begun_.AwaitArrival();
    begun_.Open();
  }

 private:
  std::shared_ptr<Gate> gate_;
  Gate begun_;
};

/// A worker with a task that takes back after a cancel.
class TakingBackTest : public HangTest {
 protected:
  TakingBackTest() {
    host_->Run(task_);
    task_->AwaitBegin();
    host_->Cancel(task_);
    gate_->AwaitArrival();
  }
  void WaitBeyondPatience() const { std::this_thread::sleep_for(2 * script_->patience); }

  std::shared_ptr<TakenBackTask> task_ = std::make_shared<TakenBackTask>(gate_);
  std::shared_ptr<SessionHost> host_ =
      ThreadHost::Starter(leftBehind_, 1)(ScriptedProvider(script_).CreateSession({}));
};

TEST_F(TakingBackTest, IsWaitedForAndNotCancelled) {
  WaitBeyondPatience();
  const int cancels = script_->cancels;
  WaitBeyondPatience();
  EXPECT_FALSE(task_->Ended());
  EXPECT_EQ(script_->cancels, cancels);
  gate_->Open();
  task_->WaitForEnd();
  EXPECT_FALSE(task_->TakeNews().end->sessionLost);
  host_->Stop(nullptr);
  host_.reset();
  EXPECT_TRUE(AllGone());
}

TEST_F(TakingBackTest, IsLeftBehindWhenAskedAgain) {
  host_->Cancel(task_);
  EXPECT_TRUE(task_->Ended());
  EXPECT_TRUE(task_->TakeNews().end->sessionLost);
  gate_->Open();
  host_->Stop(nullptr);
  host_.reset();
  EXPECT_TRUE(AllGone());
}

TEST_F(TakingBackTest, IsLeftBehindWhenTheConnectionCloses) {
  host_->Stop(task_);
  EXPECT_TRUE(task_->Ended());
  gate_->Open();
  host_.reset();
  EXPECT_TRUE(AllGone());
}

TEST_F(HangTest, ClosingLeavesAHangingWorkerBehind) {
  script_->execute = [gate = gate_](const std::string&, WorkContext&) {
    gate->Pass();
    return NoColumns();
  };
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_EQ(recordset.State(), objectState::closed);
  EXPECT_TRUE(leftBehind_->Any());
  EXPECT_EQ(script_->sessions, 1);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  gate_->Open();
  EXPECT_TRUE(AllGone());
  EXPECT_EQ(script_->closes, 1);
}

TEST_F(HangTest, DroppingAConnectionLeavesAHangingWorkerBehind) {
  script_->open = [gate = gate_](WorkContext&) { gate->Pass(); };
  EventLog log;
  auto connection = NewConnection();
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  gate_->AwaitArrival();
  connection.reset();
  EXPECT_TRUE(leftBehind_->Any());
  gate_->Open();
  EXPECT_TRUE(AllGone());
  EXPECT_EQ(queue_.Pump(), 0);
  EXPECT_TRUE(log.Lines().empty());
}

TEST_F(HangTest, AHangingWorkerOutlivesEverythingElse) {
  script_->open = [gate = gate_](WorkContext&) { gate->Pass(); };
  auto connection = NewConnection();
  const auto opening = connection->StartOpen({}, {});
  gate_->AwaitArrival();
  connection.reset();
  leftBehind_.reset();  // As when the program's data access goes.
  EXPECT_EQ(script_->sessions, 1);
  gate_->Open();
  leftBehind_ = std::make_shared<LeftBehind>();
  EXPECT_TRUE(AllGone());
}

TEST_F(HangTest, TheCatalogIsToldWhileACommandHangs) {
  script_->catalog = [] { return std::string("sales"); };
  const auto connection = Connect();
  script_->execute = [gate = gate_](const std::string&, WorkContext&) {
    gate->Pass();
    return NoColumns();
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate_->AwaitArrival();
  EXPECT_EQ(connection->DefaultDatabase(), "sales");
  gate_->Open();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
}

}  // namespace tessel::test
