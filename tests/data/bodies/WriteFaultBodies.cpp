#include <chrono>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::size_t id = 0;
constexpr std::size_t name = 1;

}  // namespace

TEST_P(WriteFaultBodies, ARowChangedBySomebodyElseIsAConflict) {
  const auto recordset = OpenAll();
  RunOutside("update " + table_->Name() + " set name = 'theirs' where id = 1");
  recordset->SetFieldValue(name, Text("mine"));
  const ErrorInfo error = ErrorOf([&] { Update(*recordset); });
  EXPECT_EQ(error.number, errorNumber::changeConflict);
  EXPECT_THAT(error.description, HasSubstr("changed or deleted by somebody else"));
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "mine");
  EXPECT_THAT(Names(), ElementsAre("1|theirs", "2|two", "3|three"));
  recordset->CancelUpdate();
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "one");
}

TEST_P(WriteFaultBodies, ACaseChangedBySomebodyElseIsAConflict) {
  const auto recordset = OpenAll();
  RunOutside("update " + table_->Name() + " set name = 'ONE' where id = 1");
  recordset->SetFieldValue(name, Text("mine"));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
  RunOutside("update " + table_->Name() + " set name = 'one ' where id = 1");
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
  RunOutside("update " + table_->Name() + " set name = 'one' where id = 1");
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|mine", "2|two", "3|three"));
}

TEST_P(WriteFaultBodies, AnotherFieldChangedBySomebodyElseIsNone) {
  const auto recordset = OpenAll();
  RunOutside("update " + table_->Name() + " set n = 99 where id = 1");
  recordset->SetFieldValue(name, Text("mine"));
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(3)), "99");
  EXPECT_THAT(Names(), ElementsAre("1|mine", "2|two", "3|three"));
}

TEST_P(WriteFaultBodies, ARowWithAnyFieldChangedBySomebodyElseIsNotDeleted) {
  const auto recordset = OpenAll();
  for (const char* change : {"n = 99", "name = 'One'", "data = 'x'", "n = null"}) {
    RunOutside("update " + table_->Name() + " set " + change + " where id = 1");
    const ErrorInfo error = ErrorOf([&] { Delete(*recordset); });
    EXPECT_EQ(error.number, errorNumber::changeConflict) << change;
    EXPECT_EQ(recordset->RecordCount(), 3);
    RunOutside("update " + table_->Name() + " set n = 10, name = 'one', data = null where id = 1");
  }
  Delete(*recordset);
  EXPECT_THAT(Names(), ElementsAre("2|two", "3|three"));
}

/// Some databases take the name of a column that is gone for a text.
TEST_P(WriteFaultBodies, AColumnRenamedBySomebodyElseIsAnErrorAndNothingIsWritten) {
  const auto recordset = OpenAll();
  RunOutside("alter table " + table_->Name() + " rename column n to other");
  recordset->SetFieldValue(name, Text("mine"));
  EXPECT_NE(ErrorOf([&] { Update(*recordset); }).number, 0);
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
  EXPECT_EQ(ToText(recordset->ValueAt(0, 3)), "10");
}

TEST_P(WriteFaultBodies, ARowThatIsGoneIsAConflict) {
  const auto recordset = OpenAll();
  RunOutside("delete from " + table_->Name() + " where id = 1");
  recordset->SetFieldValue(name, Text("mine"));
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::changeConflict);
  recordset->CancelUpdate();
  EXPECT_EQ(ErrorOf([&] { Delete(*recordset); }).number, errorNumber::changeConflict);
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_THAT(Names(), ElementsAre("2|two", "3|three"));
}

TEST_P(WriteFaultBodies, DuplicateRowsWithoutAKeyAreLeftAlone) {
  const ScratchTable table(Db(), connection_, "a integer, b " + Db().TextType());
  table.Insert("(1, 'x'), (1, 'x'), (2, null)");
  const auto recordset = OpenToWrite(*connection_, "select a, b from " + table.Name());
  recordset->SetFieldValue(1, Text("changed"));
  const ErrorInfo error = ErrorOf([&] { Update(*recordset); });
  EXPECT_EQ(error.number, errorNumber::changeConflict);
  EXPECT_THAT(error.description, HasSubstr("matches several rows; nothing was changed"));
  recordset->CancelUpdate();
  EXPECT_EQ(ErrorOf([&] { Delete(*recordset); }).number, errorNumber::changeConflict);
  EXPECT_THAT(Outside("select a, b from " + table.Name() + " order by a"),
              ElementsAre("1|x", "1|x", "2|NULL"));
}

TEST_P(WriteFaultBodies, AViolatedConstraintKeepsTheChangePending) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(id, Whole(2));
  const ErrorInfo error = ErrorOf([&] { Update(*recordset); });
  EXPECT_NE(error.number, errorNumber::changeConflict);
  EXPECT_FALSE(error.description.empty());
  ASSERT_FALSE(connection_->Errors().empty());
  EXPECT_EQ(connection_->Errors().front().description, error.description);
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  recordset->SetFieldValue(id, Whole(20));
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("2|two", "3|three", "20|one"));

  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(3));
  EXPECT_THROW(Update(*recordset), Error);
  EXPECT_EQ(recordset->Editing(), EditMode::Add);
  EXPECT_EQ(recordset->RecordCount(), 3);
  recordset->SetFieldValue(id, Whole(4));
  Update(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 4);
}

TEST_P(WriteFaultBodies, NullWhereThereMustBeAValueIsRefused) {
  const ScratchTable table(Db(), connection_,
                           "id " + Db().KeyType() + ", v " + Db().TextType() + " not null");
  table.Insert("(1, 'a')");
  const auto recordset = OpenToWrite(*connection_, "select id, v from " + table.Name());
  recordset->SetFieldValue(1, Value());
  EXPECT_THROW(Update(*recordset), Error);
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_THAT(Outside("select id, v from " + table.Name()), ElementsAre("1|a"));
}

TEST_P(WriteFaultBodies, TooLongATextIsRefused) {
  if (!Db().Traits().limitsText) GTEST_SKIP() << "takes texts of any length";
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, std::string(201, 'x'));
  EXPECT_THROW(Update(*recordset), Error);
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(WriteFaultBodies, AFailureInTheUsersTransactionUndoesOnlyItself) {
  Run(*connection_, "begin");
  Run(*connection_, "insert into " + table_->Name() + " (id, name) values (4, 'earlier')");
  const auto recordset = OpenAll();
  recordset->SetFieldValue(id, Whole(2));
  EXPECT_THROW(Update(*recordset), Error);
  recordset->CancelUpdate();
  const auto several =
      OpenToWrite(*connection_, "select n from " + table_->Name() + " where n is null");
  several->SetFieldValue(0, Whole(1));
  EXPECT_EQ(ErrorOf([&] { Update(*several); }).number, errorNumber::changeConflict);
  EXPECT_EQ(ToText(ToView(Cell(*connection_, "select count(*) from " + table_->Name()))), "4");
  Run(*connection_, "commit");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three", "4|earlier"));
}

TEST_P(WriteFaultBodies, ABlockedUpdateIsCancelled) {
  Run(*other_, Db().BeginStatement());
  Run(*other_, Db().LockStatement(table_->Name()));
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("mine"));
  EventLog log;
  const auto update = recordset->StartUpdate();
  log.Watch(*update);
  queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(100));
  ASSERT_EQ(log.Ends(), 0);
  const auto start = std::chrono::steady_clock::now();
  update->Cancel();
  update->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took, std::chrono::milliseconds(200));
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  Run(*other_, "rollback");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
  ASSERT_EQ(connection_->State(), objectState::open);
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|mine", "2|two", "3|three"));
}

TEST_P(WriteFaultBodies, ACancelNeitherLosesNorHalvesAChange) {
  const auto recordset = OpenAll();
  for (int round = 0; round < 40; ++round) {
    const std::string before = ToText(recordset->FieldValue(name));
    const std::string after = "round " + std::to_string(round);
    recordset->SetFieldValue(name, after);
    const auto update = recordset->StartUpdate();
    if (round % 2 == 0)
      queue_.PumpUntil([] { return false; }, std::chrono::milliseconds(round % 7));
    update->Cancel();
    ASSERT_TRUE(queue_.PumpUntil([&] { return update->HasEnded(); }));
    const bool done = update->Outcome() == OperationOutcome::Done;
    ASSERT_EQ(connection_->State(), objectState::open);
    EXPECT_THAT(Outside("select name from " + table_->Name() + " where id = 1"),
                ElementsAre(done ? after : before));
    if (!done) recordset->CancelUpdate();
  }
}

TEST_P(WriteFaultBodies, ClosingWhileWritingEndsOnce) {
  Run(*other_, Db().BeginStatement());
  Run(*other_, Db().LockStatement(table_->Name()));
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::Optimistic);
  EventLog log;
  recordset->SetFieldValue(name, Text("mine"));
  const auto update = recordset->StartUpdate();
  log.Watch(*update);
  recordset->Close();
  EXPECT_EQ(recordset->State(), objectState::closed);
  ASSERT_TRUE(PumpToEnd(log));
  queue_.Pump();
  EXPECT_EQ(log.Ends(), 1);
  Run(*other_, "rollback");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
  clone->CancelUpdate();
  EXPECT_EQ(ToText(clone->ValueAt(0, name)), "one");
}

TEST_P(WriteFaultBodies, DroppingTheConnectionLeavesTheChangePending) {
  const auto recordset = OpenAll();
  table_.reset();
  recordset->SetFieldValue(name, Text("mine"));
  connection_.reset();
  EXPECT_EQ(ErrorOf([&] { Update(*recordset); }).number, errorNumber::objectClosed);
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
}

TEST_P(WriteFaultBodies, AServerThatEndsLeavesTheChangePending) {
  if (!Db().Traits().hasServer) GTEST_SKIP() << "has no server";
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("mine"));
  Run(*other_, Db().FlushStatement());
  Db().KillServer();
  const ErrorInfo error = ErrorOf([&] { Update(*recordset); });
  Db().RestartServer();
  EXPECT_FALSE(error.description.empty());
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "mine");
  const ErrorInfo again = ErrorOf([&] { Update(*recordset); });
  EXPECT_EQ(again.number, errorNumber::objectClosed);
  EXPECT_THAT(again.description, HasSubstr("Connect again"));
  OpenNow(*connection_);
  Update(*recordset);
  EXPECT_EQ(
      ToText(ToView(Cell(*connection_, "select name from " + table_->Name() + " where id = 1"))),
      "mine");
}

}  // namespace tessel::test
