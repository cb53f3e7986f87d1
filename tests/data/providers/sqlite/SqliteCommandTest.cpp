#include "tests/data/providers/sqlite/SqliteTest.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

class SqliteCommand : public SqliteTest {
 protected:
  std::int64_t CountOf(Connection& connection, const std::string& sql) {
    return Run(connection, sql).Operation().RecordsAffected();
  }
};

TEST_F(SqliteCommand, OnlyStatementsThatChangeRowsAreCounted) {
  const auto connection = OpenMemory();
  EXPECT_EQ(CountOf(*connection, "create table t (a, b)"), -1);
  EXPECT_EQ(CountOf(*connection, "insert into t values (1, 1), (2, 2)"), 2);
  EXPECT_EQ(CountOf(*connection, "create table u as select * from t"), -1);
  EXPECT_EQ(CountOf(*connection, "select * from t"), -1);
  EXPECT_EQ(CountOf(*connection, "pragma user_version = 5"), -1);
  EXPECT_EQ(CountOf(*connection, "begin"), -1);
  EXPECT_EQ(CountOf(*connection, "/* x */ with c as (select 3) insert into t select *, 0 from c"),
            1);
  EXPECT_EQ(CountOf(*connection, "update t set a = a where 0"), 0);
  EXPECT_EQ(CountOf(*connection, "replace into t values (9, 9); drop table u; delete from t"), 5);
  EXPECT_EQ(CountOf(*connection, "commit"), -1);
  EXPECT_EQ(CountOf(*connection, "-- c\n;;"), -1);
}

TEST_F(SqliteCommand, ReturningGivesRowsBeforeItsCountIsKnown) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (id integer primary key, a)");
  const auto recordset = Run(*connection, "insert into t (a) values ('x'), ('y') returning id, a");
  EXPECT_EQ(recordset.Operation().RecordsAffected(), -1);
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2"));
}

TEST_F(SqliteCommand, ANulInTheTextRunsNothing) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (a)");
  const std::string text("insert into t values (1); \0 delete from t", 41);
  const ErrorInfo error = ErrorOf([&] { Run(*connection, text); });
  EXPECT_THAT(error.description, HasSubstr("NUL"));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ACharacterZeroInAValueSurvives) {
  const auto connection = OpenMemory();
  EXPECT_EQ(Cell(*connection, "select 'a' || char(0) || 'b'"), Value(std::string("a\0b", 3)));
}

TEST_F(SqliteCommand, TextThatIsNoUtf8SurvivesAsItIs) {
  const auto connection = OpenMemory();
  EXPECT_EQ(Cell(*connection, "select cast(x'61ff80c3' as text)"),
            Value(std::string("a\xFF\x80\xC3")));
}

TEST_F(SqliteCommand, OneColumnMayHoldEveryKind) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (v); insert into t values (1), (2.5), ('x'), (x'00'), (null)");
  const auto rows = RowsOf(*Run(*connection, "select v from t"));
  EXPECT_THAT(rows, ElementsAre(ElementsAre(Value(std::int64_t{1})), ElementsAre(Value(2.5)),
                                ElementsAre(Value(std::string("x"))), ElementsAre(Value(Bytes(1))),
                                ElementsAre(Value())));
}

TEST_F(SqliteCommand, ErrorsCarryTheCodeOfSqlite) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (a integer primary key, b not null)");
  Run(*connection, "insert into t values (1, 1)");
  EXPECT_EQ(ErrorOf([&] { Run(*connection, "selec 1"); }).nativeError, 1);
  const ErrorInfo duplicate = ErrorOf([&] { Run(*connection, "insert into t values (1, 2)"); });
  EXPECT_EQ(duplicate.nativeError, 1555);
  EXPECT_EQ(duplicate.source, "SQLite");
  EXPECT_EQ(duplicate.description, "UNIQUE constraint failed: t.a");
}

TEST_F(SqliteCommand, ErrorsOfLaterStatementsAreListed) {
  const auto connection = OpenMemory();
  const auto recordset = Run(*connection, "select 1; select * from nowhere; select 2");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1"));
  ASSERT_EQ(connection->Errors().size(), 1U);
  EXPECT_THAT(connection->Errors()[0].description, HasSubstr("nowhere"));
}

TEST_F(SqliteCommand, AFullDiskFailsTheCommandAndNotTheConnection) {
  const auto connection = OpenFile("small.db");
  Run(*connection, "create table t (a); pragma max_page_count = 20");
  const ErrorInfo error = ErrorOf([&] {
    Run(*connection, "insert into t with recursive c(n) as (select 1 union all select n + 1 from c "
                     "where n < 1000) select hex(zeroblob(1000)) from c");
  });
  EXPECT_EQ(error.nativeError & 0xFF, 13);
  EXPECT_THAT(error.description, HasSubstr("full"));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ALockedTableIsWaitedForAndThenReported) {
  const auto holder = OpenFile("shared.db");
  Run(*holder, "create table t (a); begin immediate; insert into t values (1)");
  const auto other = OpenFile("shared.db", "Timeout=0");
  const ErrorInfo error = ErrorOf([&] { Run(*other, "insert into t values (2)"); });
  EXPECT_EQ(error.nativeError & 0xFF, 5);
  EXPECT_THAT(error.description, HasSubstr("locked"));
  Run(*holder, "commit");
  Run(*other, "insert into t values (2)");
  EXPECT_EQ(ToText(ToView(Cell(*holder, "select count(*) from t"))), "2");
}

TEST_F(SqliteCommand, WaitingForALockEndsWhenItIsReleased) {
  const auto holder = OpenFile("shared.db");
  Run(*holder, "create table t (a); begin immediate");
  const auto other = OpenFile("shared.db", "Timeout=3600");
  EventLog log;
  const auto recordset = Start(*other, "insert into t values (2)", log);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(30));
  EXPECT_TRUE(log.Lines().empty());
  Run(*holder, "commit");
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
}

TEST_F(SqliteCommand, WaitingForALockCanBeCancelled) {
  const auto holder = OpenFile("shared.db");
  Run(*holder, "create table t (a); begin immediate");
  const auto other = OpenFile("shared.db", "Timeout=3600");
  EventLog log;
  const auto recordset = Start(*other, "insert into t values (2)", log);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(30));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(other->State(), objectState::open);
}

TEST_F(SqliteCommand, ATransactionIsTheUsersOwn) {
  const auto connection = OpenFile("own.db");
  Run(*connection, "create table t (a); begin; insert into t values (1)");
  EXPECT_THROW(Run(*connection, "no statement"), Error);
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "1");
  Run(*connection, "rollback");
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ClosingUndoesWhatWasNotCommitted) {
  const auto connection = OpenFile("own.db");
  Run(*connection, "create table t (a); begin; insert into t values (1)");
  connection->Close();
  EXPECT_EQ(ToText(ToView(Cell(*OpenFile("own.db"), "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ACancelledChangeIsUndone) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (a)");
  EventLog log;
  const auto recordset =
      Start(*connection,
            "insert into t with recursive c(n) as (select 1 union all select n + 1 from c) "
            "select n from c",
            log);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(30));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ACancelledFetchLeavesLaterStatementsUndone) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (a)");
  EventLog log;
  const auto recordset =
      Start(*connection,
            "with recursive c(n) as (select 1 union all select n + 1 from c) select n from c; "
            "insert into t values (1)",
            log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.ProgressCount() > 0; }));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_GT(recordset->RecordCount(), 0);
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from t"))), "0");
}

TEST_F(SqliteCommand, ALaterStatementThatIsCancelledKeepsTheRows) {
  const auto connection = OpenMemory();
  EventLog log;
  const auto recordset =
      Start(*connection,
            "select 7; with recursive c(n) as (select 1 union all select n + 1 from c) "
            "select count(*) from c",
            log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !log.Lines().empty(); }));
  recordset.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(log.Lines().back(), "failed 3712");
  EXPECT_LE(recordset->RecordCount(), 1);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(SqliteCommand, AValueOf100MegabytesComesWhole) {
  const auto connection = OpenMemory();
  const Value value = Cell(*connection, "select zeroblob(100000000)");
  EXPECT_EQ(std::get<Bytes>(value).size(), 100'000'000U);
}

TEST_F(SqliteCommand, AttachedDatabasesCanBeNamed) {
  const auto connection = OpenFile("main.db");
  Run(*connection, "attach '" + File("other.db") + "' as other; create table other.t (a)");
  Run(*connection, "insert into other.t values (5)");
  const auto recordset = Run(*connection, "select a from other.t");
  EXPECT_EQ(recordset->Fields()[0].baseCatalog, "other");
  EXPECT_EQ(connection->DefaultDatabase(), "");
  EXPECT_EQ(ErrorOf([&] { UseCatalog(*connection, "other"); }).number, errorNumber::notSupported);
}

}  // namespace tessel::test
