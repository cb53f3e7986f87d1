#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;

namespace {

constexpr std::size_t name = 1;

}  // namespace

void StatementBodies::SetUp() {
  WriteTest::SetUp();
  if (IsSkipped() || HasFatalFailure()) return;
  if (!Db().Traits().severalStatements) GTEST_SKIP() << "one statement at a time";
}

std::string StatementBodies::Insert(int id) const {
  return "insert into " + table_->Name() + " (id) values (" + std::to_string(id) + ")";
}

StartedQuery StatementBodies::RunToWrite(const std::string& sql) {
  EventLog log;
  StartedQuery query(connection_->StartQuery(sql, LockType::Optimistic));
  query.Operation().Wait();
  return query;
}

std::vector<std::string> StatementBodies::ResultsOf(const QueryOperation& operation,
                                                    const std::string& sql) {
  std::vector<std::string> lines;
  for (const CommandResult& result : operation.Results()) {
    const StatementPlace& place = result.statement;
    const std::string text = sql.substr(place.begin, place.end - place.begin);
    const std::string came = result.rows ? std::to_string(result.rows->RecordCount()) + " rows"
                                         : std::to_string(result.recordsAffected);
    lines.push_back(std::to_string(place.number) + " " + text.substr(0, text.find(' ')) + ": " +
                    came);
  }
  return lines;
}

TextStop StatementBodies::StopOf(const std::string& sql) {
  const StartedQuery query = RunToWrite(sql);
  EXPECT_TRUE(query.Operation().Stop()) << sql;
  return query.Operation().Stop().value_or(TextStop());
}

TEST_P(StatementBodies, EveryResultTellsItsStatement) {
  const std::string& table = table_->Name();
  const std::string sql = "-- a comment; no statement\n" + Insert(4) + ";\nselect id, name from " +
                          table + " order by id;\nupdate " + table +
                          " set name = 'x;y' where id < 3; select n from " + table +
                          " where id = 4;";
  const StartedQuery query = RunToWrite(sql);
  EXPECT_EQ(query.Operation().Outcome(), OperationOutcome::Done);
  EXPECT_FALSE(query.Operation().Stop());
  EXPECT_THAT(ResultsOf(query.Operation(), sql),
              ElementsAre("1 insert: 1", "2 select: 4 rows", "3 update: 2", "4 select: 1 rows"));
}

TEST_P(StatementBodies, RowsOfALaterResultCanBeChanged) {
  const std::string& table = table_->Name();
  const StartedQuery query =
      RunToWrite("select n from " + table + " where id = 99; " + Insert(4) +
                 "; select id, name, data, n from " + table + " order by id");
  const std::shared_ptr<Recordset> rows = query.Operation().Results().back().rows;
  ASSERT_NE(rows, nullptr);
  ASSERT_FALSE(rows->WhyNotChangeable()) << rows->WhyNotChangeable()->description;
  rows->MoveFirst();
  rows->MoveNext();
  rows->SetFieldValue(name, Text("changed"));
  Update(*rows);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|changed", "3|three", "4|NULL"));
}

TEST_P(StatementBodies, RowsOfALaterExpressionCannotBeChanged) {
  const std::string& table = table_->Name();
  const StartedQuery query = RunToWrite("select id, name from " + table +
                                        "; select id + 1 as id, upper(name) as name from " + table);
  const std::shared_ptr<Recordset> rows = query.Operation().Results().back().rows;
  ASSERT_NE(rows, nullptr);
  EXPECT_TRUE(rows->WhyNotChangeable());
}

TEST_P(StatementBodies, AFailureTellsItsStatementAndWhatStays) {
  const std::string sql = Insert(4) + ";\n" + Insert(5) + ";\ninsert into " + table_->Name() +
                          " (id) values (1); " + Insert(6);
  const TextStop stop = StopOf(sql);
  const bool kept = Db().Traits().keepsStatementsBeforeError;
  EXPECT_EQ(Outside("select id from " + table_->Name() + " where id > 3").size(), kept ? 2U : 0U);
  if (!Db().Traits().tellsFailedStatement) {
    EXPECT_TRUE(stop.statement.number == 0 || stop.statement.number == 3);
    EXPECT_FALSE(stop.keptUpTo) << "what is not known must not be told";
    return;
  }
  EXPECT_EQ(stop.statement.number, 3);
  EXPECT_EQ(sql.substr(stop.statement.begin, 6), "insert");
  EXPECT_EQ(stop.keptUpTo.value_or(-1), kept ? 2 : 0);
  EXPECT_EQ(stop.transaction, UserTransaction::None);
}

TEST_P(StatementBodies, WhatWasCommittedInTheTextStays) {
  if (!Db().Traits().tellsFailedStatement) GTEST_SKIP() << "the driver does not tell";
  const TextStop stop = StopOf(Db().BeginStatement() + "; " + Insert(4) + "; commit; " +
                               Db().BeginStatement() + "; " + Insert(5) + "; " + Insert(1));
  EXPECT_EQ(stop.statement.number, 6);
  EXPECT_EQ(stop.keptUpTo.value_or(-1), 3);
  EXPECT_TRUE(IsUnderWay(stop.transaction));
  EXPECT_TRUE(IsUnderWay(connection_->Transaction().state));
  Run(*connection_, "rollback");
  EXPECT_THAT(Outside("select id from " + table_->Name() + " where id > 3"), ElementsAre("4"));
}

TEST_P(StatementBodies, ASavepointThatIsGoneBackToEndsNoTransaction) {
  if (!Db().Traits().tellsFailedStatement) GTEST_SKIP() << "the driver does not tell";
  const TextStop stop =
      StopOf(Db().BeginStatement() + "; " + Insert(4) + "; savepoint s; " + Insert(5) +
             "; rollback to savepoint s; " + Insert(6) + "; " + Insert(1));
  EXPECT_EQ(stop.statement.number, 7);
  EXPECT_EQ(stop.keptUpTo.value_or(-1), 0);
  EXPECT_TRUE(IsUnderWay(stop.transaction));
  Run(*connection_, "rollback");
}

TEST_P(StatementBodies, ASyntaxErrorTellsItsStatement) {
  if (!Db().Traits().tellsFailedStatement) GTEST_SKIP() << "the driver does not tell";
  const std::string sql = Insert(4) + ";\n-- äöü€\nselect 'ä€'; selec t; " + Insert(5);
  const TextStop stop = StopOf(sql);
  EXPECT_EQ(stop.statement.number, 3);
  EXPECT_EQ(sql.substr(stop.statement.begin, 7), "selec t");
}

TEST_P(StatementBodies, ASyntaxErrorTellsItsPlace) {
  if (!Db().Traits().tellsFailedStatement) GTEST_SKIP() << "the driver does not tell";
  const std::string sql =
      Insert(4) + ";\n-- äöü€\nselect 'ä€';\n\nselect 'é'\n  fro t; " + Insert(5);
  const TextStop stop = StopOf(sql);
  EXPECT_EQ(stop.statement.number, 3);
  ASSERT_TRUE(stop.failedAt);
  EXPECT_EQ(sql.substr(*stop.failedAt, 2), "t;");
}

TEST_P(StatementBodies, WhatIsNoMistakeInTheWordsHasNoPlace) {
  const TextStop stop = StopOf(Insert(4) + "; " + Insert(1));
  EXPECT_FALSE(stop.failedAt);
}

TEST_P(StatementBodies, AnErrorBehindTheFirstRowsStopsTheTextToo) {
  const std::string sql =
      "select id from " + table_->Name() + "; select 'b'; " + Insert(1) + "; " + Insert(5);
  const StartedQuery query = RunToWrite(sql);
  if (!Db().Traits().tellsFailedStatement) return;
  EXPECT_EQ(query.Operation().Outcome(), OperationOutcome::Done);
  ASSERT_TRUE(query.Operation().Stop());
  EXPECT_EQ(query.Operation().Stop()->statement.number, 3);
  EXPECT_EQ(connection_->Errors().size(), 1U);
  EXPECT_THAT(Outside("select id from " + table_->Name() + " where id > 3"), ElementsAre());
}

TEST_P(StatementBodies, ACancelTellsWhereItStopped) {
  if (!Db().Traits().tellsFailedStatement) GTEST_SKIP() << "the driver does not tell";
  const std::string sql = Insert(4) + "; " + Db().SlowStatement() + "; " + Insert(5);
  StartedQuery query(connection_->StartQuery(sql, LockType::Optimistic));
  EventLog log;
  log.Watch(query.Operation());
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(200));
  query.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(query.Operation().Outcome(), OperationOutcome::Cancelled);
  ASSERT_TRUE(query.Operation().Stop());
  EXPECT_EQ(query.Operation().Stop()->statement.number, 2);
  const bool kept = Db().Traits().keepsStatementsBeforeError;
  EXPECT_EQ(query.Operation().Stop()->keptUpTo.value_or(-1), kept ? 1 : 0);
  EXPECT_EQ(Outside("select id from " + table_->Name() + " where id > 3").size(), kept ? 1U : 0U);
}

TEST_P(StatementBodies, ManyStatementsAreAllTold) {
  std::string sql;
  for (int i = 0; i < 150; ++i) sql += "select id, name from " + table_->Name() + " where id = 1;";
  const StartedQuery query = RunToWrite(sql);
  const std::vector<CommandResult>& results = query.Operation().Results();
  ASSERT_EQ(results.size(), 150U);
  EXPECT_EQ(results.back().statement.number, 150);
  EXPECT_FALSE(results[99].rows->WhyNotChangeable());
  EXPECT_TRUE(results[100].rows->WhyNotChangeable()) << "of so many it is not asked";
}

}  // namespace tessel::test
