#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PostgresCommands : public PostgresTest {};

// --- errors and notices --------------------------------------------------------------------------

TEST_F(PostgresCommands, ErrorsKeepStateAndPlace) {
  const ErrorInfo error = FailureOf("select 1,\n  '\u00e9' || nowhere");
  EXPECT_EQ(error.number, errorNumber::database);
  EXPECT_EQ(error.sqlState, "42703");
  EXPECT_EQ(error.source, "PostgreSQL");
  EXPECT_EQ(error.description, "ERROR: column \"nowhere\" does not exist\nLINE 2, COLUMN 10");
}

TEST_F(PostgresCommands, ErrorsKeepDetailHintAndContext) {
  const ErrorInfo error = FailureOf("do $$ begin raise exception 'first' using detail = 'second', "
                                    "hint = 'third', errcode = 'P0042'; end $$");
  EXPECT_EQ(error.sqlState, "P0042");
  EXPECT_EQ(error.description, "ERROR: first\nDETAIL: second\nHINT: third\n"
                               "CONTEXT: PL/pgSQL function inline_code_block line 1 at RAISE");
}

TEST_F(PostgresCommands, ErrorsWithinAFunctionTellItsQuery) {
  const ErrorInfo error = FailureOf("do $$ begin execute 'select nowhere'; end $$");
  EXPECT_THAT(error.description, HasSubstr("\nQUERY: select nowhere\n"));
  EXPECT_THAT(error.description, testing::EndsWith("\nLINE 1, COLUMN 8 of the query"));
}

TEST_F(PostgresCommands, LongErrorsAreKept) {
  const ErrorInfo error =
      FailureOf("do $$ begin raise exception '%', repeat('y', 30000) || 'end'; end $$");
  EXPECT_THAT(error.description, HasSubstr("yend"));
}

TEST_F(PostgresCommands, NoticesAreListedOneByOne) {
  Run("do $$ begin raise notice 'a;b' using hint = 'h'; raise warning 'c'; raise info 'd'; end $$");
  EXPECT_THAT(Reports(), ElementsAre("NOTICE: a;b\nHINT: h", "WARNING: c", "INFO: d"));
  EXPECT_EQ(connection_->Errors()[0].number, errorNumber::information);
  EXPECT_EQ(connection_->Errors()[1].sqlState, "01000");
}

TEST_F(PostgresCommands, NoticesWhileRowsComeAreListed) {
  Run("create function pg_temp.noisy(n int) returns int language plpgsql as "
      "$$ begin raise notice 'row %', n; return n; end $$");
  const auto recordset = Run("select pg_temp.noisy(generate_series(1, 3))");
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_THAT(Reports(), ElementsAre("NOTICE: row 1", "NOTICE: row 2", "NOTICE: row 3"));
}

TEST_F(PostgresCommands, NotificationsAreListed) {
  Run("listen news");
  Run("notify news, 'payload'");
  ASSERT_EQ(Reports().size(), 1U);
  EXPECT_THAT(Reports()[0], testing::StartsWith("NOTIFY: news"));
  EXPECT_THAT(Reports()[0], HasSubstr("payload"));
}

// --- counts --------------------------------------------------------------------------------------

TEST_F(PostgresCommands, OnlyWhatCountsHasACount) {
  EXPECT_EQ(Affected("create temp table c (n int)"), -1);
  EXPECT_EQ(Affected("insert into c select generate_series(1, 5)"), 5);
  EXPECT_EQ(Affected("update c set n = n where n > 3"), 2);
  EXPECT_EQ(Affected("update c set n = n where n > 30"), 0);
  EXPECT_EQ(Affected("set work_mem = '4MB'"), -1);
  EXPECT_EQ(Affected("begin; delete from c where n = 1; commit"), 1);
  EXPECT_EQ(Affected("create temp table d as select * from c"), 4);
  EXPECT_EQ(Affected(";;"), -1);
  EXPECT_EQ(Affected("truncate c; drop table d"), -1);
}

TEST_F(PostgresCommands, ReturningGivesRows) {
  Run("create temp table c (n serial, v text)");
  const auto recordset = Run("insert into c (v) values ('a'), ('b') returning n, v");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2"));
}

TEST_F(PostgresCommands, RowsWithoutColumnsAreNoResult) {
  const auto recordset = Run("select from generate_series(1, 5); select 7");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("7"));
  EXPECT_EQ(Run("select").State(), objectState::closed);
}

// --- texts ---------------------------------------------------------------------------------------

TEST_F(PostgresCommands, QuestionMarksAndColonsAreTheServersOwn) {
  EXPECT_EQ(Cell("select '{\"a\": 1}'::jsonb ? 'a'"), Value(true));
  EXPECT_EQ(Cell("select '{\"a\": 1}'::jsonb ?| array['b', 'a'] and '?' = $q$?$q$"), Value(true));
  EXPECT_EQ(Cell("select '{call x}' || ':p' || '%s'"), Value(std::string("{call x}:p%s")));
}

TEST_F(PostgresCommands, QuotesOfEveryKindAreTheServersOwn) {
  EXPECT_EQ(Cell("select $a$ ; 'it' \" -- $a$ || E'\\'' /* /* ; */ ' */ -- ' ;\n || U&'d\\0061t'"),
            Value(std::string(" ; 'it' \" -- 'dat")));
}

TEST_F(PostgresCommands, ANulIsRefusedAndNothingRun) {
  Run("create temp table c (n int)");
  const ErrorInfo error = FailureOf(std::string("insert into c values (1)\0; bad", 30));
  EXPECT_THAT(error.description, HasSubstr("NUL"));
  EXPECT_EQ(Cell("select count(*) from c"), Value(std::int64_t{0}));
}

TEST_F(PostgresCommands, ALargeTextArrivesWhole) {
  const std::size_t size = 20U << 20U;
  EXPECT_EQ(Cell("select length('" + std::string(size, 'x') + "')"),
            Value(static_cast<std::int64_t>(size)));
}

TEST_F(PostgresCommands, AnErrorAfterTheRowsIsListedAndKeepsThem) {
  const auto recordset = Run("select 5 as n; select 1 / 0; select 6");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("5"));
  EXPECT_THAT(Reports(), ElementsAre("ERROR: division by zero"));
}

// --- transactions --------------------------------------------------------------------------------

TEST_F(PostgresCommands, ATransactionThatFailedSaysSoUntilItEnds) {
  Run("create temp table c (n int primary key)");
  Run("begin; insert into c values (1)");
  EXPECT_EQ(FailureOf("select 1 / 0").sqlState, "22012");
  EXPECT_EQ(FailureOf("select * from c").sqlState, "25P02");
  Run("rollback");
  EXPECT_EQ(Run("select * from c")->RecordCount(), 0);
}

TEST_F(PostgresCommands, RowsOfATransactionThatFailsAfterThemAreKept) {
  Run("create temp table c (n int primary key)");
  const auto recordset = Run("begin; insert into c values (4); select n from c; select 1 / 0");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("4"));
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
  Run("rollback");
}

TEST_F(PostgresCommands, WhatFollowsACancelledStatementIsNotRun) {
  Run("create temp table c as select 1 as n");
  EventLog log;
  const auto recordset = Start(*connection_, "select pg_sleep(60); update c set n = 2", log);
  PumpFor(std::chrono::milliseconds(100));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(Cell("select n from c"), Value(std::int64_t{1}));
}

// --- COPY ----------------------------------------------------------------------------------------

TEST_F(PostgresCommands, CopyFromTheClientIsRefusedAndUndoesTheText) {
  Run("create temp table c (n int)");
  const ErrorInfo error = FailureOf("insert into c values (1); copy c from stdin; select 1");
  EXPECT_EQ(error.number, errorNumber::notSupported);
  EXPECT_THAT(error.description, HasSubstr("COPY FROM STDIN"));
  EXPECT_THAT(error.description, Not(HasSubstr("was run")));
  EXPECT_EQ(Cell("select count(*) from c"), Value(std::int64_t{0}));
}

TEST_F(PostgresCommands, CopyToTheClientIsRefused) {
  Run("create temp table c (n int)");
  const ErrorInfo large = FailureOf("insert into c values (1); copy (select repeat('x', 1000) from "
                                    "generate_series(1, 1000000)) to stdout; select 1");
  EXPECT_EQ(large.number, errorNumber::notSupported);
  EXPECT_THAT(large.description, HasSubstr("COPY TO STDOUT"));
  EXPECT_EQ(Cell("select count(*) from c"), Value(std::int64_t{0}));
  EXPECT_THAT(FailureOf("copy (select 1) to stdout").description, HasSubstr("COPY TO STDOUT"));
  EXPECT_EQ(Cell("select 2"), Value(std::int64_t{2}));
}

TEST_F(PostgresCommands, CopyWithinATextThatIsShownIsReported) {
  const auto recordset = Run("select 3 as n; copy (select 1) to stdout");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("3"));
  ASSERT_EQ(Reports().size(), 1U);
  EXPECT_THAT(Reports()[0], HasSubstr("COPY TO STDOUT"));
  EXPECT_EQ(Cell("select 2"), Value(std::int64_t{2}));
}

}  // namespace tessel::test
