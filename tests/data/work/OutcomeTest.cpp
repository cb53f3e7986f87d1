#include <new>

#include "tests/data/work/WorkerTest.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

ErrorInfo Notice(const std::string& text) {
  return {errorNumber::information, 0, "00000", "Scripted", text, {}, 0};
}

Error Failure(const std::string& text) { return {errorNumber::database, "Scripted", text}; }

std::vector<std::string> Descriptions(const Connection& connection) {
  std::vector<std::string> texts;
  for (const ErrorInfo& error : connection.Errors()) texts.push_back(error.description);
  return texts;
}

}  // namespace

/// How an operation ends, and what is told of it.
class OutcomeTest : public WorkerTest {
 protected:
  void TearDown() override {
    EXPECT_TRUE(AllGone());
    EXPECT_EQ(script_->wrongCalls, 0);
    EXPECT_EQ(script_->wrongCancels, 0);
  }
};

TEST_F(OutcomeTest, WorkThatEndsAsTheCancelComesIsDone) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation& operation) {
    while (!operation.StopAsked()) std::this_thread::yield();
    return ExecuteResult{.fields = {}, .recordsAffected = 1};
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  recordset->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  // Either it had not begun yet, or it is done: never a commit that is called a failure.
  const bool begun = log.RecordsAffected() == 1;
  EXPECT_THAT(log.Lines(), ElementsAre(begun ? "ExecuteComplete ok state=0"
                                             : "ExecuteComplete failed 3712 state=0"));
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, EveryRowFetchedBeforeTheCancelIsASuccess) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation& operation) {
    while (!operation.StopAsked()) std::this_thread::yield();
    AddNumbers(rows, 1, 3);
    return false;
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  recordset->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("ExecuteComplete ok state=9", "FetchComplete ok"));
  EXPECT_EQ(recordset->RecordCount(), 3);
}

TEST_F(OutcomeTest, ACancelReachesOnlyTheCommandItWasMeantFor) {
  const auto connection = Connect();
  script_->execute = [](const std::string& sql, Operation& operation) {
    for (int i = 0; i < 50 && !operation.StopAsked(); ++i) std::this_thread::yield();
    if (sql == "run") operation.ThrowIfStopped();
    return ExecuteResult{};
  };
  for (int round = 0; round < 300; ++round) {
    EventLog log;
    const auto recordset = Start(*connection, log);
    for (int i = 0; i < round % 11; ++i) std::this_thread::yield();
    recordset->Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    const auto next = connection->CreateRecordset();
    next->SetSource("next");
    next->Open(openOption::text);
  }
  EXPECT_EQ(script_->wrongCancels, 0);
}

TEST_F(OutcomeTest, NoticesAndErrorsAreListedInOrder) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation& operation) -> ExecuteResult {
    operation.Report(Notice("first"));
    operation.Raise({Failure("second").Info(), Failure("third").Info()});
  };
  const auto recordset = connection->CreateRecordset();
  recordset->SetSource("run");
  EXPECT_EQ(ErrorOf([&] { recordset->Open(openOption::text); }).description, "second");
  EXPECT_THAT(Descriptions(*connection), ElementsAre("first", "second", "third"));
  EXPECT_EQ(connection->Errors()[0].number, errorNumber::information);
}

TEST_F(OutcomeTest, AnErrorAfterTheRowsIsListedAndFailsNothing) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation&) {
    AddNumbers(rows, 1, 2);
    return false;
  };
  script_->drain = [](Operation&) { throw Failure("later statement"); };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("ExecuteComplete ok state=9", "FetchComplete ok"));
  EXPECT_EQ(recordset->RecordCount(), 2);
  EXPECT_THAT(Descriptions(*connection), ElementsAre("later statement"));
}

TEST_F(OutcomeTest, ACancelAmongLaterStatementsIsACancel) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation&) {
    AddNumbers(rows, 1, 2);
    return false;
  };
  script_->drain = [](Operation& operation) {
    while (!operation.StopAsked()) std::this_thread::yield();
    operation.ThrowIfStopped();
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  recordset->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("ExecuteComplete ok state=9", "FetchComplete failed 3712"));
  EXPECT_EQ(recordset->RecordCount(), 2);
}

TEST_F(OutcomeTest, AFetchThatFailsKeepsTheRowsThatAreComplete) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation&) -> bool {
    AddNumbers(rows, 1, 3);
    rows.Column(0).AppendInteger(4);  // A row that is begun only.
    throw Failure("server died");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2", "3"));
  EXPECT_EQ(log.LastError()->description, "server died");
  EXPECT_EQ(recordset->State(), objectState::open);
}

TEST_F(OutcomeTest, AWaitingOpenRaisesWhatEndedTheFetch) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation&) -> bool {
    AddNumbers(rows, 1, 3);
    throw Failure("server died");
  };
  const auto recordset = connection->CreateRecordset();
  recordset->SetSource("run");
  EXPECT_EQ(ErrorOf([&] { recordset->Open(openOption::text); }).description, "server died");
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 3);
}

TEST_F(OutcomeTest, ALostSessionClosesTheConnection) {
  const auto connection = Connect();
  script_->execute = [this](const std::string&, Operation&) -> ExecuteResult {
    script_->alive = false;
    throw Failure("server gone");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_THAT(Descriptions(*connection), ElementsAre("server gone"));
  EXPECT_THAT(ErrorOf([&] { (void)connection->OpenSchema(SchemaRowset::Tables, {}); }).description,
              HasSubstr("lost"));
  script_->alive = true;
  script_->execute = nullptr;
  connection->Open({}, {}, 0);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, WhateverIsThrownBecomesAnError) {
  const auto connection = Connect();
  const auto failure = [&](std::function<void()> thrower) {
    script_->execute = [thrower](const std::string&, Operation&) {
      thrower();
      return ExecuteResult{};
    };
    EventLog log;
    return ErrorOf([&] { Start(*connection, log, openOption::text); });
  };
  EXPECT_THAT(failure([] { throw std::bad_alloc(); }).description, HasSubstr("memory"));
  EXPECT_EQ(failure([] { throw std::runtime_error("odd"); }).description, "odd");
  EXPECT_EQ(failure([] { throw Failure("plain"); }).description, "plain");
  EXPECT_EQ(connection->Errors().size(), 1U);
}

TEST_F(OutcomeTest, AnOpenThatFailsLateClosesTheSession) {
  script_->properties = []() -> Properties { throw Failure("no properties"); };
  const auto connection = NewConnection();
  EXPECT_EQ(ErrorOf([&] { connection->Open({}, {}, 0); }).description, "no properties");
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_TRUE(AllGone());
  EXPECT_EQ(script_->closes, 1);
}

TEST_F(OutcomeTest, TheCatalogFollowsCommandsAndChanges) {
  const auto catalog = std::make_shared<std::string>("one");
  script_->catalog = [catalog] { return *catalog; };
  script_->setCatalog = [catalog](const std::string& name) {
    if (name.front() == '[') throw Failure("no such catalog");
    *catalog = name;
  };
  script_->execute = [catalog](const std::string&, Operation&) {
    *catalog = "used";
    return ExecuteResult{};
  };
  const auto connection = Connect();
  EXPECT_EQ(connection->DefaultDatabase(), "one");
  EXPECT_EQ(ErrorOf([&] { connection->SetDefaultDatabase("[two]"); }).description,
            "no such catalog");
  EXPECT_EQ(connection->DefaultDatabase(), "one");
  connection->SetDefaultDatabase("two");
  EXPECT_EQ(connection->DefaultDatabase(), "two");
  EventLog log;
  Start(*connection, log, openOption::text);
  EXPECT_EQ(connection->DefaultDatabase(), "used");
  connection->Close();
  EXPECT_EQ(connection->DefaultDatabase(), "");
}

TEST_F(OutcomeTest, AFailureToTellOfTheAftermathFailsNothing) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->unique = []() -> bool { throw Failure("cannot tell"); };
  EventLog log;
  const auto recordset = Start(*connection, log, openOption::text);
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
}

TEST_F(OutcomeTest, UniqueRowsAreAskedForAfterACancelToo) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, Operation&) {
    AddNumbers(rows, 1, 1);
    return true;
  };
  script_->unique = [] { return true; };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
  recordset->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 1);
}

TEST_F(OutcomeTest, WhatAHandlerThrowsGoesToTheSink) {
  CollectedFailures failures;
  const auto connection = Connect(&failures);
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  EventLog log;
  const auto recordset = Start(*connection, log);
  connection->ExecuteComplete = [](std::int64_t, const ErrorInfo*, EventStatus, Recordset*) {
    throw std::runtime_error("in ExecuteComplete");
  };
  recordset->FetchComplete = [](const ErrorInfo*, EventStatus) {
    throw std::runtime_error("in FetchComplete");
  };
  ASSERT_TRUE(queue_.PumpUntil([&] { return failures.texts.size() == 2; }));
  EXPECT_THAT(failures.texts, ElementsAre("in ExecuteComplete", "in FetchComplete"));
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, WithoutASinkItPassesWhenAllIsInOrder) {
  const auto connection = Connect();
  EventLog log;
  connection->ExecuteComplete = [](std::int64_t, const ErrorInfo*, EventStatus, Recordset*) {
    throw std::runtime_error("in ExecuteComplete");
  };
  const auto recordset = connection->CreateRecordset();
  recordset->SetSource("run");
  EXPECT_THROW(recordset->Open(openOption::text), std::runtime_error);
  EXPECT_EQ(connection->State(), objectState::open);
  connection->ExecuteComplete = nullptr;
  recordset->Open(openOption::text);
}

TEST_F(OutcomeTest, ACloneSeesTheRowsThatStillArrive) {
  const auto connection = Connect();
  const auto gate = std::make_shared<Gate>();
  script_->execute = [](const std::string&, Operation&) { return OneColumn(); };
  script_->fetch = [gate](RowSink& rows, std::size_t, Operation&) {
    gate->Pass();
    AddNumbers(rows, 1, 3);
    return false;
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  const auto clone = recordset->Clone(LockType::ReadOnly);
  recordset->SetSort("n DESC");
  EXPECT_EQ(clone->RecordCount(), 0);
  gate->Open();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(clone->RecordCount(), 3);
  EXPECT_THAT(TextsOf(*clone), ElementsAre("1", "2", "3"));
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("3", "2", "1"));
}

}  // namespace tessel::test
