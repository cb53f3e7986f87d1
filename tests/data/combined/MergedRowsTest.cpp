// Merged rows over real recordsets, whatever becomes of these.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/cursor/rows/ClientRecordset.h"
#include "tests/data/support/DataTest.h"
#include "tests/data/support/Values.h"
#include "tests/support/CombinedSteps.h"
#include "tests/support/ErrorNumber.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string threeRows =
    "create table t (id integer primary key, x text);"
    "insert into t values (1, 'a'), (2, 'b'), (3, 'c'); select id, x from t order by id";

std::vector<Value> FirstRow(const Recordset& rows) {
  std::vector<ValueView> views(rows.Fields().size());
  rows.ReadFields(0, views);
  std::vector<Value> values;
  for (const ValueView& view : views) values.push_back(ToValue(view));
  return values;
}

}  // namespace

class MergedRowsTest : public DataTest {
 protected:
  void SetUp() override { connection_ = ConnectTo("Provider=SQLite;Data Source=:memory:"); }

  [[nodiscard]] std::shared_ptr<Recordset> Read(const std::string& sql) {
    return QueryNow(*connection_, sql, LockType::Optimistic);
  }
  [[nodiscard]] std::shared_ptr<Recordset> Merged(const std::vector<NamedRows>& parts) {
    return data_.MergeRows(parts);
  }

  std::shared_ptr<Connection> connection_;
};

// --- what a recordset is asked -------------------------------------------------------------------

TEST_F(MergedRowsTest, CursorsMoveAndReadAsOverAnyRows) {
  const auto merged = Merged({{"one", Read("select 1 as n, 'x' as t union select 2, null")},
                              {"two", Read("select 'y' as t, 3.5 as d")}});

  ASSERT_EQ(merged->RecordCount(), 3);
  EXPECT_EQ(FirstRow(*merged), (std::vector<Value>{Text("one"), Whole(1), Text("x"), Value()}));
  merged->MoveLast();
  EXPECT_EQ(FirstRow(*merged), (std::vector<Value>{Text("two"), Value(), Text("y"), Value(3.5)}));
  EXPECT_EQ(merged->ActualSize(0), 3);
  EXPECT_EQ(merged->ActualSize(1), 0);
  EXPECT_EQ(merged->CurrentBookmark(), 3);
  merged->MoveNext();
  EXPECT_TRUE(merged->Eof());
  EXPECT_EQ(ErrorNumberOf([&] { merged->MoveNext(); }), errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorNumberOf([&] { (void)merged->ValueAt(3, 0); }), errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorNumberOf([&] { (void)merged->ValueAt(0, 4); }), errorNumber::itemNotFound);
}

TEST_F(MergedRowsTest, SortsByConnectionAndByColumnsOfAllParts) {
  const auto merged = Merged({{"b", Read("select 2 as n union all select 1")},
                              {"a", Read("select 2 as n union all select 3")}});
  merged->MoveLast();
  const Bookmark last = merged->CurrentBookmark();

  merged->SetSort("n DESC, Connection");
  EXPECT_THAT(LinesOf(*merged), ElementsAre("a|3", "a|2", "b|2", "b|1"));
  EXPECT_EQ(merged->CurrentBookmark(), last);
  EXPECT_EQ(merged->PositionOf(last), 0);
  merged->SetSort("Connection");
  EXPECT_THAT(LinesOf(*merged), ElementsAre("a|2", "a|3", "b|2", "b|1"));
  EXPECT_THAT(LinesOf(*merged->Clone(LockType::Optimistic)),
              ElementsAre("b|2", "b|1", "a|2", "a|3"));
}

TEST_F(MergedRowsTest, CannotBeChanged) {
  const auto merged = Merged({{"one", Read(threeRows)}});
  EXPECT_EQ(merged->Lock(), LockType::ReadOnly);
  EXPECT_EQ(merged->WhyNotChangeable()->number, errorNumber::readOnly);
  for (const FieldInfo& field : merged->Fields()) EXPECT_FALSE(field.updatable) << field.name;
  for (const auto& action : std::vector<std::function<void()>>{
           [&] { merged->AddNew(); }, [&] { merged->SetFieldValue(1, Text("x")); },
           [&] { (void)merged->StartUpdate(); }, [&] { merged->CancelUpdate(); },
           [&] { (void)merged->StartDelete(); }})
    EXPECT_EQ(ErrorNumberOf(action), errorNumber::readOnly);
  EXPECT_EQ(merged->RecordsetProperties().At("Unique Rows"), Value(false));
}

TEST_F(MergedRowsTest, AClosedOneIsClosed) {
  const auto merged = Merged({{"one", Read(threeRows)}});
  const auto clone = merged->Clone(LockType::ReadOnly);
  merged->Close();
  merged->Close();
  EXPECT_EQ(merged->State(), objectState::closed);
  EXPECT_EQ(ErrorNumberOf([&] { (void)merged->RecordCount(); }), errorNumber::objectClosed);
  EXPECT_EQ(ErrorNumberOf([&] { merged->AddNew(); }), errorNumber::objectClosed);
  EXPECT_EQ(clone->RecordCount(), 3);
  const NamedRows closed{"closed", merged};
  EXPECT_EQ(ErrorNumberOf([&] { (void)Merged({closed}); }), errorNumber::objectClosed);
}

TEST_F(MergedRowsTest, MergedRowsCanBeMergedAgain) {
  const auto merged = Merged({{"one", Read("select 1 as n")}, {"two", Read("select 2 as n")}});
  const auto again = Merged({{"all", merged}, {"more", Read("select 3 as n")}});
  EXPECT_THAT(NamesOf(*again), ElementsAre("Connection", "Connection", "n"));
  EXPECT_THAT(LinesOf(*again), ElementsAre("all|one|1", "all|two|2", "more|NULL|3"));
}

// --- fields --------------------------------------------------------------------------------------

TEST_F(MergedRowsTest, AFieldHasTheTypeThatHoldsTheValuesOfAllParts) {
  const auto with = [this](DataType type) {
    FieldInfo field;
    field.name = "x";
    field.type = type;
    return NamedRows{"part", data_.MakeRecordset({field}, {})};
  };
  const auto common = [&](DataType a, DataType b) {
    const DataType type = Merged({with(a), with(b)})->Fields()[1].type;
    EXPECT_EQ(Merged({with(b), with(a)})->Fields()[1].type, type);
    return type;
  };
  using enum DataType;
  EXPECT_EQ(common(Integer, Integer), Integer);
  EXPECT_EQ(common(SmallInt, BigInt), BigInt);
  EXPECT_EQ(common(UnsignedInt, Integer), BigInt);
  EXPECT_EQ(common(UnsignedTinyInt, SmallInt), SmallInt);
  EXPECT_EQ(common(TinyInt, UnsignedTinyInt), BigInt);
  EXPECT_EQ(common(UnsignedTinyInt, Integer), Integer);
  EXPECT_EQ(common(Currency, Integer), Decimal);
  EXPECT_EQ(common(Single, Single), Single);
  EXPECT_EQ(common(UnsignedBigInt, BigInt), Decimal);
  EXPECT_EQ(common(BigInt, Numeric), Numeric);
  EXPECT_EQ(common(Integer, Double), Double);
  EXPECT_EQ(common(Single, Integer), Double);
  EXPECT_EQ(common(Numeric, Double), Double);
  EXPECT_EQ(common(VarChar, VarWChar), VarWChar);
  EXPECT_EQ(common(Char, LongVarWChar), LongVarWChar);
  EXPECT_EQ(common(LongVarChar, VarWChar), LongVarWChar);
  EXPECT_EQ(common(Guid, VarWChar), VarWChar);
  EXPECT_EQ(common(VarBinary, LongVarBinary), LongVarBinary);
  EXPECT_EQ(common(DBDate, DBTimeStamp), DBTimeStamp);
  EXPECT_EQ(common(DBTime, DBTimeStamp), Variant);
  EXPECT_EQ(common(Boolean, Integer), Variant);
  EXPECT_EQ(common(VarWChar, Integer), Variant);
  EXPECT_EQ(common(LongVarBinary, VarWChar), Variant);
}

TEST_F(MergedRowsTest, ValuesKeepTheirTypes) {
  const auto merged = Merged({{"a", Read("select 1 as v")},
                              {"b", Read("select 'one' as v")},
                              {"c", Read("select x'01' as v")},
                              {"d", Read("select null as v")}});
  EXPECT_EQ(ToValue(merged->ValueAt(0, 1)), Whole(1));
  EXPECT_EQ(ToValue(merged->ValueAt(1, 1)), Text("one"));
  EXPECT_EQ(ToValue(merged->ValueAt(2, 1)), Octets("\x01"));
  EXPECT_EQ(ToValue(merged->ValueAt(3, 1)), Value());
}

TEST_F(MergedRowsTest, FiveThousandColumnsAreUnited) {
  std::vector<FieldInfo> some(5000);
  std::vector<FieldInfo> others(5000);
  std::vector<Value> row;
  for (std::size_t i = 0; i < some.size(); ++i) {
    some[i].name = "c" + std::to_string(i);
    others[i].name = "C" + std::to_string(i + 2500);
    row.push_back(Whole(static_cast<std::int64_t>(i)));
  }
  const auto merged =
      Merged({{"a", data_.MakeRecordset(some, {row})}, {"b", data_.MakeRecordset(others, {row})}});
  ASSERT_EQ(merged->Fields().size(), 7501U);
  EXPECT_EQ(ToValue(merged->ValueAt(0, 2501)), Whole(2500));
  EXPECT_EQ(ToValue(merged->ValueAt(1, 2501)), Whole(0));
  EXPECT_EQ(ToValue(merged->ValueAt(1, 7500)), Whole(4999));
  EXPECT_EQ(ToValue(merged->ValueAt(1, 1)), Value());
  merged->MoveLast();
  EXPECT_EQ(FirstRow(*merged).at(2501), Whole(0));
}

// --- parts that are changed ----------------------------------------------------------------------

TEST_F(MergedRowsTest, WhatWasWrittenBeforeIsSeenAndWhatIsPendingIsNot) {
  const auto part = Read(threeRows);
  part->MoveNext();
  part->SetFieldValue(1, Text("B"));
  Update(*part);
  part->MoveFirst();
  Delete(*part);
  part->AddNew();
  part->SetFieldValue(0, Whole(9));
  part->SetFieldValue(1, Text("z"));
  Update(*part);
  part->MoveFirst();
  part->SetFieldValue(1, Text("pending"));

  const auto merged = Merged({{"p", part}});
  EXPECT_THAT(LinesOf(*merged), ElementsAre("p|2|B", "p|3|c", "p|9|z"));
  EXPECT_EQ(FirstRow(*merged), (std::vector<Value>{Text("p"), Whole(2), Text("B")}));
}

TEST_F(MergedRowsTest, ChangesOfAPartAreNotSeenLater) {
  const auto part = Read(threeRows);
  const auto merged = Merged({{"p", part}, {"q", part}});
  merged->SetSort("x DESC");
  const std::vector<std::string> before = LinesOf(*merged);
  EXPECT_THAT(before, ElementsAre("p|3|c", "q|3|c", "p|2|b", "q|2|b", "p|1|a", "q|1|a"));

  part->SetFieldValue(1, Text("z"));
  EXPECT_EQ(LinesOf(*merged), before);
  Update(*part);
  EXPECT_EQ(LinesOf(*merged), before);
  Delete(*part);
  part->AddNew();
  part->SetFieldValue(0, Whole(7));
  Update(*part);
  EXPECT_EQ(part->RecordCount(), 3);
  EXPECT_EQ(LinesOf(*merged), before);
  merged->SetSort("");
  EXPECT_THAT(LinesOf(*merged), ElementsAre("p|1|a", "p|2|b", "p|3|c", "q|1|a", "q|2|b", "q|3|c"));
}

TEST_F(MergedRowsTest, ARowAddedAndDeletedInAPartIsStillThere) {
  const auto part = Read(threeRows);
  part->AddNew();
  part->SetFieldValue(0, Whole(9));
  part->SetFieldValue(1, Text("new"));
  Update(*part);
  const auto merged = Merged({{"p", part}});
  part->MoveLast();
  Delete(*part);
  EXPECT_EQ(part->RecordCount(), 3);
  EXPECT_THAT(LinesOf(*merged), ElementsAre("p|1|a", "p|2|b", "p|3|c", "p|9|new"));
}

TEST_F(MergedRowsTest, ThePartsAreTakenInTheOrderOfOpening) {
  const auto part = Read(threeRows);
  part->SetSort("x DESC");
  EXPECT_THAT(LinesOf(*Merged({{"p", part}})), ElementsAre("p|1|a", "p|2|b", "p|3|c"));
}

TEST_F(MergedRowsTest, RowsOutliveTheirPartsAndConnections) {
  auto part = Read(threeRows);
  const auto merged = Merged({{"p", part}});
  const auto next = Read("select 5 as id");
  part->Close();
  part.reset();
  connection_->Close();
  connection_.reset();
  EXPECT_EQ(merged->ActiveConnection(), nullptr);
  EXPECT_EQ(merged->State(), objectState::open);
  EXPECT_THAT(LinesOf(*merged), ElementsAre("p|1|a", "p|2|b", "p|3|c"));
  EXPECT_THAT(LinesOf(*merged->Clone(LockType::ReadOnly)), LinesOf(*merged));
}

TEST_F(MergedRowsTest, RowsThatArriveLaterAreNotAmongThem) {
  EventLog log;
  const StartedQuery part =
      Start(*connection_,
            "with recursive c(n) as (select 1 union all select n + 1 from c) select n from c", log);
  ASSERT_TRUE(queue_.PumpUntil([&] { return log.LastProgress() > 1000; }));
  const auto merged = Merged({{"p", part}});
  const std::int64_t count = merged->RecordCount();
  ASSERT_TRUE(queue_.PumpUntil([&] { return part->RecordCount() > count; }));
  part.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(merged->RecordCount(), count);
  merged->MoveLast();
  EXPECT_EQ(FirstRow(*merged), (std::vector<Value>{Text("p"), Whole(count)}));
  EXPECT_EQ(ErrorNumberOf([&] { (void)merged->ValueAt(count, 1); }), errorNumber::noCurrentRecord);
}

TEST_F(MergedRowsTest, RowsInAFileAreMergedAsThoseInMemory) {
  DataAccessObjects data(queue_, nullptr, RowMemory{1'000'000, SpillFolder()}, slowdown);
  const auto connection = data.CreateConnection();
  connection->SetConnectionString("Provider=SQLite;Data Source=:memory:");
  OpenNow(*connection);
  const std::string sql =
      "with recursive c(n) as (select 1 union all select n + 1 from c where n < 150000)"
      " select n, 'row ' || n as t from c";
  const std::shared_ptr<Recordset> part = QueryNow(*connection, sql);
  ASSERT_LE(static_cast<const ClientRecordset&>(*part).HeldBytes(), 1'000'000U);
  const auto merged = data.MergeRows({{"a", part}, {"b", part}});
  ASSERT_EQ(merged->RecordCount(), 300'000);
  merged->SetSort("n DESC");
  for (std::int64_t row = 0; row < 300'000; row += 997) {
    EXPECT_EQ(ToText(merged->ValueAt(row, 0)), row % 2 == 0 ? "a" : "b");
    EXPECT_EQ(ToValue(merged->ValueAt(row, 2)), Text("row " + std::to_string(150'000 - row / 2)));
  }
}

}  // namespace tessel::test
