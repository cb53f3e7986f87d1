#include "logic/import/ImportTarget.h"
#include "tests/data/providers/native/NativeFixture.h"
#include "tests/data/support/ListFeed.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;

namespace {

class MariaWrite : public MariaTest {
 protected:
  std::shared_ptr<Recordset> OpenToWrite(const std::string& sql) {
    const auto recordset = QueryNow(*connection_, sql, LockType::Optimistic);
    return recordset;
  }
};

}  // namespace

TEST_F(MariaWrite, DuplicatesAreLeftAloneWhereNothingCanBeUndone) {
  Run("create temporary table t (a integer, b varchar(10)) engine = myisam");
  Run("insert into t values (1, 'x'), (1, 'x'), (2, 'y')");
  const auto recordset = OpenToWrite("select a, b from t order by a");
  recordset->SetFieldValue(1, Text("changed"));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
  recordset->CancelUpdate();
  EXPECT_EQ(ErrorOf([&] { Delete(*recordset); }).number, errorNumber::changeConflict);
  recordset->MoveLast();
  recordset->SetFieldValue(1, Text("z"));
  Update(*recordset);
  EXPECT_THAT(TextsOf(*Run("select b from t order by a")), ElementsAre("x", "x", "z"));
}

TEST_F(MariaWrite, WhereNothingCanBeUndoneRowsAreLoadedInBatchesOnly) {
  Run("create temporary table t (a integer) engine = myisam");
  LoadRequest request{
      .table = "t",
      .columns = {{"a", DataType::Integer}},
      .rows = std::make_shared<ListFeed>(std::vector<std::vector<Value>>{{Whole(1)}, {Whole(2)}})};
  const auto whole = connection_->StartLoad(request);
  whole->Wait();
  EXPECT_EQ(whole->Outcome(), OperationOutcome::Failed);
  EXPECT_THAT(whole->Failure()->description, testing::HasSubstr("MyISAM, knows no transactions"));
  request.commitRows = 100;
  request.rows =
      std::make_shared<ListFeed>(std::vector<std::vector<Value>>{{Whole(1)}, {Whole(2)}});
  const auto batches = connection_->StartLoad(request);
  batches->Wait();
  EXPECT_EQ(batches->RowsKept(), 2);
  EXPECT_THAT(TextsOf(*Run("select a from t order by a")), ElementsAre("1", "2"));
}

/// Its database may have a set of 256 of them.
TEST_F(MariaWrite, ATableThatIsMadeTakesEveryCharacter) {
  Run("create or replace database narrow character set latin1");
  Run("use narrow");
  const std::string text = "\u6F22 \U0001F600 \u00FC";
  const NameQuoting quoting(connection_->ProviderProperties());
  const auto load = connection_->StartLoad(
      {.table = "made",
       .columns = {{"v", DataType::VarWChar}},
       .rows = std::make_shared<ListFeed>(std::vector<std::vector<Value>>{{Text(text)}}),
       .createTable = CreateTableText(SqlDialect::MariaDB, quoting, "made", {{"v", {}}})});
  load->Wait();
  EXPECT_EQ(load->Outcome(), OperationOutcome::Done);
  EXPECT_THAT(TextsOf(*Run("select v from made")), ElementsAre(text));
  Run("drop database narrow");
}

TEST_F(MariaWrite, WhatTheServerWouldChangeIsRefused) {
  Run("create temporary table t (a tinyint) engine = innodb");
  Run("set sql_mode = ''");
  const auto load =
      connection_->StartLoad({.table = "t",
                              .columns = {{"a", DataType::Integer}},
                              .rows = std::make_shared<ListFeed>(
                                  std::vector<std::vector<Value>>{{Whole(1)}, {Whole(1'000)}})});
  load->Wait();
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused());
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(1));
  EXPECT_EQ(load->Refused()->column, "a");
  EXPECT_THAT(TextsOf(*Run("select count(*) from t")), ElementsAre("0"));
}

/// The server undoes the whole transaction of the one that it chooses, and says so by the error
/// only.
TEST_F(MariaWrite, ADeadlockEndsTheTransactionOfOne) {
  Run("create or replace table t_dead (id integer primary key, v integer) engine = innodb");
  Run("insert into t_dead values (1, 0), (2, 0)");
  const auto other = Connect();
  Run("begin");
  Run("update t_dead set v = 1 where id = 1");
  DataTest::Run(*other, "begin");
  DataTest::Run(*other, "update t_dead set v = 2 where id = 2");
  EventLog log;
  const auto waiting = Start(*connection_, "update t_dead set v = 1 where id = 2", log);
  bool otherFailed = false;
  try {
    DataTest::Run(*other, "update t_dead set v = 2 where id = 1");
  } catch (const Error& error) {
    otherFailed = true;
    EXPECT_EQ(error.Info().nativeError, 1213) << error.Description();
    EXPECT_EQ(other->Transaction().state, UserTransaction::None);
  }
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_NE(otherFailed, log.LastError().has_value()) << "one of them had to give way";
  EXPECT_EQ(connection_->Transaction().state,
            otherFailed ? UserTransaction::Open : UserTransaction::None);
  Run("rollback");
  DataTest::Run(*other, "rollback");
  Run("drop table t_dead");
}

TEST_F(MariaWrite, WithoutAutocommitTheChangeWaitsForTheUsersCommit) {
  Run("create or replace table t_write (id integer primary key, v varchar(10))");
  Run("insert into t_write values (1, 'a')");
  const auto other = Connect();
  const auto state = [this] { return connection_->Transaction().state; };
  Run("set autocommit = 0");
  EXPECT_EQ(state(), UserTransaction::Waiting) << "nothing is done yet";
  const auto recordset = OpenToWrite("select id, v from t_write");
  recordset->SetFieldValue(1, Text("b"));
  Update(*recordset);
  EXPECT_EQ(state(), UserTransaction::Open);
  EXPECT_EQ(DataTest::Cell(*other, "select v from t_write"), Text("a"));
  Run("rollback");
  EXPECT_EQ(state(), UserTransaction::Waiting);
  EXPECT_EQ(Cell("select v from t_write"), Text("a"));
  Run("set autocommit = 1");
  Run("drop table t_write");
}

TEST_F(MariaWrite, TheSameValueIsNoConflict) {
  Run("create temporary table t (id integer primary key, v varchar(10))");
  Run("insert into t values (1, 'a')");
  const auto recordset = OpenToWrite("select id, v from t");
  recordset->SetFieldValue(1, Text("a"));
  Update(*recordset);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
}

TEST_F(MariaWrite, ViewsAreWrittenThroughWhereTheyCanBe) {
  Run("create or replace table t_write (id integer primary key, v varchar(10))");
  Run("insert into t_write values (1, 'a')");
  Run("create or replace view plain as select v, id from t_write");
  Run("create or replace view few as select distinct v from t_write");
  const auto recordset = OpenToWrite("select * from plain");
  recordset->SetFieldValue(0, Text("b"));
  Update(*recordset);
  EXPECT_EQ(Cell("select v from t_write"), Text("b"));
  const auto few = OpenToWrite("select * from few");
  EXPECT_FALSE(few->Fields()[0].updatable);
  const auto derived = OpenToWrite("select * from (select id, v from t_write limit 5) as t");
  EXPECT_FALSE(derived->Fields()[0].updatable);
  Run("drop view plain, few");
  Run("drop table t_write");
}

TEST_F(MariaWrite, ExactNumbersAreComparedExactly) {
  Run("create temporary table t (id integer primary key, v decimal(38,0))");
  Run("insert into t values (1, 12345678901234567890123456789012345678)");
  const auto recordset = OpenToWrite("select id, v from t");
  Run("update t set v = v + 1");
  recordset->SetFieldValue(1, Text("1"));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
}

TEST_F(MariaWrite, AnotherCharacterSetIsComparedToo) {
  Run("create temporary table t (id integer primary key, v varchar(20) character set latin1)");
  Run("insert into t values (1, 'gr\u00fc\u00dfe')");
  const auto recordset = OpenToWrite("select id, v from t");
  recordset->SetFieldValue(1, Text("\u00e4"));
  Update(*recordset);
  EXPECT_EQ(Cell("select v from t"), Text("\u00e4"));
  EXPECT_EQ(Cell("select id from t"), Whole(1));
}

}  // namespace tessel::test
