#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;

namespace {

constexpr std::size_t id = 0;
constexpr std::size_t name = 1;
constexpr std::size_t data = 2;
constexpr std::size_t number = 3;

/// Every byte there is, several times over.
Bytes EveryByte(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>((i * 7 + i / 256) % 256);
  return bytes;
}

}  // namespace

TEST_P(WriteBodies, AnUpdateIsWritten) {
  const auto recordset = OpenAll();
  recordset->MoveNext();
  recordset->SetFieldValue(name, Text("changed"));
  recordset->SetFieldValue(number, Value());
  Update(*recordset);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "changed");
  EXPECT_EQ(ToValue(recordset->FieldValue(number)), Value());
  EXPECT_THAT(Outside("select id, name, n from " + table_->Name() + " order by id"),
              ElementsAre("1|one|10", "2|changed|NULL", "3|three|NULL"));
}

TEST_P(WriteBodies, ARowIsChangedAgainAndAgain) {
  const auto recordset = OpenAll();
  for (const char* text : {"a", "", "c", "c"}) {
    recordset->SetFieldValue(name, Text(text));
    Update(*recordset);
    EXPECT_EQ(ToText(recordset->FieldValue(name)), text);
  }
  recordset->SetFieldValue(name, Value());
  Update(*recordset);
  recordset->SetFieldValue(name, Text("last"));
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|last", "2|two", "3|three"));
}

TEST_P(WriteBodies, TheKeyItselfCanBeChanged) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(id, Whole(77));
  Update(*recordset);
  recordset->SetFieldValue(name, Text("moved"));
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("2|two", "3|three", "77|moved"));
}

TEST_P(WriteBodies, EveryCharacterIsWritten) {
  const auto recordset = OpenAll();
  const std::string text = "it's \"quoted\" \\ back` $1 ? :a @b %s \t\r\n "
                           "gr\u00fc\u00dfe \u6f22\u5b57 \U0001F418 -- /* */ ;";
  recordset->SetFieldValue(name, text);
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), text);
  EXPECT_THAT(Outside("select name from " + table_->Name() + " where id = 1"), ElementsAre(text));
  recordset->SetFieldValue(name, Text("plain"));
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|plain", "2|two", "3|three"));
}

TEST_P(WriteBodies, EveryByteIsWritten) {
  const auto recordset = OpenAll();
  for (const std::size_t size : {1U, 256U, 5000U, 0U, 300'000U}) {
    recordset->SetFieldValue(data, EveryByte(size));
    Update(*recordset);
    EXPECT_TRUE(ToValue(recordset->FieldValue(data)) == Value(EveryByte(size))) << size;
    const Value outside = Cell(*other_, "select data from " + table_->Name() + " where id = 1");
    EXPECT_TRUE(outside == Value(EveryByte(size))) << size;
  }
  recordset->SetFieldValue(data, Text(""));
  Update(*recordset);
  EXPECT_EQ(Cell(*other_, "select data from " + table_->Name() + " where id = 1"), Value());
}

TEST_P(WriteBodies, ARecordIsAdded) {
  const auto recordset = OpenAll();
  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(4));
  recordset->SetFieldValue(name, Text("four"));
  recordset->SetFieldValue(data, EveryByte(300));
  Update(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 4);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "four");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three", "4|four"));
  recordset->SetFieldValue(name, Text("4"));
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three", "4|4"));
  Delete(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_TRUE(recordset->Eof());
}

TEST_P(WriteBodies, GeneratedKeysAndDefaultsAreReadBack) {
  const ScratchTable table(Db(), connection_,
                           "k " + Db().CountedKeyType() + ", v " + Db().TextType() +
                               " default 'usual', n integer not null default 5");
  const auto recordset = OpenToWrite(*connection_, "select k, v, n from " + table.Name());
  recordset->AddNew();
  recordset->SetFieldValue(1, Text("first"));
  Update(*recordset);
  EXPECT_EQ(ToValue(recordset->FieldValue(0)), Whole(1));
  EXPECT_EQ(ToValue(recordset->FieldValue(2)), Whole(5));
  recordset->AddNew();
  Update(*recordset);
  EXPECT_EQ(ToValue(recordset->FieldValue(0)), Whole(2));
  EXPECT_EQ(ToText(recordset->FieldValue(1)), "usual");
  recordset->SetFieldValue(1, Text("second"));
  Update(*recordset);
  recordset->AddNew();
  recordset->SetFieldValue(1, Value());
  Update(*recordset);
  EXPECT_THAT(Outside("select k, v, n from " + table.Name() + " order by k"),
              ElementsAre("1|first|5", "2|second|5", "3|NULL|5"));
}

TEST_P(WriteBodies, ComputedColumnsAreReadBackAndNotWritten) {
  const ScratchTable table(Db(), connection_,
                           "id " + Db().KeyType() + ", n integer, twice " + Db().DoubledType());
  Run(*connection_, "insert into " + table.Name() + " (id, n) values (1, 10)");
  const auto recordset = OpenToWrite(*connection_, "select id, n, twice from " + table.Name());
  EXPECT_TRUE(recordset->Fields()[1].updatable);
  EXPECT_FALSE(recordset->Fields()[2].updatable);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(2, Whole(1)); }).number, errorNumber::readOnly);
  recordset->SetFieldValue(1, Whole(21));
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(2)), "42");
}

TEST_P(WriteBodies, AnAliasIsNoColumn) {
  if (!Db().Traits().baseColumns) GTEST_SKIP() << "its driver takes an alias for the column";
  const auto recordset = OpenToWrite(*connection_, "select name as id, id as name from " +
                                                       table_->Name() + " order by 2");
  recordset->SetFieldValue(0, Text("changed"));
  Update(*recordset);
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "changed");
  EXPECT_THAT(Names(), ElementsAre("1|changed", "2|two", "3|three"));
}

TEST_P(WriteBodies, ARecordIsDeleted) {
  const auto recordset = OpenAll();
  recordset->MoveLast();
  Delete(*recordset);
  EXPECT_TRUE(recordset->Eof());
  recordset->MoveFirst();
  recordset->SetFieldValue(name, Text("dropped"));
  Delete(*recordset);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "two");
  Delete(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 0);
  EXPECT_TRUE(recordset->Bof());
  EXPECT_TRUE(recordset->Eof());
  EXPECT_THAT(Names(), ElementsAre());
  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(9));
  Update(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 1);
  EXPECT_EQ(ToText(recordset->FieldValue(id)), "9");
}

TEST_P(WriteBodies, WithoutAKeyAllValuesFindTheRow) {
  const ScratchTable table(Db(), connection_,
                           "a integer, b " + Db().TextType() + ", c " + Db().BinaryType() +
                               ", d double precision");
  table.Insert("(1, 'x', null, 0.1), (1, 'y', null, 0.1), (null, null, null, null)");
  const auto recordset = OpenToWrite(*connection_, "select a, b, c, d from " + table.Name());
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
  recordset->SetFieldValue(2, EveryByte(512));
  Update(*recordset);
  recordset->SetFieldValue(0, Whole(2));
  Update(*recordset);
  EXPECT_THAT(Outside("select a, b from " + table.Name() + " order by a desc, b"),
              testing::UnorderedElementsAre("2|x", "1|y", "NULL|NULL"));
  recordset->MoveTo(3);
  recordset->SetFieldValue(1, Text("z"));
  Update(*recordset);
  Delete(*recordset);
  recordset->AddNew();
  recordset->SetFieldValue(0, Whole(7));
  Update(*recordset);
  EXPECT_THAT(Outside("select a, b from " + table.Name()),
              testing::UnorderedElementsAre("2|x", "1|y", "7|NULL"));
}

TEST_P(WriteBodies, StrangeNamesAreQuoted) {
  const std::string quote =
      ToText(ToView(connection_->ProviderProperties().At("Identifier Quote Character")));
  const std::string key = quote + "the key" + quote;
  const std::string column = quote + "select \u00fc" + quote;
  const ScratchTable table(Db(), connection_,
                           key + " " + Db().KeyType() + ", " + column + " " + Db().TextType());
  table.Insert("(1, 'a')");
  const auto recordset = OpenToWrite(*connection_, "select * from " + table.Name());
  recordset->SetFieldValue(1, Text("b"));
  Update(*recordset);
  EXPECT_THAT(Outside("select * from " + table.Name()), ElementsAre("1|b"));
}

TEST_P(WriteBodies, TheUsersTransactionGoesOn) {
  Run(*connection_, "begin");
  Run(*connection_, "insert into " + table_->Name() + " (id, name) values (4, 'earlier')");
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("changed"));
  Update(*recordset);
  recordset->MoveTo(2);
  Delete(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
  Run(*connection_, "rollback");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));

  Run(*connection_, "begin");
  const auto again = OpenAll();
  again->SetFieldValue(name, Text("kept"));
  Update(*again);
  Run(*connection_, "commit");
  EXPECT_THAT(Names(), ElementsAre("1|kept", "2|two", "3|three"));
}

TEST_P(WriteBodies, AChangeInTheBackgroundIsAnnouncedOnce) {
  const auto recordset = OpenAll();
  std::vector<OperationOutcome> ends;
  const auto watch = [&](Operation& operation) {
    operation.Ended = [&] {
      ends.push_back(operation.Outcome());
      EXPECT_EQ(recordset->State(), objectState::open);
      EXPECT_EQ(connection_->State(), objectState::open);
    };
  };
  recordset->SetFieldValue(name, Text("changed"));
  const auto update = recordset->StartUpdate();
  watch(*update);
  EXPECT_EQ(update->Phase(), OperationPhase::Writing);
  EXPECT_EQ(recordset->State(), objectState::open | objectState::executing);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(name, Text("x")); }).number,
            errorNumber::changePending);
  ASSERT_TRUE(queue_.PumpUntil([&] { return !ends.empty(); }));
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  const auto deletion = recordset->StartDelete();
  watch(*deletion);
  ASSERT_TRUE(queue_.PumpUntil([&] { return ends.size() == 2; }));
  queue_.Pump();
  EXPECT_THAT(ends, ElementsAre(OperationOutcome::Done, OperationOutcome::Done));
  EXPECT_THAT(Names(), ElementsAre("2|two", "3|three"));
}

TEST_P(WriteBodies, ACloneMadeAfterADeletionHasTheRowsThatAreLeft) {
  const auto recordset = OpenAll();
  Delete(*recordset);
  recordset->AddNew();
  recordset->CancelUpdate();
  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(9));
  recordset->SetFieldValue(name, Text("nine"));
  Update(*recordset);
  const auto clone = recordset->Clone(LockType::Optimistic);
  EXPECT_THAT(TextsOf(*clone, name), ElementsAre("two", "three", "nine"));
  clone->MoveFirst();
  EXPECT_EQ(ToText(clone->FieldValue(name)), "two");
  EXPECT_EQ(clone->CurrentBookmark(), recordset->BookmarkAt(0));
  clone->SetFieldValue(name, Text("changed"));
  Update(*clone);
  EXPECT_THAT(Names(), ElementsAre("2|changed", "3|three", "9|nine"));
}

TEST_P(WriteBodies, ACloneWritesToo) {
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::Optimistic);
  clone->MoveLast();
  clone->SetFieldValue(name, Text("changed"));
  Update(*clone);
  EXPECT_EQ(ToText(recordset->ValueAt(2, name)), "changed");
  recordset->Close();
  clone->SetFieldValue(name, Text("again"));
  Update(*clone);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|again"));
}

TEST_P(WriteBodies, OtherCommandsRunInBetween) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("changed"));
  EXPECT_EQ(ToText(ToView(Cell(*connection_, "select 42"))), "42");
  Update(*recordset);
  EXPECT_EQ(
      ToText(ToView(Cell(*connection_, "select name from " + table_->Name() + " where id = 1"))),
      "changed");
}

}  // namespace tessel::test
