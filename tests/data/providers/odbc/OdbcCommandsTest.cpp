#include "tests/data/providers/odbc/OdbcFixture.h"

namespace tessel::test {

namespace {

using testing::HasSubstr;

std::vector<std::string> Texts(const std::vector<ErrorInfo>& records) {
  std::vector<std::string> texts;
  for (const ErrorInfo& record : records) texts.push_back(record.description);
  return texts;
}

std::string Repeat(std::size_t length) { return "repeat('x', " + std::to_string(length) + ")"; }

}  // namespace

class OdbcCommands : public OdbcTest {
 protected:
  /// The error of a command that must fail.
  ErrorInfo FailureOfCommand(Connection& connection, const std::string& sql) {
    try {
      Run(connection, sql);
    } catch (const Error& error) {
      return error.Info();
    }
    ADD_FAILURE() << "Did not fail: " << sql;
    return {};
  }
};

// --- notices and warnings ------------------------------------------------------------------------

TEST_F(OdbcCommands, NoticesOfPostgreSqlAreListedOneByOne) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "do $$ begin raise notice 'a;b'; raise warning 'c'; raise info 'd'; end $$");
  EXPECT_EQ(Texts(connection->Errors()),
            (std::vector<std::string>{"NOTICE: a;b", "WARNING: c", "INFO: d"}));
  EXPECT_EQ(connection->Errors()[0].number, errorNumber::information);
}

TEST_F(OdbcCommands, NoticesOfATextWithSeveralResultsAreListedOnce) {
  const auto connection = Connect(PostgresString());
  const auto recordset =
      Run(*connection, "drop table if exists nowhere; select 1 as one; select 2");
  EXPECT_EQ(AllText(*recordset), (std::vector<std::vector<std::string>>{{"1"}}));
  EXPECT_EQ(Texts(connection->Errors()),
            std::vector<std::string>{"NOTICE: table \"nowhere\" does not exist, skipping"});
}

TEST_F(OdbcCommands, WarningsOfMariaDbAreListedWithTheirCode) {
  const auto connection = Connect(MariaDbString());
  Run(*connection, "select 1/0");
  ASSERT_EQ(Texts(connection->Errors()), std::vector<std::string>{"Warning: Division by 0"});
  EXPECT_EQ(connection->Errors()[0].nativeError, 1365);
  EXPECT_EQ(connection->Errors()[0].number, errorNumber::information);
  Run(*connection, "drop table if exists nowhere");
  EXPECT_EQ(Texts(connection->Errors()).size(), 1U);
  Run(*connection, "select 1");
  EXPECT_TRUE(connection->Errors().empty());
}

TEST_F(OdbcCommands, WarningsOfMariaDbAreNotListedBesideThoseAskedFor) {
  const auto connection = Connect(MariaDbString());
  Run(*connection, "select 1/0");
  const auto recordset = Run(*connection, "-- which?\nshow warnings");
  EXPECT_EQ(recordset->RecordCount(), 1);
  EXPECT_TRUE(connection->Errors().empty());
}

TEST_F(OdbcCommands, AskingForWarningsLeavesTheCountOfFoundRows) {
  const auto connection = Connect(MariaDbString());
  Run(*connection, "select sql_calc_found_rows 1/0 from information_schema.engines limit 1");
  EXPECT_EQ(connection->Errors().size(), 1U);
  EXPECT_NE(ToText(ToView(Single(*connection, "select found_rows()"))), "0");
}

TEST_F(OdbcCommands, ErrorsKeepTheirState) {
  const auto postgres = Connect(PostgresString());
  const ErrorInfo missing = FailureOfCommand(*postgres, "select * from nowhere");
  EXPECT_EQ(missing.sqlState, "42P01");
  EXPECT_EQ(missing.source, "PostgreSQL Unicode");
  EXPECT_THAT(missing.description, HasSubstr("nowhere"));
  const auto mariaDb = Connect(MariaDbString());
  const ErrorInfo absent = FailureOfCommand(*mariaDb, "select * from nowhere");
  EXPECT_EQ(absent.sqlState, "42S02");
  EXPECT_EQ(absent.nativeError, 1146);
}

TEST_F(OdbcCommands, LongErrorsAreKept) {
  const auto connection = Connect(PostgresString());
  const ErrorInfo error = FailureOfCommand(
      *connection, "do $$ begin raise exception '%', repeat('y', 3000) || 'end'; end $$");
  EXPECT_THAT(error.description, HasSubstr("yend"));
}

// --- several statements and counts ---------------------------------------------------------------

TEST_F(OdbcCommands, CountsOfSeveralStatementsAreAddedUp) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    Run(*connection, "drop table if exists counted");
    Run(*connection, "create table counted (n integer)");
    EXPECT_EQ(Affected(*connection, "insert into counted values (1), (2); "
                                    "update counted set n = n where n = 1"),
              3);
    EXPECT_EQ(Affected(*connection, "update counted set n = 9 where n = 5"), 0);
    EXPECT_EQ(Affected(*connection, "update counted set n = n"), 2);
    Run(*connection, "drop table counted");
  }
}

TEST_F(OdbcCommands, AStatementThatCountsNothingSaysSo) {
  const auto connection = Connect(PostgresString());
  EXPECT_EQ(Affected(*connection, "create table if not exists uncounted (n integer)"), -1);
  EXPECT_EQ(Affected(*connection, "truncate uncounted"), -1);
  EXPECT_EQ(Affected(*connection, "begin"), -1);
  EXPECT_EQ(Affected(*connection, "delete from uncounted"), 0);
  EXPECT_EQ(Affected(*connection, "commit; drop table uncounted"), -1);
}

TEST_F(OdbcCommands, TheFirstResultWithColumnsIsShownAndTheRestIsRun) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    Run(*connection, "drop table if exists several");
    const auto recordset =
        Run(*connection, "create table several (n integer); insert into several values (7); "
                         "select n from several; select 'other'; insert into several values (8)");
    EXPECT_EQ(AllText(*recordset), (std::vector<std::vector<std::string>>{{"7"}}));
    EXPECT_EQ(Single(*connection, "select count(*) from several"), Value(std::int64_t{2}));
    Run(*connection, "drop table several");
  }
}

TEST_F(OdbcCommands, RowsThatAnActionReturnsAreShown) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "create temp table made (id serial, t text)");
  const auto recordset =
      Run(*connection, "insert into made (t) values ('a'), ('b') returning id, t");
  EXPECT_EQ(AllText(*recordset), (std::vector<std::vector<std::string>>{{"1", "a"}, {"2", "b"}}));
}

TEST_F(OdbcCommands, AnErrorDoesNotEndTheTransactionOfPostgreSqlUnseen) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "create temp table kept (n integer)");
  Run(*connection, "begin");
  Run(*connection, "insert into kept values (1)");
  Run(*connection, "savepoint s");
  FailureOfCommand(*connection, "insert into nowhere values (1)");
  EXPECT_EQ(FailureOfCommand(*connection, "select 1").sqlState, "25P02");
  EXPECT_EQ(connection->Transaction().state, UserTransaction::Failed);
  Run(*connection, "rollback to savepoint s");
  EXPECT_EQ(connection->Transaction().state, UserTransaction::Open);
  Run(*connection, "commit");
  EXPECT_EQ(connection->Transaction().state, UserTransaction::None);
  EXPECT_EQ(Single(*connection, "select n from kept"), Value(std::int64_t{1}));
}

TEST_F(OdbcCommands, WhatTheDriverHangsInIsRefused) {
  const auto connection = Connect(PostgresString());
  const ErrorInfo refused =
      FailureOfCommand(*connection, "select 1; /* copy */ copy (select 1) to stdout");
  EXPECT_EQ(refused.number, errorNumber::notSupported);
  EXPECT_THAT(refused.description, HasSubstr("STDIN or STDOUT"));
  EXPECT_EQ(Single(*connection, "select 'copy x to stdout'"), Value("copy x to stdout"));
}

// --- values --------------------------------------------------------------------------------------

TEST_F(OdbcCommands, ValuesLongerThanTheirBufferAreWhole) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 1025U, 5000U, 300000U}) {
      const auto recordset =
          Run(*connection, "select " + Repeat(length) + " as a, 1 as n, " + Repeat(length + 1) +
                               " as b union all select 'second', 2, 'row'");
      const Rows rows = AllRows(*recordset);
      ASSERT_EQ(rows.size(), 2U);
      EXPECT_EQ(rows[0][0], Value(std::string(length, 'x'))) << length;
      EXPECT_EQ(rows[0][2], Value(std::string(length + 1, 'x'))) << length;
      EXPECT_EQ(rows[1][0], Value("second"));
    }
  }
}

TEST_F(OdbcCommands, LongBinaryValuesAreWhole) {
  const auto postgres = Connect(PostgresString());
  const auto mariaDb = Connect(MariaDbString());
  for (const std::size_t length : {1023U, 1024U, 1025U, 200000U}) {
    const Bytes expected(length, std::byte{0});
    EXPECT_EQ(
        Single(*postgres, "select decode(repeat('00', " + std::to_string(length) + "), 'hex')"),
        Value(expected));
    EXPECT_EQ(
        Single(*mariaDb, "select cast(repeat(x'00', " + std::to_string(length) + ") as binary)"),
        Value(expected));
  }
}

TEST_F(OdbcCommands, UnicodeInCommandsNamesAndValuesIsKept) {
  for (const std::string& server : {PostgresString(), MariaDbString(), SqliteString("text.db")}) {
    const auto connection = Connect(server);
    const auto recordset =
        Run(*connection, "select '\u017elu\u0165 \U0001F600' as \u010d\u00edslo");
    EXPECT_EQ(recordset->Fields()[0].name, "\u010d\u00edslo");
    EXPECT_EQ(AllText(*recordset)[0][0], "\u017elu\u0165 \U0001F600");
  }
}

}  // namespace tessel::test
