// The rules of changing rows, as the recordset in memory keeps them.

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/headless/HeadlessServices.h"
#include "tests/support/ErrorNumber.h"
#include "tests/support/MemoryData.h"

namespace tessel::test {
namespace {

class FakeChangesTest : public testing::Test {
 protected:
  FakeChangesTest() {
    connection->Open("", "", 0);
    answer = &data.Answer("rows", {MemoryField("id", DataType::Integer), MemoryField("name")},
                          {{1, "a"}, {2, "b"}, {3, "c"}});
    rows = Open(LockType::Optimistic);
  }

  std::shared_ptr<Recordset> Open(LockType lock) {
    auto recordset = connection->CreateRecordset();
    recordset->SetSource("rows");
    recordset->SetLockType(lock);
    recordset->Open(openOption::text);
    return recordset;
  }
  [[nodiscard]] MemoryRows& Table() const { return *answer->rows; }

  HeadlessQueue queue;
  MemoryData data{queue};
  std::shared_ptr<Connection> connection = data.CreateConnection();
  MemoryResult* answer = nullptr;
  std::shared_ptr<Recordset> rows;
};

TEST_F(FakeChangesTest, AChangeIsSeenByClonesAtOnceAndByTheServerWhenWritten) {
  const auto clone = rows->Clone(LockType::ReadOnly);
  rows->SetFieldValue(1, Value(std::string("x")));
  EXPECT_EQ(ToText(clone->ValueAt(0, 1)), "x");
  EXPECT_EQ(Table()[0][1], Value(std::string("a")));
  rows->Update(0);
  EXPECT_EQ(Table()[0][1], Value(std::string("x")));
  EXPECT_EQ(rows->Editing(), EditMode::None);
}

TEST_F(FakeChangesTest, RowsForReadingRefuseEveryChange) {
  const auto locked = Open(LockType::ReadOnly);
  EXPECT_EQ(ErrorNumberOf([&] { locked->SetFieldValue(1, Value()); }), errorNumber::readOnly);
  EXPECT_EQ(ErrorNumberOf([&] { locked->AddNew(); }), errorNumber::readOnly);
  EXPECT_EQ(ErrorNumberOf([&] { locked->Delete(0); }), errorNumber::readOnly);
  EXPECT_EQ(ErrorNumberOf([&] { locked->Update(0); }), errorNumber::readOnly);
}

TEST_F(FakeChangesTest, OneChangeIsPendingAtATime) {
  rows->SetFieldValue(1, Value(std::string("x")));
  EXPECT_EQ(ErrorNumberOf([&] { rows->AddNew(); }), errorNumber::changePending);
  rows->MoveNext();
  EXPECT_EQ(ErrorNumberOf([&] { rows->SetFieldValue(1, Value()); }), errorNumber::changePending);
  rows->CancelUpdate();
  EXPECT_EQ(ToText(rows->ValueAt(0, 1)), "a");
}

TEST_F(FakeChangesTest, ANewRecordStandsBehindTheOthersAndCountsWhenWritten) {
  rows->MoveNext();
  rows->AddNew();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_TRUE(IsNull(rows->ValueAt(3, 1)));
  rows->CancelUpdate();
  EXPECT_EQ(rows->CurrentBookmark(), 2);
  rows->AddNew();
  rows->SetFieldValue(0, Value(std::int64_t{9}));
  rows->Update(0);
  EXPECT_EQ(rows->RecordCount(), 4);
  EXPECT_EQ(ToText(rows->FieldValue(0)), "9");
  EXPECT_EQ(Table().size(), 4U);
}

TEST_F(FakeChangesTest, DeletingMakesTheNextRecordCurrentAndKeepsBookmarks) {
  const auto clone = rows->Clone(LockType::ReadOnly);
  clone->MoveLast();
  rows->MoveNext();
  rows->Delete(0);
  EXPECT_EQ(rows->CurrentBookmark(), 3);
  EXPECT_EQ(clone->CurrentBookmark(), 3) << "the other cursor stays on its record";
  EXPECT_FALSE(rows->PositionOf(2).has_value());
  EXPECT_EQ(Table().size(), 2U);
  rows->Delete(0);
  EXPECT_TRUE(rows->Eof());
}

TEST_F(FakeChangesTest, TheServerRefusesWhatBreaksItsRulesOrWasChangedMeanwhile) {
  rows->SetFieldValue(0, Value(std::int64_t{2}));
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(0); }), errorNumber::database) << "the key is taken";
  rows->CancelUpdate();
  Table()[0][1] = std::string("theirs");
  rows->SetFieldValue(1, Value(std::string("mine")));
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(0); }), errorNumber::changeConflict);
  EXPECT_EQ(rows->Editing(), EditMode::InProgress);
  rows->CancelUpdate();
  Table().erase(Table().begin());
  EXPECT_EQ(ErrorNumberOf([&] { rows->Delete(0); }), errorNumber::changeConflict);
}

TEST_F(FakeChangesTest, TextIsConvertedToTheFieldsType) {
  rows->SetFieldValue(0, Value(std::string("7")));
  EXPECT_EQ(ToValue(rows->FieldValue(0)), Value(std::int64_t{7}));
  EXPECT_EQ(ErrorNumberOf([&] { rows->SetFieldValue(0, Value(std::string("x"))); }),
            errorNumber::typeMismatch);
  EXPECT_EQ(ToValue(rows->FieldValue(0)), Value(std::int64_t{7}));
}

TEST_F(FakeChangesTest, AnAsynchronousChangeEndsOnceAndCanBeHeld) {
  int ends = 0;
  rows->ChangeComplete = [&](const ErrorInfo* error, EventStatus) {
    EXPECT_EQ(error, nullptr);
    ++ends;
  };
  data.holdChanges = true;
  rows->SetFieldValue(1, Value(std::string("x")));
  rows->Update(openOption::asyncExecute);
  while (queue.RunOne()) continue;
  EXPECT_EQ(rows->State(), objectState::open | objectState::executing);
  data.Resume();
  while (queue.RunOne()) continue;
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(Table()[0][1], Value(std::string("x")));
}

}  // namespace
}  // namespace tessel::test
