#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;

TEST_P(CommandBodies, RowsAreThereWhenTheEndWasWaitedFor) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(3), log);
  recordset.Operation().Wait();
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_THAT(TextsOf(*recordset, 1), ElementsAre("row 1", "row 2", "row 3"));
  EXPECT_THAT(TextsOf(*recordset, 2), ElementsAre("0.5", "1", "1.5"));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "done"));
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_P(CommandBodies, EventsOfAQueryComeInOrderOnThePumpingThread) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(1000), log);
  EXPECT_EQ(recordset.State(), objectState::executing);
  EXPECT_EQ(connection->State(), objectState::open | objectState::executing);
  EXPECT_TRUE(log.Lines().empty());
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "done"));
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 1000);
}

TEST_P(CommandBodies, WhatWasWaitedForIsNotToldAgain) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, Db().Series(1000), log);
  recordset.Operation().Wait();
  recordset.Operation().Wait();
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("fetching", "done"));
  EXPECT_EQ(recordset->RecordCount(), 1000);
}

TEST_P(CommandBodies, ACommandWithoutRowsEndsWithItsExecution) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  EventLog log;
  const auto recordset =
      Start(*connection, "insert into " + table.Name() + " values (1), (2), (3)", log);
  ASSERT_TRUE(PumpToEnd(log));
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
  EXPECT_EQ(log.RecordsAffected(), 3);
  EXPECT_EQ(recordset.State(), objectState::closed);
}

TEST_P(CommandBodies, RecordsAffectedAreCounted) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v integer");
  const auto count = [&](const std::string& sql) {
    return Run(*connection, sql).Operation().RecordsAffected();
  };
  const std::string& name = table.Name();
  EXPECT_EQ(count("insert into " + name + " values (1, 1), (2, 1)"), 2);
  EXPECT_EQ(count("update " + name + " set v = 1 where id = 2"), 1);
  EXPECT_EQ(count("update " + name + " set v = 2 where id = 99"), 0);
  EXPECT_EQ(count("delete from " + name), 2);
}

TEST_P(CommandBodies, FailureIsRaisedAndListed) {
  const auto connection = Connect();
  const ErrorInfo error =
      ErrorOf([&] { Run(*connection, "select * from there_is_no_such_table"); });
  EXPECT_NE(error.number, 0);
  EXPECT_FALSE(error.source.empty());
  EXPECT_THAT(error.description, testing::HasSubstr("there_is_no_such_table"));
  const bool hasCode = error.nativeError != 0 || error.sqlState.size() == 5;
  EXPECT_TRUE(hasCode || !Db().Traits().syntaxErrorHasState);
  ASSERT_FALSE(connection->Errors().empty());
  EXPECT_EQ(connection->Errors().front().description, error.description);
  EXPECT_EQ(connection->State(), objectState::open);

  Run(*connection, "select 1");
  EXPECT_TRUE(connection->Errors().empty());
}

TEST_P(CommandBodies, FailureInTheBackgroundIsAnnouncedOnce) {
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, "this is no statement", log);
  ASSERT_TRUE(PumpToEnd(log));
  queue_.Pump();
  ASSERT_TRUE(log.LastError());
  EXPECT_THAT(log.Lines(), ElementsAre("failed " + std::to_string(log.LastError()->number)));
  EXPECT_EQ(recordset.State(), objectState::closed);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_P(CommandBodies, FailureWhileFetchingKeepsTheRowsBefore) {
  const std::string query = Db().FailsAfter(500);
  if (query.empty()) GTEST_SKIP() << "cannot be said here";
  const auto connection = Connect();
  EventLog log;
  const auto recordset = Start(*connection, query, log);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(),
              ElementsAre("fetching", "failed " + std::to_string(log.LastError()->number)));
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 500);
  EXPECT_EQ(TextsOf(*recordset).back(), "500");
  EXPECT_FALSE(connection->Errors().empty());
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
}

TEST_P(CommandBodies, BlankTextIsRefusedBeforeTheDatabase) {
  const auto connection = Connect();
  for (const char* blank : {"", " ", "\r\n\t "}) {
    const ErrorInfo error =
        ErrorOf([&] { (void)connection->StartQuery(blank, LockType::ReadOnly); });
    EXPECT_EQ(error.source, "Tessel");
    EXPECT_THAT(error.description, testing::HasSubstr("empty"));
    EXPECT_EQ(connection->State(), objectState::open);
  }
}

TEST_P(CommandBodies, TextOfCommentsOnlyDoesNothing) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, "-- nothing; at all\n/* nor ' here */\n");
  EXPECT_EQ(recordset.State(), objectState::closed);
  EXPECT_EQ(recordset.Operation().RecordsAffected(), -1);
}

TEST_P(CommandBodies, CommentsAndQuotesAreTheDatabasesOwn) {
  const auto connection = Connect();
  EXPECT_EQ(Cell(*connection, "/* a; b */ select 'it''s; -- no comment' as x -- end"),
            Value(std::string("it's; -- no comment")));
}

TEST_P(CommandBodies, OnlyOneCommandRunsAtATime) {
  const auto connection = Connect();
  EventLog log;
  const auto first = Start(*connection, Db().SlowStatement(), log);
  const auto refusal = [&](const std::function<void()>& action) {
    return ErrorOf(action).description;
  };
  EXPECT_THAT(refusal([&] { Run(*connection, "select 1"); }), testing::HasSubstr("busy"));
  EXPECT_THAT(refusal([&] { (void)ReadSchema(*connection, SchemaRowset::Tables); }),
              testing::HasSubstr("busy"));
  EXPECT_EQ(ErrorOf([&] { OpenNow(*connection); }).number, errorNumber::objectOpen);
  first.Cancel();
  EXPECT_TRUE(PumpToEnd(log));
}

TEST_P(CommandBodies, ACommandCanBeStartedFromTheHandlerOfAnEnd) {
  const auto connection = Connect();
  EventLog log;
  const auto first = Start(*connection, Db().Series(10), log);
  std::vector<std::string> inside;
  first.Operation().Ended = [&] { inside = TextsOf(*Run(*connection, Db().Series(2))); };
  ASSERT_TRUE(queue_.PumpUntil([&] { return !inside.empty(); }));
  EXPECT_THAT(inside, ElementsAre("1", "2"));
  EXPECT_EQ(first->RecordCount(), 10);
}

TEST_P(CommandBodies, OfSeveralStatementsTheFirstRowsAreShown) {
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "one statement at a time only";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const std::string insert = "insert into " + table.Name() + " values ";
  const auto recordset = Run(*connection, insert + "(1); select 7; select 8; " + insert + "(2)");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("7"));
  const auto rest = Run(*connection, "select id from " + table.Name() + " order by id");
  EXPECT_THAT(TextsOf(*rest), ElementsAre("1", "2"));
}

TEST_P(CommandBodies, OfSeveralStatementsTheCountsAreSummed) {
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "one statement at a time only";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const auto done =
      Run(*connection, "insert into " + table.Name() + " values (1), (2); delete from " +
                           table.Name() + " where id = 1");
  EXPECT_EQ(done.Operation().RecordsAffected(), 3);
}

TEST_P(CommandBodies, EveryResultOfSeveralStatementsIsKeptInItsOrder) {
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "one statement at a time only";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const std::string& name = table.Name();
  const auto done =
      Run(*connection, "insert into " + name + " values (1), (2); select id, 'x' as t from " +
                           name + " order by id; delete from " + name +
                           " where id = 1; select id from " + name);
  const auto& results = done.Operation().Results();
  ASSERT_EQ(results.size(), 4U);
  EXPECT_EQ(results[0].rows, nullptr);
  EXPECT_EQ(results[0].recordsAffected, 2);
  ASSERT_NE(results[1].rows, nullptr);
  EXPECT_EQ(results[1].rows, done.Rows());
  EXPECT_THAT(TextsOf(*results[1].rows), ElementsAre("1", "2"));
  EXPECT_EQ(results[2].rows, nullptr);
  EXPECT_EQ(results[2].recordsAffected, 1);
  ASSERT_NE(results[3].rows, nullptr);
  EXPECT_THAT(TextsOf(*results[3].rows), ElementsAre("2"));
  EXPECT_EQ(results[3].rows->State(), objectState::open);
  EXPECT_EQ(done.Operation().RecordsAffected(), 2);
}

TEST_P(CommandBodies, AnErrorBeforeTheRowsFailsTheCommand) {
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "one statement at a time only";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const std::string text =
      "insert into " + table.Name() + " values (1); select * from there_is_no_such_table";
  EXPECT_THAT(ErrorOf([&] { Run(*connection, text); }).description,
              testing::HasSubstr("there_is_no_such_table"));
  const std::string kept = Db().Traits().keepsStatementsBeforeError ? "1" : "0";
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from " + table.Name()))), kept);
}

TEST_P(CommandBodies, TheNextOperationForgetsTheErrorsOfTheLast) {
  const auto connection = Connect();
  EXPECT_THROW(Run(*connection, "no statement"), Error);
  EXPECT_FALSE(connection->Errors().empty());
  connection->ClearErrors();
  EXPECT_TRUE(connection->Errors().empty());
  EXPECT_THROW(Run(*connection, "no statement"), Error);
  (void)ReadSchema(*connection, SchemaRowset::Tables, {});
  EXPECT_TRUE(connection->Errors().empty());
}

TEST_P(CommandBodies, ProgressIsToldWhileManyRowsArrive) {
  const auto connection = Connect();
  EventLog log;
  const std::int64_t many = 2'000'000;
  const auto recordset = Start(*connection, Db().Series(many), log);
  std::int64_t seen = 0;
  ASSERT_TRUE(queue_.PumpUntil([&] {
    if ((recordset.State() & objectState::open) != 0) seen = recordset->RecordCount();
    return log.ProgressCount() > 1 || log.Ends() > 0;
  }));
  EXPECT_GE(log.LastProgress(), seen);
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_GE(recordset->RecordCount(), log.LastProgress());
}

}  // namespace tessel::test
