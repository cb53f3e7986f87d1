#include "tests/data/providers/native/NativeFixture.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class PostgresWrite : public PostgresTest {
 protected:
  std::shared_ptr<Recordset> OpenToWrite(const std::string& sql) {
    const auto recordset = QueryNow(*connection_, sql, LockType::Optimistic);
    return recordset;
  }
};

}  // namespace

TEST_F(PostgresWrite, AFailedTransactionIsSaidAndLeftAlone) {
  Run("create temporary table t (id integer primary key, v text)");
  Run("insert into t values (1, 'a')");
  const auto recordset = OpenToWrite("select id, v from t");
  recordset->SetFieldValue(1, Text("b"));
  Run("begin");
  EXPECT_EQ(FailureOf("select 1 / 0").sqlState, "22012");
  const ErrorInfo error = ErrorOf([&] { Update(*recordset); });
  EXPECT_EQ(error.sqlState, "25P02");
  EXPECT_THAT(error.description, HasSubstr("Your transaction has failed"));
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  Run("rollback");
  Update(*recordset);
  EXPECT_EQ(Cell("select v from t"), Text("b"));
}

TEST_F(PostgresWrite, TheStateOfATransactionIsToldUntilItEnds) {
  const auto state = [this] { return connection_->Transaction().state; };
  Run("begin");
  const auto since = connection_->Transaction().since;
  EXPECT_EQ(FailureOf("select 1 / 0").sqlState, "22012");
  EXPECT_EQ(state(), UserTransaction::Failed);
  EXPECT_EQ(connection_->Transaction().since, since);
  Run("commit");
  EXPECT_EQ(state(), UserTransaction::None);
  Run("begin; create temporary table t (n integer)");
  EXPECT_EQ(state(), UserTransaction::Open);
  UseCatalog(*connection_, connection_->DefaultDatabase());
  EXPECT_EQ(state(), UserTransaction::None) << "a new session";
  EXPECT_TRUE(connection_->ProviderProperties().Number("Catalog Change Ends Session", 0) != 0);
}

TEST_F(PostgresWrite, AConstraintThatIsCheckedAtTheEndUndoesTheChange) {
  Run("create temporary table t (id integer primary key, v integer unique deferrable initially "
      "deferred)");
  Run("insert into t values (1, 10), (2, 20)");
  const auto recordset = OpenToWrite("select id, v from t order by id");
  recordset->SetFieldValue(1, Whole(20));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).sqlState, "23505");
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  recordset->CancelUpdate();
  EXPECT_THAT(TextsOf(*Run("select v from t order by id")), ElementsAre("10", "20"));
  EXPECT_TRUE(Reports().empty());
}

TEST_F(PostgresWrite, WhatAlwaysIsGeneratedIsNotUpdatable) {
  Run("create temporary table t (id integer generated always as identity primary key, v text)");
  const auto recordset = OpenToWrite("select id, v from t");
  EXPECT_FALSE(recordset->Fields()[0].updatable);
  EXPECT_TRUE(recordset->Fields()[1].updatable);
  recordset->AddNew();
  recordset->SetFieldValue(1, Text("a"));
  Update(*recordset);
  EXPECT_EQ(ToValue(recordset->FieldValue(0)), Whole(1));
}

TEST_F(PostgresWrite, AViewIsWrittenThroughWhereItCanBe) {
  Run("create temporary table t (id integer primary key, v text)");
  Run("insert into t values (1, 'a')");
  Run("create temporary view plain as select v, id from t");
  Run("create temporary view counted as select count(*) as n from t");
  const auto recordset = OpenToWrite("select * from plain");
  recordset->SetFieldValue(0, Text("b"));
  Update(*recordset);
  EXPECT_EQ(Cell("select v from t"), Text("b"));
  const auto counted = OpenToWrite("select * from counted");
  EXPECT_FALSE(counted->Fields()[0].updatable);
  EXPECT_EQ(ErrorOf([&] { counted->SetFieldValue(0, Whole(2)); }).number,
            errorNumber::notSupported);
}

TEST_F(PostgresWrite, ATriggerIsReadBackAndItsNoticeReported) {
  Run("create table t_write (id integer primary key, v text)");
  Run("insert into t_write values (1, 'a')");
  Run("create function pg_temp.shout() returns trigger language plpgsql as $$ begin"
      " raise notice 'heard %', new.v; new.v := upper(new.v); return new; end $$");
  Run("create trigger shout before update on t_write for each row execute function "
      "pg_temp.shout()");
  const auto recordset = OpenToWrite("select id, v from t_write");
  recordset->SetFieldValue(1, Text("quiet"));
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(1)), "QUIET");
  EXPECT_THAT(Reports(), ElementsAre(HasSubstr("heard quiet")));
  Run("drop table t_write");
}

TEST_F(PostgresWrite, AZeroCharacterIsRefused) {
  Run("create temporary table t (id integer primary key, v text)");
  Run("insert into t values (1, 'a')");
  const auto recordset = OpenToWrite("select id, v from t");
  recordset->SetFieldValue(1, std::string("a\0b", 3));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::typeMismatch);
  EXPECT_EQ(Cell("select v from t"), Text("a"));
  EXPECT_EQ(Cell("select 42"), Whole(42));
}

TEST_F(PostgresWrite, ExactNumbersAreComparedExactly) {
  Run("create temporary table t (id integer primary key, v numeric)");
  Run("insert into t values (1, 12345678901234567890123456789012345678)");
  const auto recordset = OpenToWrite("select id, v from t");
  Run("update t set v = v + 1");
  recordset->SetFieldValue(1, Text("1"));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
}

}  // namespace tessel::test
