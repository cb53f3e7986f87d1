#include <array>
#include <string>
#include <vector>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::size_t id = 0;
constexpr std::size_t name = 1;
constexpr std::size_t data = 2;
constexpr std::size_t number = 3;

}  // namespace

TEST_P(EditBodies, ReadOnlyRecordsRefuseEverything) {
  const auto recordset = Run(*connection_, "select id, name from " + table_->Name());
  EXPECT_EQ(recordset->Lock(), LockType::ReadOnly);
  for (const auto& action : std::vector<std::function<void()>>{
           [&] { recordset->AddNew(); }, [&] { recordset->SetFieldValue(name, Text("x")); },
           [&] { Update(*recordset); }, [&] { recordset->CancelUpdate(); },
           [&] { Delete(*recordset); }})
    EXPECT_EQ(ErrorOf(action).number, errorNumber::readOnly);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
}

TEST_P(EditBodies, RecordsOfNoTableCannotBeChanged) {
  const auto recordset = OpenToWrite(*connection_, "select 1 as a, 'x' as b");
  EXPECT_EQ(ErrorOf([&] { recordset->AddNew(); }).number, errorNumber::notSupported);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(0, Whole(2)); }).number,
            errorNumber::notSupported);
  EXPECT_EQ(ErrorOf([&] { Delete(*recordset); }).number, errorNumber::notSupported);
}

TEST_P(EditBodies, RecordsOfTwoTablesCannotBeChanged) {
  const ScratchTable other(Db(), connection_, "k " + Db().KeyType() + ", v " + Db().TextType());
  other.Insert("(1, 'a')");
  const auto recordset = OpenToWrite(*connection_, "select id, name, v from " + table_->Name() +
                                                       ", " + other.Name() + " where id = k");
  ASSERT_EQ(recordset->RecordCount(), 1);
  for (const FieldInfo& field : recordset->Fields()) EXPECT_FALSE(field.updatable) << field.name;
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(1, Text("x")); }).number,
            errorNumber::notSupported);
}

TEST_P(EditBodies, OnlyColumnsOfTheTableAreUpdatable) {
  if (!Db().Traits().baseColumns) GTEST_SKIP() << "an expression makes its driver tell no columns";
  const auto recordset =
      OpenToWrite(*connection_, "select id, name as other, n + 1 as more from " + table_->Name());
  EXPECT_TRUE(recordset->Fields()[0].updatable);
  EXPECT_TRUE(recordset->Fields()[1].updatable);
  EXPECT_FALSE(recordset->Fields()[2].updatable);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(2, Whole(2)); }).number, errorNumber::readOnly);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
}

TEST_P(EditBodies, AnEditIsSeenAtOnceAndDroppedByCancel) {
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::Optimistic);
  recordset->MoveNext();
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  recordset->SetFieldValue(name, Text("changed"));
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "changed");
  EXPECT_EQ(ToText(recordset->ValueAt(1, name)), "changed");
  EXPECT_EQ(ToText(clone->ValueAt(1, name)), "changed");
  recordset->CancelUpdate();
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "two");
  EXPECT_EQ(ToText(clone->ValueAt(1, name)), "two");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(EditBodies, OneChangeIsPendingAtATime) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("changed"));
  recordset->MoveNext();
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(name, Text("x")); }).number,
            errorNumber::changePending);
  EXPECT_EQ(ErrorOf([&] { recordset->AddNew(); }).number, errorNumber::changePending);
  EXPECT_EQ(ErrorOf([&] { Delete(*recordset); }).number, errorNumber::changePending);
  Update(*recordset);
  EXPECT_THAT(Names(), ElementsAre("1|changed", "2|two", "3|three"));
}

TEST_P(EditBodies, TextIsConvertedOrRefused) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(number, Text("42"));
  EXPECT_EQ(ToValue(recordset->FieldValue(number)), Whole(42));
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(number, Text("many")); }).number,
            errorNumber::typeMismatch);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(name, Bytes(3)); }).number,
            errorNumber::typeMismatch);
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(data, Whole(3)); }).number,
            errorNumber::typeMismatch);
  EXPECT_EQ(ToValue(recordset->FieldValue(number)), Whole(42));
  recordset->SetFieldValue(number, Text(""));
  EXPECT_EQ(ToValue(recordset->FieldValue(number)), Value());
  EXPECT_EQ(ErrorOf([&] { recordset->SetFieldValue(9, Text("")); }).number,
            errorNumber::itemNotFound);
}

TEST_P(EditBodies, ANewRecordStandsBehindTheOthers) {
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::Optimistic);
  recordset->MoveNext();
  recordset->AddNew();
  EXPECT_EQ(recordset->Editing(), EditMode::Add);
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_FALSE(recordset->Eof());
  EXPECT_EQ(ToValue(recordset->FieldValue(name)), Value());
  recordset->SetFieldValue(name, Text("new"));
  EXPECT_EQ(ToText(recordset->ValueAt(3, name)), "new");
  EXPECT_EQ(ToText(clone->ValueAt(3, name)), "new");
  const Bookmark bookmark = recordset->CurrentBookmark();
  EXPECT_EQ(recordset->BookmarkAt(3), bookmark);
  EXPECT_EQ(recordset->PositionOf(bookmark), 3);
  recordset->MoveFirst();
  recordset->MoveTo(bookmark);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "new");
  recordset->CancelUpdate();
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "two");
  EXPECT_FALSE(recordset->PositionOf(bookmark));
  EXPECT_EQ(ErrorOf([&] { (void)recordset->ValueAt(3, name); }).number,
            errorNumber::noCurrentRecord);
}

TEST_P(EditBodies, ANewRecordGetsANumberOfItsOwn) {
  const auto recordset = OpenAll();
  recordset->AddNew();
  const Bookmark dropped = recordset->CurrentBookmark();
  recordset->CancelUpdate();
  recordset->AddNew();
  const Bookmark kept = recordset->CurrentBookmark();
  EXPECT_NE(kept, dropped);
  recordset->SetFieldValue(id, Whole(4));
  recordset->SetFieldValue(name, Text("four"));
  Update(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 4);
  EXPECT_EQ(recordset->CurrentBookmark(), kept);
  EXPECT_EQ(recordset->PositionOf(kept), 3);
  EXPECT_FALSE(recordset->PositionOf(dropped));
  EXPECT_EQ(recordset->BookmarkAt(3), kept);
}

TEST_P(EditBodies, RowsKeepTheirBookmarksWhenOthersGo) {
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::ReadOnly);
  clone->SetSort("id DESC");
  clone->MoveLast();
  const Bookmark one = recordset->BookmarkAt(0);
  const Bookmark two = recordset->BookmarkAt(1);
  const Bookmark three = recordset->BookmarkAt(2);
  recordset->MoveTo(two);
  Delete(*recordset);
  EXPECT_EQ(recordset->RecordCount(), 2);
  EXPECT_EQ(recordset->CurrentBookmark(), three);
  EXPECT_EQ(recordset->PositionOf(one), 0);
  EXPECT_EQ(recordset->PositionOf(three), 1);
  EXPECT_FALSE(recordset->PositionOf(two));
  EXPECT_EQ(clone->RecordCount(), 2);
  EXPECT_EQ(clone->PositionOf(three), 0);
  EXPECT_EQ(clone->PositionOf(one), 1);
  EXPECT_EQ(clone->CurrentBookmark(), one);
  EXPECT_EQ(ErrorOf([&] { recordset->MoveTo(two); }).number, errorNumber::noCurrentRecord);
  EXPECT_THAT(TextsOf(*recordset, name), ElementsAre("one", "three"));
  EXPECT_THAT(TextsOf(*clone, name), ElementsAre("three", "one"));
  recordset->SetSort("name DESC");
  EXPECT_THAT(TextsOf(*recordset, name), ElementsAre("three", "one"));
  recordset->SetSort("");
  EXPECT_THAT(TextsOf(*recordset, name), ElementsAre("one", "three"));
}

TEST_P(EditBodies, ChangedAndAddedRowsAreSorted) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("zebra"));
  Update(*recordset);
  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(4));
  recordset->SetFieldValue(name, Text("ape"));
  Update(*recordset);
  recordset->SetSort("name");
  EXPECT_THAT(TextsOf(*recordset, name), ElementsAre("ape", "three", "two", "zebra"));
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "ape");
  recordset->SetSort("");
  EXPECT_THAT(TextsOf(*recordset, name), ElementsAre("zebra", "two", "three", "ape"));
}

TEST_P(EditBodies, FieldsReadAtOnceAreThoseReadOneByOne) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("written"));
  Update(*recordset);
  recordset->MoveNext();
  recordset->SetFieldValue(name, Text("pending"));
  std::array<ValueView, 2> values;
  std::vector<std::string> names;
  for (recordset->MoveFirst(); !recordset->Eof(); recordset->MoveNext()) {
    recordset->ReadFields(id, values);
    EXPECT_EQ(ToText(values[0]), ToText(recordset->FieldValue(id)));
    names.push_back(ToText(values[1]));
  }
  EXPECT_THAT(names, ElementsAre("written", "pending", "three"));
  recordset->CancelUpdate();
  recordset->AddNew();
  recordset->SetFieldValue(name, Text("new"));
  recordset->ReadFields(id, values);
  EXPECT_TRUE(IsNull(values[0]));
  EXPECT_EQ(ToText(values[1]), "new");
}

TEST_P(EditBodies, AViewOfAnotherRowOutlivesAChange) {
  const auto recordset = OpenAll();
  const ValueView other = recordset->ValueAt(1, name);
  for (int round = 0; round < 100; ++round) {
    recordset->SetFieldValue(name, Value("round " + std::to_string(round)));
    if (round % 20 == 19) Update(*recordset);
  }
  EXPECT_EQ(ToText(other), "two");
}

TEST_P(EditBodies, ClosingDropsWhatIsPending) {
  const auto recordset = OpenAll();
  const auto clone = recordset->Clone(LockType::Optimistic);
  recordset->SetFieldValue(name, Text("changed"));
  recordset->Close();
  EXPECT_EQ(clone->Editing(), EditMode::None);
  EXPECT_EQ(ToText(clone->ValueAt(0, name)), "one");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(EditBodies, NothingPendingIsCompleteAtOnce) {
  const auto recordset = OpenAll();
  Update(*recordset);
  const auto operation = recordset->StartUpdate();
  EXPECT_TRUE(operation->HasEnded());
  EXPECT_EQ(operation->Outcome(), OperationOutcome::Done);
}

TEST_P(EditBodies, DeletingTheNewRecordDropsIt) {
  const auto recordset = OpenAll();
  recordset->AddNew();
  recordset->SetFieldValue(id, Whole(4));
  Delete(*recordset);
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "one");
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

}  // namespace tessel::test
