#include <array>
#include <span>

#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;

TEST_P(CursorBodies, BeginsAtTheFirstRecord) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(3));
  EXPECT_FALSE(recordset->Bof());
  EXPECT_FALSE(recordset->Eof());
  EXPECT_EQ(ToText(recordset->FieldValue(1)), "row 1");
}

TEST_P(CursorBodies, MovesToBothEndsAndNoFurther) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(2));
  recordset->MoveNext();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "2");
  recordset->MoveNext();
  EXPECT_TRUE(recordset->Eof());
  EXPECT_FALSE(recordset->Bof());
  EXPECT_EQ(ErrorOf([&] { recordset->MoveNext(); }).number, errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { (void)recordset->FieldValue(0); }).number, errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { (void)recordset->CurrentBookmark(); }).number,
            errorNumber::noCurrentRecord);
  recordset->MovePrevious();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "2");
  recordset->MoveFirst();
  recordset->MovePrevious();
  EXPECT_TRUE(recordset->Bof());
  EXPECT_FALSE(recordset->Eof());
  EXPECT_EQ(ErrorOf([&] { recordset->MovePrevious(); }).number, errorNumber::noCurrentRecord);
  recordset->MoveNext();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "1");
  recordset->MoveLast();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "2");
}

TEST_P(CursorBodies, WithoutRowsBothEndsAreReached) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const auto recordset = Run(*connection, "select id from " + table.Name());
  EXPECT_EQ(recordset.State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 0);
  EXPECT_EQ(recordset->Fields().size(), 1U);
  EXPECT_TRUE(recordset->Bof());
  EXPECT_TRUE(recordset->Eof());
  recordset->MoveFirst();
  recordset->MoveLast();
  EXPECT_EQ(ErrorOf([&] { recordset->MoveNext(); }).number, errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { recordset->MovePrevious(); }).number, errorNumber::noCurrentRecord);
  recordset->SetSort("id DESC");
  EXPECT_FALSE(recordset->PositionOf(1));
}

TEST_P(CursorBodies, ReadsSeveralFieldsOfARecordAtOnce) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(3));
  recordset->MoveLast();
  std::array<ValueView, 2> values;
  recordset->ReadFields(0, values);
  EXPECT_EQ(ToText(values[0]), "3");
  EXPECT_EQ(ToText(values[1]), "row 3");
  recordset->ReadFields(1, std::span(values).first(1));
  EXPECT_EQ(ToText(values[0]), "row 3");
  const std::size_t last = recordset->Fields().size() - 1;
  recordset->ReadFields(last + 1, {});
  EXPECT_EQ(ErrorOf([&] { recordset->ReadFields(last, values); }).number,
            errorNumber::itemNotFound);
  recordset->MoveNext();
  EXPECT_EQ(ErrorOf([&] { recordset->ReadFields(0, values); }).number,
            errorNumber::noCurrentRecord);
}

TEST_P(CursorBodies, ABookmarkNamesARowForGood) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(5));
  recordset->MoveTo(recordset->BookmarkAt(3));
  const Bookmark fourth = recordset->CurrentBookmark();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "4");
  recordset->SetSort("n DESC");
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "4");
  EXPECT_EQ(recordset->CurrentBookmark(), fourth);
  EXPECT_EQ(recordset->PositionOf(fourth), 1);
  EXPECT_EQ(recordset->BookmarkAt(1), fourth);
  recordset->MoveFirst();
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "5");
  recordset->MoveTo(fourth);
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "4");
  EXPECT_EQ(ErrorOf([&] { recordset->MoveTo(99); }).number, errorNumber::noCurrentRecord);
  EXPECT_FALSE(recordset->PositionOf(99));
  EXPECT_FALSE(recordset->PositionOf(-1));
}

TEST_P(CursorBodies, SortsByNamesAndBackAgain) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(12));
  recordset->SetSort("t");
  EXPECT_EQ(TextsOf(*recordset), (std::vector<std::string>{"1", "10", "11", "12", "2", "3", "4",
                                                           "5", "6", "7", "8", "9"}));
  recordset->SetSort("[D] desc, n asc");
  EXPECT_EQ(TextsOf(*recordset).front(), "12");
  EXPECT_EQ(ErrorOf([&] { recordset->SetSort("n, nothing"); }).number, errorNumber::itemNotFound);
  EXPECT_EQ(TextsOf(*recordset).front(), "12");
  recordset->SetSort("");
  EXPECT_EQ(TextsOf(*recordset).front(), "1");
}

TEST_P(CursorBodies, AnUnsortedRecordsetSortsNullsFirst) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v integer");
  table.Insert("(1, 5), (2, null), (3, -7), (4, null)");
  const auto recordset = Run(*connection, "select v, id from " + table.Name() + " order by id");
  recordset->SetSort("v");
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("NULL", "NULL", "-7", "5"));
  EXPECT_THAT(TextsOf(*recordset, 1), ElementsAre("2", "4", "3", "1"));
  recordset->SetSort("v DESC");
  EXPECT_THAT(TextsOf(*recordset, 1), ElementsAre("1", "3", "2", "4"));
}

TEST_P(CursorBodies, ACloneHasAPositionAndAnOrderOfItsOwn) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(3));
  recordset->SetSort("n DESC");
  recordset->MoveLast();
  const auto clone = recordset->Clone(LockType::ReadOnly);
  EXPECT_EQ(ToText(clone->FieldValue(0)), "1");
  EXPECT_THAT(TextsOf(*clone), ElementsAre("1", "2", "3"));
  clone->MoveNext();
  EXPECT_EQ(clone->CurrentBookmark(), recordset->BookmarkAt(1));
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "1");
  EXPECT_EQ(clone->ActiveConnection(), connection);

  const auto before = std::get<std::string_view>(clone->ValueAt(2, 1));
  EXPECT_EQ(before.data(), std::get<std::string_view>(recordset->ValueAt(0, 1)).data());
  recordset->Close();
  EXPECT_EQ(ToText(clone->FieldValue(1)), "row 2");
}

TEST_P(CursorBodies, AClosedRecordsetRefusesToBeRead) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(3));
  recordset->Close();
  recordset->Close();
  for (const auto& action : std::vector<std::function<void()>>{
           [&] { (void)recordset->RecordCount(); }, [&] { (void)recordset->Fields(); },
           [&] { recordset->MoveFirst(); }, [&] { recordset->MoveNext(); },
           [&] { (void)recordset->Eof(); }, [&] { recordset->SetSort("n"); },
           [&] { (void)recordset->Clone(LockType::ReadOnly); }})
    EXPECT_EQ(ErrorOf(action).number, errorNumber::objectClosed);
}

TEST_P(CursorBodies, RowsOutliveTheConnection) {
  auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(3));
  connection.reset();
  EXPECT_EQ(recordset->ActiveConnection(), nullptr);
  EXPECT_THAT(TextsOf(*recordset), ElementsAre("1", "2", "3"));
  recordset->Close();
}

TEST_P(CursorBodies, SourceAndLockAreKept) {
  const auto connection = Connect();
  const auto recordset = QueryNow(*connection, Db().Series(1), LockType::Optimistic);
  EXPECT_EQ(recordset->ActiveConnection(), connection);
  EXPECT_EQ(recordset->Source(), Db().Series(1));
  EXPECT_EQ(recordset->Lock(), LockType::Optimistic);
}

TEST_P(CursorBodies, FieldsAreFoundByNameAndOthersAreRefused) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(1));
  EXPECT_EQ(recordset->FindField("T"), 1U);
  EXPECT_EQ(recordset->FindField("d"), 2U);
  EXPECT_FALSE(recordset->FindField("x"));
  EXPECT_EQ(ErrorOf([&] { (void)recordset->FieldValue(3); }).number, errorNumber::itemNotFound);
  EXPECT_EQ(ErrorOf([&] { (void)recordset->ValueAt(0, 3); }).number, errorNumber::itemNotFound);
  EXPECT_EQ(ErrorOf([&] { (void)recordset->ValueAt(1, 0); }).number, errorNumber::noCurrentRecord);
}

}  // namespace tessel::test
