// Rows that the program made, merged and compared, over the databases of the tests.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/headless/HeadlessServices.h"
#include "tests/support/CombinedSteps.h"
#include "tests/support/DataSteps.h"
#include "tests/support/ErrorNumber.h"
#include "tests/support/MemoryData.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CombinedRowsTest : public testing::Test {
 protected:
  std::shared_ptr<Recordset> Made(const std::vector<std::string>& names,
                                  const std::vector<std::vector<Value>>& rows) {
    return data.MakeRecordset(MemoryFields(names), rows);
  }
  std::unique_ptr<RowComparison> Compared(std::shared_ptr<Recordset> a,
                                          std::shared_ptr<Recordset> b,
                                          std::vector<std::string> keys) {
    auto comparison =
        data.CompareRows({.a = {"A", std::move(a)}, .b = {"B", std::move(b)}, .keys = keys});
    StepToEnd(*comparison);
    return comparison;
  }

  HeadlessQueue queue;
  MemoryData data{queue};
};

// --- made ----------------------------------------------------------------------------------------

TEST_F(CombinedRowsTest, MadeRowsAreARecordset) {
  const auto rows = Made({"name", "n"}, {{"b", 2}, {"a", 10}, {"c"}});

  EXPECT_THAT(LinesOf(*rows), ElementsAre("b|2", "a|10", "c|NULL"));
  EXPECT_EQ(rows->State(), objectState::open);
  EXPECT_EQ(rows->ActiveConnection(), nullptr);
  EXPECT_EQ(rows->WhyNotChangeable()->number, errorNumber::readOnly);
  rows->SetSort("n DESC");
  EXPECT_THAT(LinesOf(*rows), ElementsAre("a|10", "b|2", "c|NULL"));
  EXPECT_THAT(LinesOf(*rows->Clone(LockType::ReadOnly)), ElementsAre("b|2", "a|10", "c|NULL"));
}

// --- merged --------------------------------------------------------------------------------------

TEST_F(CombinedRowsTest, MergedRowsStandBehindEachOther) {
  const auto merged = data.MergeRows(
      {{"first", Made({"id", "x"}, {{1, "a"}})}, {"second", Made({"ID", "y"}, {{2, "b"}})}});

  EXPECT_THAT(NamesOf(*merged), ElementsAre("Connection", "id", "x", "y"));
  EXPECT_THAT(LinesOf(*merged), ElementsAre("first|1|a|NULL", "second|2|NULL|b"));
}

TEST_F(CombinedRowsTest, EqualNamesOfOneResultKeepTheirCount) {
  const auto merged = data.MergeRows(
      {{"1", Made({"a", "b", "a"}, {{1, 2, 3}})}, {"2", Made({"A", "c"}, {{4, 5}})}});

  EXPECT_THAT(NamesOf(*merged), ElementsAre("Connection", "a", "b", "a", "c"));
  EXPECT_THAT(LinesOf(*merged), ElementsAre("1|1|2|3|NULL", "2|4|NULL|NULL|5"));
}

TEST_F(CombinedRowsTest, WhatBecomesOfAConnectionIsNoMatter) {
  data.catalogs = {"shop", "other"};
  data.Answer("select", {MemoryField("id", DataType::Integer), MemoryField("x")},
              {{1, "a"}, {2, "b"}});
  auto connection = data.CreateConnection();
  connection->SetConnectionString("db");
  OpenNow(*connection, "me", "secret");
  auto query = QueryNow(*connection, "select", LockType::Optimistic);
  const auto merged = data.MergeRows({{"p", query.Rows()}});
  const auto comparison =
      data.CompareRows({.a = {"A", query.Rows()}, .b = {"B", merged}, .keys = {"id"}});
  comparison->Step(1);

  UseCatalog(*connection, "other");
  query = QueryNow(*connection, "select");
  data.LoseSessions();
  connection.reset();
  query.Reset();
  while (queue.RunOne()) continue;
  StepToEnd(*comparison);
  EXPECT_THAT(LinesOf(*merged), ElementsAre("p|1|a", "p|2|b"));
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(0, 0, 0, 2, 0));
  EXPECT_THAT(comparison->OnlyInB(), ElementsAre("Connection"));
}

// --- compared ------------------------------------------------------------------------------------

TEST_F(CombinedRowsTest, RowsAreFoundByTheirKey) {
  const auto comparison = Compared(
      Made({"id", "x", "y"}, {{1, "a", "p"}, {2, "b", "q"}, {3, "c", "r"}, {4, "d", "s"}}),
      Made({"id", "x", "y"}, {{5, "e", "t"}, {3, "C", "R"}, {2, "b", "q"}, {1, "a", "P"}}), {"id"});

  EXPECT_THAT(NamesOf(*comparison->Rows()),
              ElementsAre("State", "Connection", "Changed", "id", "x", "y"));
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|y|1|a|p", "changed|B|y|1|a|P", "changed|A|x, y|3|c|r",
                          "changed|B|x, y|3|C|R", "only in A|A|NULL|4|d|s",
                          "only in B|B|NULL|5|e|t"));
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(1, 1, 2, 1, 0));
}

TEST_F(CombinedRowsTest, ChangedCellsAreTold) {
  const auto comparison = Compared(Made({"id", "x", "y"}, {{1, "a", "p"}, {2, "b", "q"}}),
                                   Made({"id", "x", "y"}, {{1, "a", "P"}}), {"id"});

  EXPECT_THAT(MarksOf(*comparison), ElementsAre("-----y", "-----y", "------"));
}

TEST_F(CombinedRowsTest, WholeRowsAreCounted) {
  const auto comparison = Compared(Made({"x"}, {{"a"}, {"a"}, {"b"}, {"c"}}),
                                   Made({"x"}, {{"a"}, {"b"}, {"b"}, {"d"}}), {});

  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("only in A|A|NULL|a", "only in A|A|NULL|c", "only in B|B|NULL|b",
                          "only in B|B|NULL|d"));
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(2, 2, 0, 2, 0));
}

TEST_F(CombinedRowsTest, RowsOfOneKeyAreAMultiset) {
  const auto comparison =
      Compared(Made({"id", "x"}, {{1, "a"}, {1, "b"}, {1, "c"}, {2, "d"}}),
               Made({"id", "x"}, {{1, "c"}, {1, "z"}, {2, "y"}, {2, "d"}}), {"id"});

  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|x|1|a", "changed|B|x|1|z", "only in A|A|NULL|1|b",
                          "only in B|B|NULL|2|y"));
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(1, 1, 1, 2, 2));
}

TEST_F(CombinedRowsTest, ColumnsOfOneSideAreToldAndNotCompared) {
  const auto comparison = Compared(Made({"id", "a", "x"}, {{1, "a", "x"}}),
                                   Made({"id", "x", "b"}, {{1, "y", "b"}}), {"id"});

  EXPECT_THAT(comparison->OnlyInA(), ElementsAre("a"));
  EXPECT_THAT(comparison->OnlyInB(), ElementsAre("b"));
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|x|1|a|x|NULL", "changed|B|x|1|NULL|y|b"));
}

TEST_F(CombinedRowsTest, WhatCannotBeComparedIsRefused) {
  EXPECT_EQ(ErrorNumberOf([&] { Compared(Made({"a"}, {}), Made({"b"}, {}), {}); }),
            errorNumber::application);
  EXPECT_EQ(ErrorNumberOf([&] { Compared(Made({"a"}, {}), nullptr, {}); }),
            errorNumber::application);
  EXPECT_EQ(ErrorNumberOf([&] {
              Compared(Made({"a", "b"}, {}), Made({"a"}, {}), {"b"});
            }),
            errorNumber::itemNotFound);
}

TEST_F(CombinedRowsTest, NothingIsAsGoodAsNoRows) {
  EXPECT_THAT(LinesOf(*data.MergeRows({})), IsEmpty());
  const auto merged = data.MergeRows({{"none", nullptr}, {"one", Made({"x"}, {{"a"}})}});
  EXPECT_THAT(LinesOf(*merged), ElementsAre("one|a"));
  const auto comparison = Compared(Made({"x"}, {}), Made({"x"}, {}), {"x"});
  EXPECT_THAT(LinesOf(*comparison->Rows()), IsEmpty());
  EXPECT_EQ(comparison->Done(), comparison->Total());
}

}  // namespace

}  // namespace tessel::test
