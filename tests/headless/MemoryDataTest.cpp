// The databases of the tests: what the server in memory gives, and that a test can act between any
// two steps of a task.

#include "tests/support/MemoryData.h"

#include <functional>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/headless/HeadlessServices.h"
#include "tests/support/DataSteps.h"
#include "tests/support/ErrorNumber.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;

class MemoryDataTest : public testing::Test {
 protected:
  std::shared_ptr<Connection> NewConnection(const std::string& connectionString = "db") {
    auto connection = data.CreateConnection();
    connection->SetConnectionString(connectionString);
    return connection;
  }
  std::shared_ptr<Connection> Connect(const std::string& connectionString = "db") {
    auto connection = NewConnection(connectionString);
    OpenNow(*connection, "me", "secret");
    return connection;
  }
  static StartedQuery Start(Connection& connection, const std::string& sql) {
    return StartedQuery(connection.StartQuery(sql, LockType::ReadOnly));
  }
  MemoryResult& AnswerRows(const std::string& sql) {
    return data.Answer(sql, {MemoryField("id", DataType::Integer), MemoryField("name")},
                       {{1, "b"}, {2, "a"}, {3, Value()}});
  }
  void Drain() {
    while (queue.RunOne()) continue;
  }
  /// Runs notices until `holds`; false when none is left before.
  bool DrainUntil(const std::function<bool()>& holds) {
    while (!holds())
      if (!queue.RunOne()) return false;
    return true;
  }

  HeadlessQueue queue;
  MemoryData data{queue};
};

// --- steps ---------------------------------------------------------------------------------------

TEST_F(MemoryDataTest, WhatIsNotWaitedForIsDoneOnTheQueue) {
  const auto connection = NewConnection();
  const auto opening = connection->StartOpen("me", "secret");
  EXPECT_EQ(connection->State(), objectState::connecting);
  Drain();
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_EQ(data.Log().opened.at(0).password, "secret");
  EXPECT_TRUE(data.Log().opened.at(0).async);
  EXPECT_EQ(data.Log().openSessions, 1);
}

TEST_F(MemoryDataTest, WhatIsWaitedForIsDoneAtOnce) {
  AnswerRows("select");
  const auto connection = Connect();
  EXPECT_FALSE(data.Log().opened.at(0).async);
  EXPECT_EQ(QueryNow(*connection, "select")->RecordCount(), 3);
  EXPECT_FALSE(data.Log().executed.at(0).async);
}

TEST_F(MemoryDataTest, EachBlockOfRowsIsSeenBeforeTheNextComes) {
  AnswerRows("select").Block(2);
  const auto connection = Connect();
  const auto rows = Start(*connection, "select");
  EXPECT_EQ(rows.State(), objectState::executing);
  constexpr int fetching = objectState::open | objectState::fetching;
  EXPECT_TRUE(DrainUntil([&] { return rows.State() == fetching; }));
  EXPECT_EQ(rows->RecordCount(), 0);
  for (const std::int64_t count : {2, 3}) {
    EXPECT_TRUE(
        DrainUntil([&] { return rows->RecordCount() > 0 && rows->RecordCount() == count; }));
    EXPECT_EQ(rows.State(), fetching);
  }
  Drain();
  EXPECT_EQ(rows.State(), objectState::open);
  EXPECT_THAT(data.ExecutedSql(), ElementsAre("select"));
}

TEST_F(MemoryDataTest, AHeldStepComesWhenItIsResumed) {
  data.holdConnecting = true;
  AnswerRows("select").HoldExecuting().HoldAtRow(1);
  const auto connection = NewConnection();
  const auto opening = connection->StartOpen({}, {});
  Drain();
  EXPECT_EQ(connection->State(), objectState::connecting);
  data.Resume();
  Drain();
  const auto rows = Start(*connection, "select");
  Drain();
  EXPECT_EQ(rows.State(), objectState::executing);
  data.Resume();
  Drain();
  EXPECT_EQ(rows->RecordCount(), 1);
  data.Resume();
  Drain();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(rows.State(), objectState::open);
}

TEST_F(MemoryDataTest, AHeldStepEndsByACancel) {
  AnswerRows("select").HoldAtRow(1);
  const auto connection = Connect();
  const auto rows = Start(*connection, "select");
  Drain();
  rows.Cancel();
  Drain();
  EXPECT_EQ(rows.State(), objectState::open);
  EXPECT_EQ(rows->RecordCount(), 1) << "what came before is kept";
  EXPECT_EQ(connection->Errors().back().number, errorNumber::cancelled);
  EXPECT_EQ(data.Log().cancels, 1);
}

TEST_F(MemoryDataTest, ClosingEndsWhatIsHeld) {
  AnswerRows("select").HoldExecuting();
  auto connection = Connect();
  const auto rows = Start(*connection, "select");
  Drain();
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_EQ(data.Log().openSessions, 0);
  OpenNow(*connection);
  connection.reset();
  Drain();
  EXPECT_THAT(data.Log().closed, ElementsAre("db", "db"));
}

// --- answers -------------------------------------------------------------------------------------

TEST_F(MemoryDataTest, AnswersOfOneTextComeInOrderAndTheLastAgain) {
  data.AnswerNothing("select");
  AnswerRows("select");
  const auto connection = Connect();
  EXPECT_EQ(QueryNow(*connection, "select").State(), objectState::closed);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(QueryNow(*connection, "select")->RecordCount(), 3);
}

TEST_F(MemoryDataTest, EachConnectionStringMayHaveItsServer) {
  data.AnswerNothing("select");
  data.ServerOf("other").Answer("select", MemoryFields({"a"}), {{"x"}});
  EXPECT_EQ(QueryNow(*Connect("db"), "select").State(), objectState::closed);
  const auto other = Connect("other");
  EXPECT_EQ(QueryNow(*other, "select")->RecordCount(), 1);
}

TEST_F(MemoryDataTest, EveryCallFailsOnDemand) {
  data.openRefused = MemoryError("no provider", errorNumber::providerNotFound);
  EXPECT_EQ(ErrorNumberOf([&] { Connect(); }), errorNumber::providerNotFound);
  data.openRefused.reset();
  data.openFailure = MemoryError("refused");
  EXPECT_EQ(ErrorNumberOf([&] { Connect(); }), errorNumber::database);
  data.openFailure.reset();
  data.closeFailure = MemoryError("stuck");
  const auto connection = Connect();
  EXPECT_EQ(ErrorNumberOf([&] { connection->Close(); }), errorNumber::database);
  data.AnswerError("bad", MemoryError("syntax"));
  EXPECT_EQ(ErrorNumberOf([&] { QueryNow(*connection, "bad"); }), errorNumber::database);
  AnswerRows("breaks").FailAtRow(2, MemoryError("broken"));
  const auto rows = Start(*connection, "breaks");
  Drain();
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(connection->Errors().back().description, "broken");
}

TEST_F(MemoryDataTest, ASessionWhoseServerIsGoneFailsAndIsClosed) {
  AnswerRows("select");
  const auto connection = Connect();
  data.LoseSessions();
  EXPECT_EQ(connection->State(), objectState::open) << "nobody has seen it yet";
  EXPECT_EQ(ErrorNumberOf([&] { QueryNow(*connection, "select"); }), errorNumber::database);
  EXPECT_EQ(connection->State(), objectState::closed);
}

TEST_F(MemoryDataTest, NoticesFollowASuccess) {
  data.AnswerCount("update", 1).Notices({MemoryError("truncated", errorNumber::information)});
  const auto connection = Connect();
  QueryNow(*connection, "update");
  ASSERT_EQ(connection->Errors().size(), 1U);
  EXPECT_EQ(connection->Errors()[0].description, "truncated");
}

TEST_F(MemoryDataTest, CatalogsAreChanged) {
  data.catalogs = {"shop", "archive"};
  data.defaultDatabase = "shop";
  const auto connection = Connect();
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  EXPECT_EQ(ErrorNumberOf([&] { UseCatalog(*connection, "[archive]"); }), errorNumber::database);
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  UseCatalog(*connection, "ARCHIVE");
  EXPECT_EQ(connection->DefaultDatabase(), "archive");
  data.takesBrackets = true;
  UseCatalog(*connection, "[shop]");
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  EXPECT_THAT(data.Log().catalogs, ElementsAre("[archive]", "ARCHIVE", "[shop]"));
}

// --- changes -------------------------------------------------------------------------------------

class MemoryChangesTest : public MemoryDataTest {
 protected:
  MemoryChangesTest() {
    MemoryResult& answer = AnswerRows("rows");
    answer.fields[0].nullable = false;
    answer.fields[0].autoIncrement = true;
    table = answer.rows;
    rows = QueryNow(*connection, "rows", LockType::Optimistic);
  }

  std::shared_ptr<Connection> connection = Connect();
  std::shared_ptr<MemoryRows> table;
  std::shared_ptr<Recordset> rows;
};

TEST_F(MemoryChangesTest, RecordsAreChangedAddedAndDeletedOnTheServer) {
  rows->SetFieldValue(1, "x");
  Update(*rows);
  EXPECT_EQ(table->at(0).at(1), Value("x"));
  rows->AddNew();
  rows->SetFieldValue(1, "new");
  Update(*rows);
  EXPECT_EQ(table->at(3), (MemoryRow{4, "new"})) << "with a number of its own";
  EXPECT_EQ(ToText(rows->FieldValue(0)), "4");
  rows->AddNew();
  Update(*rows);
  EXPECT_EQ(table->at(4), (MemoryRow{5, Value()}));
  rows->MoveTo(3);
  Delete(*rows);
  EXPECT_EQ(table->size(), 4U);
  EXPECT_EQ(table->at(2).at(0), Value(4));
  EXPECT_EQ(data.Log().changes, 4);
}

TEST_F(MemoryChangesTest, TheServerRefusesWhatBreaksItsRules) {
  rows->SetFieldValue(0, 2);
  EXPECT_EQ(ErrorNumberOf([&] { Update(*rows); }), errorNumber::database) << "the key is taken";
  rows->SetFieldValue(0, Value());
  EXPECT_EQ(ErrorNumberOf([&] { Update(*rows); }), errorNumber::database) << "it is null";
  EXPECT_EQ(table->at(0), (MemoryRow{1, "b"}));
}

TEST_F(MemoryChangesTest, WhatOthersChangedMeanwhileIsAConflict) {
  table->at(0).at(1) = "theirs";
  rows->SetFieldValue(1, "mine");
  EXPECT_EQ(ErrorNumberOf([&] { Update(*rows); }), errorNumber::changeConflict);
  rows->CancelUpdate();
  EXPECT_EQ(ErrorNumberOf([&] { Delete(*rows); }), errorNumber::changeConflict);
  EXPECT_EQ(table->size(), 3U);
}

TEST_F(MemoryChangesTest, AChangeThatHitsSeveralRowsIsUndone) {
  const auto twins = data.Answer("twins", MemoryFields({"a", "b"}), {{"x", "y"}, {"x", "y"}})
                         .UniqueRows(false)
                         .rows;
  const auto keyless = QueryNow(*connection, "twins", LockType::Optimistic);
  keyless->SetFieldValue(1, "z");
  EXPECT_EQ(ErrorNumberOf([&] { Update(*keyless); }), errorNumber::changeConflict);
  keyless->CancelUpdate();
  EXPECT_EQ(ErrorNumberOf([&] { Delete(*keyless); }), errorNumber::changeConflict);
  EXPECT_EQ(*twins, (MemoryRows{{"x", "y"}, {"x", "y"}}));
}

TEST_F(MemoryChangesTest, RowsThatComeFromNoTableAreNotWritten) {
  data.Answer("join", MemoryFields({"a"}), {{"x"}}).Writable(false);
  const auto join = QueryNow(*connection, "join", LockType::Optimistic);
  EXPECT_EQ(ErrorNumberOf([&] { join->SetFieldValue(0, "y"); }), errorNumber::notSupported);
}

TEST_F(MemoryChangesTest, AHeldChangeIsWrittenWhenItIsResumed) {
  data.holdChanges = true;
  rows->SetFieldValue(1, "x");
  const auto update = rows->StartUpdate();
  Drain();
  EXPECT_EQ(rows->State(), objectState::open | objectState::executing);
  EXPECT_EQ(table->at(0).at(1), Value("b"));
  data.Resume();
  Drain();
  EXPECT_EQ(table->at(0).at(1), Value("x"));
}

TEST_F(MemoryChangesTest, AStatementOfAnotherFormIsRefused) {
  MemoryWriter writer(data);
  for (const char* sql :
       {"replace into \"table1\"", "delete from \"nowhere\" where \"id\" is null",
        "delete from \"table1\" where \"nothing\" is null", "delete from \"table1\"",
        "delete from \"table1\" where \"id\" is null or 1",
        "delete from \"table1\" where \"id\" = ?", "insert into \"table1\" default values",
        "update \"table1\" set \"name\" = 1"}) {
    RowStatement statement;
    statement.sql = sql;
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(writer.Run(statement)); }),
              errorNumber::database)
        << sql;
  }
  EXPECT_EQ(ErrorNumberOf([&] { writer.Control("set transaction"); }), errorNumber::database);
}

}  // namespace
}  // namespace tessel::test
