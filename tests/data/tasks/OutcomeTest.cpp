#include <new>

#include "tests/data/tasks/WorkerTest.h"

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
  script_->execute = [](const std::string&, WorkContext& context) {
    while (!context.StopAsked()) std::this_thread::yield();
    context.EndStatement(1);
    return NoColumns();
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  // Either it had not begun yet, or it is done: never a commit that is called a failure.
  const bool begun = log.RecordsAffected() == 1;
  EXPECT_THAT(log.Lines(), ElementsAre(begun ? "done" : "failed 3712"));
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, EveryRowFetchedBeforeTheCancelIsASuccess) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext& context) {
    while (!context.StopAsked()) std::this_thread::yield();
    AddNumbers(rows, 1, 3);
    return false;
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "done"));
  EXPECT_EQ(recordset->RecordCount(), 3);
}

TEST_F(OutcomeTest, ACancelReachesOnlyTheCommandItWasMeantFor) {
  const auto connection = Connect();
  script_->execute = [](const std::string& sql, WorkContext& context) {
    for (int i = 0; i < 50 && !context.StopAsked(); ++i) std::this_thread::yield();
    if (sql == "run") context.ThrowIfStopped();
    return NoColumns();
  };
  for (int round = 0; round < 300; ++round) {
    EventLog log;
    const auto recordset = Start(*connection, log);
    for (int i = 0; i < round % 11; ++i) std::this_thread::yield();
    recordset.Cancel();
    ASSERT_TRUE(PumpToEnd(log));
    const auto next = QueryNow(*connection, "next");
  }
  EXPECT_EQ(script_->wrongCancels, 0);
}

TEST_F(OutcomeTest, NoticesAndErrorsAreListedInOrder) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext& context) -> Fields {
    context.Report(Notice("first"));
    context.Raise({Failure("second").Info(), Failure("third").Info()});
  };
  EXPECT_EQ(ErrorOf([&] { QueryNow(*connection, "run"); }).description, "second");
  EXPECT_THAT(Descriptions(*connection), ElementsAre("first", "second", "third"));
  EXPECT_EQ(connection->Errors()[0].number, errorNumber::information);
}

TEST_F(OutcomeTest, AnErrorAfterTheRowsIsListedAndFailsNothing) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext&) {
    AddNumbers(rows, 1, 2);
    return false;
  };
  script_->next = [](WorkContext&) -> Fields { throw Failure("later statement"); };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "done"));
  EXPECT_EQ(recordset->RecordCount(), 2);
  EXPECT_THAT(Descriptions(*connection), ElementsAre("later statement"));
}

TEST_F(OutcomeTest, EveryResultIsKeptInItsOrderWithItsNotices) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext& context) {
    context.Report(Notice("of the first"));
    context.EndStatement(3);
    context.Report(Notice("of the second"));
    return OneColumn();
  };
  const auto step = std::make_shared<int>(0);
  script_->fetch = [step](RowSink& rows, std::size_t, WorkContext&) {
    AddNumbers(rows, 10 * *step + 1, 10 * *step + 2);
    return false;
  };
  script_->next = [step](WorkContext& context) {
    if (++*step > 1) return NoColumns();
    context.EndStatement(4);
    return OneColumn();
  };
  const auto query = QueryNow(*connection, "run");
  const auto& results = query.Operation().Results();
  ASSERT_EQ(results.size(), 4U);
  EXPECT_EQ(results[0].rows, nullptr);
  EXPECT_EQ(results[0].recordsAffected, 3);
  ASSERT_EQ(results[0].notices.size(), 1U);
  EXPECT_EQ(results[0].notices[0].description, "of the first");
  EXPECT_THAT(TextsOf(*results[1].rows), ElementsAre("1", "2"));
  ASSERT_EQ(results[1].notices.size(), 1U);
  EXPECT_EQ(results[1].notices[0].description, "of the second");
  EXPECT_EQ(results[2].recordsAffected, 4);
  EXPECT_THAT(TextsOf(*results[3].rows), ElementsAre("11", "12"));
  EXPECT_EQ(query.Rows(), results[1].rows);
  EXPECT_EQ(query.Operation().RecordsAffected(), 3) << "up to the first rows";
  EXPECT_EQ(query.Operation().Rows(), 4);
  EXPECT_THAT(Descriptions(*connection), ElementsAre("of the first", "of the second"));
}

TEST_F(OutcomeTest, ACancelAmongLaterStatementsIsACancel) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext&) {
    AddNumbers(rows, 1, 2);
    return false;
  };
  script_->next = [](WorkContext& context) {
    while (!context.StopAsked()) std::this_thread::yield();
    context.ThrowIfStopped();
    return NoColumns();
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "failed 3712"));
  EXPECT_EQ(recordset->RecordCount(), 2);
}

TEST_F(OutcomeTest, AFetchThatFailsKeepsTheRowsThatAreComplete) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext&) -> bool {
    AddNumbers(rows, 1, 3);
    rows.Column(0).AppendInteger(4);  // A row that is begun only.
    throw Failure("server died");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2", "3"));
  EXPECT_EQ(log.LastError()->description, "server died");
  EXPECT_EQ(recordset.State(), objectState::open);
}

TEST_F(OutcomeTest, WaitingForTheEndRaisesWhatEndedTheFetch) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext&) -> bool {
    AddNumbers(rows, 1, 3);
    throw Failure("server died");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  EXPECT_EQ(ErrorOf([&] { Finish(recordset.Operation()); }).description, "server died");
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 3);
}

TEST_F(OutcomeTest, ALostSessionClosesTheConnection) {
  const auto connection = Connect();
  script_->execute = [this](const std::string&, WorkContext&) -> Fields {
    script_->alive = false;
    throw Failure("server gone");
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_THAT(Descriptions(*connection), ElementsAre("server gone"));
  EXPECT_THAT(ErrorOf([&] { (void)ReadSchema(*connection, SchemaRowset::Tables, {}); }).description,
              HasSubstr("lost"));
  script_->alive = true;
  script_->execute = nullptr;
  OpenNow(*connection);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, WhateverIsThrownBecomesAnError) {
  const auto connection = Connect();
  const auto failure = [&](std::function<void()> thrower) {
    script_->execute = [thrower](const std::string&, WorkContext&) {
      thrower();
      return NoColumns();
    };
    return ErrorOf([&] { QueryNow(*connection, "run"); });
  };
  EXPECT_THAT(failure([] { throw std::bad_alloc(); }).description, HasSubstr("memory"));
  EXPECT_EQ(failure([] { throw std::runtime_error("odd"); }).description, "odd");
  EXPECT_EQ(failure([] { throw Failure("plain"); }).description, "plain");
  EXPECT_EQ(connection->Errors().size(), 1U);
}

TEST_F(OutcomeTest, AnOpenThatFailsLateClosesTheSession) {
  script_->properties = []() -> Properties { throw Failure("no properties"); };
  const auto connection = NewConnection();
  EXPECT_EQ(ErrorOf([&] { OpenNow(*connection); }).description, "no properties");
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
  script_->execute = [catalog](const std::string&, WorkContext&) {
    *catalog = "used";
    return NoColumns();
  };
  const auto connection = Connect();
  EXPECT_EQ(connection->DefaultDatabase(), "one");
  EXPECT_EQ(ErrorOf([&] { UseCatalog(*connection, "[two]"); }).description, "no such catalog");
  EXPECT_EQ(connection->DefaultDatabase(), "one");
  UseCatalog(*connection, "two");
  EXPECT_EQ(connection->DefaultDatabase(), "two");
  QueryNow(*connection, "run");
  EXPECT_EQ(connection->DefaultDatabase(), "used");
  connection->Close();
  EXPECT_EQ(connection->DefaultDatabase(), "");
}

TEST_F(OutcomeTest, AFailureToTellOfTheAftermathFailsNothing) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->unique = []() -> bool { throw Failure("cannot tell"); };
  const auto recordset = QueryNow(*connection, "run");
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
}

TEST_F(OutcomeTest, UniqueRowsAreAskedForAfterACancelToo) {
  const auto connection = Connect();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [](RowSink& rows, std::size_t, WorkContext&) {
    AddNumbers(rows, 1, 1);
    return true;
  };
  script_->unique = [] { return true; };
  EventLog log;
  const auto recordset = Start(*connection, log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 1);
}

/// The session is asked several things after the rows, and each may take its time.
TEST_F(OutcomeTest, WhatIsKnownAtTheEndIsToldWithItWhenNewsAreTakenJustBefore) {
  const auto connection = Connect();
  const auto gate = std::make_shared<Gate>();
  script_->catalog = [] { return std::string("used"); };
  script_->unique = [] { return true; };
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->transaction = [gate] {
    gate->Pass();
    return UserTransaction::Open;
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  gate->AwaitArrival();
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("fetching"));
  gate->Open();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_TRUE(recordset->Fields().at(0).isKey);
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 1);
  EXPECT_EQ(connection->DefaultDatabase(), "used");
  EXPECT_EQ(connection->Transaction().state, UserTransaction::Open);
}

TEST_F(OutcomeTest, WhatAHandlerThrowsGoesToTheSink) {
  CollectedFailures failures;
  const auto connection = Connect(&failures);
  const auto gate = std::make_shared<Gate>();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [this, gate](RowSink&, std::size_t, WorkContext&) {
    gate->Pass();
    return false;
  };
  EventLog log;
  const auto recordset = Start(*connection, log);
  recordset.Operation().Progress = [] { throw std::runtime_error("in Progress"); };
  recordset.Operation().Ended = [] { throw std::runtime_error("in Ended"); };
  ASSERT_TRUE(queue_.PumpUntil([&] { return failures.texts.size() == 1; }));
  gate->Open();
  ASSERT_TRUE(queue_.PumpUntil([&] { return failures.texts.size() == 2; }));
  EXPECT_THAT(failures.texts, ElementsAre("in Progress", "in Ended"));
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(OutcomeTest, WithoutASinkItPassesWhenAllIsInOrder) {
  const auto connection = Connect();
  const auto operation = connection->StartQuery("run", LockType::ReadOnly);
  operation->Ended = [] { throw std::runtime_error("in Ended"); };
  EXPECT_THROW(operation->Wait(), std::runtime_error);
  EXPECT_TRUE(operation->HasEnded());
  EXPECT_EQ(connection->State(), objectState::open);
  QueryNow(*connection, "run");
}

TEST_F(OutcomeTest, ACloneSeesTheRowsThatStillArrive) {
  const auto connection = Connect();
  const auto gate = std::make_shared<Gate>();
  script_->execute = [](const std::string&, WorkContext&) { return OneColumn(); };
  script_->fetch = [gate](RowSink& rows, std::size_t, WorkContext&) {
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
