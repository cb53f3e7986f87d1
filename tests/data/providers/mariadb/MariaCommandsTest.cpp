#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

class MariaCommands : public MariaTest {};

// --- several statements --------------------------------------------------------------------------

/// The numbers of the statements that the results belong to, and where the text was left.
std::vector<std::int64_t> NumbersOf(const QueryOperation& operation) {
  std::vector<std::int64_t> numbers;
  for (const CommandResult& result : operation.Results())
    numbers.push_back(result.statement.number);
  if (operation.Stop()) numbers.push_back(operation.Stop()->statement.number);
  return numbers;
}

TEST_F(MariaCommands, AllResultsOfACallAreThoseOfItsStatement) {
  Run("create or replace procedure several() begin select 1; select 2; do 0; end");
  EXPECT_THAT(NumbersOf(Run("do 1; call several(); select 3").Operation()),
              ElementsAre(1, 2, 2, 2, 3));
  Run("drop procedure several");
}

TEST_F(MariaCommands, WhatStandsBehindAnEmptyStatementIsNotLeftOutSilently) {
  for (const char* sql : {"; select 1", " /* nothing */ ; select 1", "do 1;; do 2"})
    EXPECT_EQ(FailureOf(sql).nativeError, 1064) << sql;
  EXPECT_TRUE(Run("select 1;; select 2").Operation().Stop());
  EXPECT_EQ(connection_->Errors().size(), 1U);
  for (const char* sql : {"select 1;", "select 1; -- bye", "select 1;\n", ";", "-- nothing"})
    EXPECT_FALSE(Run(sql).Operation().Stop()) << sql;
}

TEST_F(MariaCommands, AllResultsOfABlockAreThoseOfItsStatement) {
  const StartedQuery query =
      Run("begin not atomic select 1; select 2; end; if 1 = 1 then select 3; end if; select 4");
  EXPECT_THAT(NumbersOf(query.Operation()), ElementsAre(1, 1, 1, 2, 2, 3));
}

TEST_F(MariaCommands, BehindWhatRunsUnderANameNoStatementIsTold) {
  const StartedQuery query =
      Run("prepare one from 'select 1'; execute one; select 2; select * from nowhere");
  EXPECT_THAT(NumbersOf(query.Operation()), ElementsAre(1, 2, 0, 0));
}

// --- errors and warnings -------------------------------------------------------------------------

TEST_F(MariaCommands, ErrorsKeepCodeAndState) {
  const ErrorInfo error = FailureOf("select * from nowhere");
  EXPECT_EQ(error.number, errorNumber::database);
  EXPECT_EQ(error.nativeError, 1146);
  EXPECT_EQ(error.sqlState, "42S02");
  EXPECT_EQ(error.source, "MariaDB");
  EXPECT_EQ(error.description, "Table 'shop.nowhere' doesn't exist");
}

TEST_F(MariaCommands, WarningsAreListedWithTheirCode) {
  Run("select 1/0");
  EXPECT_THAT(Reports(), ElementsAre("Warning: Division by 0"));
  EXPECT_EQ(connection_->Errors()[0].nativeError, 1365);
  EXPECT_EQ(connection_->Errors()[0].number, errorNumber::information);
  Run("drop table if exists nowhere");
  EXPECT_THAT(Reports(), ElementsAre("Note: Unknown table 'shop.nowhere'"));
  Run("select 1");
  EXPECT_TRUE(Reports().empty());
}

TEST_F(MariaCommands, WarningsAreNotListedBesideThoseAskedFor) {
  Run("select 1/0");
  EXPECT_EQ(Run("show warnings")->RecordCount(), 1);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(MariaCommands, WarningsOfEarlierStatementsAreCounted) {
  Run("select 1/0; select 2; select 3/0");
  ASSERT_EQ(Reports().size(), 2U);
  EXPECT_THAT(Reports()[0], testing::EndsWith(": 1"));
  EXPECT_EQ(Reports()[1], "Warning: Division by 0");
}

TEST_F(MariaCommands, WhatWasFoundCanBeAskedForAfterwards) {
  Run("create or replace temporary table c (n int primary key)");
  Run("insert into c select seq from seq_1_to_9");
  Run("select sql_calc_found_rows n from c limit 2");
  EXPECT_EQ(ToText(ToView(Cell("select found_rows()"))), "9");
}

// --- counts --------------------------------------------------------------------------------------

TEST_F(MariaCommands, OnlyWhatCountsHasACount) {
  EXPECT_EQ(Affected("create or replace temporary table c (n int)"), -1);
  EXPECT_EQ(Affected("insert into c select seq from seq_1_to_5"), 5);
  EXPECT_EQ(Affected("/* of them */ update c set n = n where n > 3"), 2);
  EXPECT_EQ(Affected("update c set n = n where n > 30"), 0);
  EXPECT_EQ(Affected("set @a = 1"), -1);
  EXPECT_EQ(Affected("create or replace database counted; drop database counted"), -1);
  EXPECT_EQ(Affected("begin; delete from c where n = 1; commit"), 1);
  EXPECT_EQ(Affected(";"), -1);
  EXPECT_EQ(Affected("drop table c"), -1);
}

TEST_F(MariaCommands, ProceduresGiveTheirFirstRows) {
  Run("create or replace procedure p() begin do 1; select 4 as n; select 5; end");
  EXPECT_THAT(TextsOf(*Run("call p()")), ElementsAre("4"));
  EXPECT_EQ(Cell("select 6"), Value(std::int64_t{6}));
  Run("drop procedure p");
}

TEST_F(MariaCommands, ReturningGivesRows) {
  Run("create or replace temporary table c (n int auto_increment primary key, v text)");
  EXPECT_THAT(TextsOf(*Run("insert into c (v) values ('a'), ('b') returning n, v")),
              ElementsAre("1", "2"));
}

// --- texts ---------------------------------------------------------------------------------------

TEST_F(MariaCommands, QuotesOfEveryKindAreTheServersOwn) {
  EXPECT_EQ(Cell("select 'a;\\'b' /* ; ' */ -- '\n # \" ;\n as `x;y`, '?', ':p'"),
            Value(std::string("a;'b")));
}

TEST_F(MariaCommands, BodiesOfProceduresAreOneStatement) {
  Run("create or replace procedure p() begin declare n int default 3; select n; end; select 1");
  EXPECT_THAT(TextsOf(*Run("call p()")), ElementsAre("3"));
  Run("drop procedure p");
}

TEST_F(MariaCommands, ALargeTextArrivesWhole) {
  const std::size_t size = 10U << 20U;
  EXPECT_EQ(Cell("select length('" + std::string(size, 'x') + "')"),
            Value(static_cast<std::int64_t>(size)));
}

TEST_F(MariaCommands, FilesOfThisMachineAreNotRead) {
  Run("create or replace temporary table c (v text)");
  const ErrorInfo error = FailureOf("load data local infile '/etc/hostname' into table c");
  EXPECT_FALSE(error.description.empty());
  EXPECT_EQ(Cell("select count(*) from c"), Value(std::int64_t{0}));
}

TEST_F(MariaCommands, AnErrorAfterTheRowsIsListedAndKeepsThem) {
  const auto recordset = Run("select 5 as n; select * from nowhere; select 6");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("5"));
  EXPECT_THAT(Reports(), ElementsAre("Table 'shop.nowhere' doesn't exist"));
}

TEST_F(MariaCommands, WhatFollowsACancelledStatementIsNotRun) {
  Run("create or replace temporary table c as select 1 as n");
  EventLog log;
  const auto recordset = Start(*connection_, "select sleep(60); update c set n = 2", log);
  PumpFor(std::chrono::milliseconds(100));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(ToText(ToView(Cell("select n from c"))), "1");
}

TEST_F(MariaCommands, AWriteIsCancelledAndUndone) {
  Run("create or replace table c (n int primary key) engine=innodb");
  EventLog log;
  const auto recordset = Start(*connection_,
                               "insert into c select seq from seq_1_to_100000000 where "
                               "sleep(0.001) = 0",
                               log);
  PumpFor(std::chrono::milliseconds(200));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(log.LastError()->number, errorNumber::cancelled);
  EXPECT_EQ(ToText(ToView(Cell("select count(*) from c"))), "0");
  Run("drop table c");
}

TEST_F(MariaCommands, AKilledConnectionIsClosed) {
  const auto other = Connect();
  const std::string number = ToText(ToView(Cell("select connection_id()")));
  DataTest::Run(*other, "kill " + number);
  EXPECT_FALSE(FailureOf("select 1").description.empty());
  EXPECT_EQ(connection_->State(), objectState::closed);
  OpenNow(*connection_);
  EXPECT_EQ(Cell("select 1"), Value(std::int64_t{1}));
}

}  // namespace tessel::test
