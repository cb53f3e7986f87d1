// Two results compared: against a plain way to do the same, at the edges, and across databases.

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/combined/matching/SameValue.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/support/DataTest.h"
#include "tests/data/support/Values.h"
#include "tests/support/CombinedSteps.h"
#include "tests/support/ErrorNumber.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Row = std::vector<Value>;

std::vector<FieldInfo> FieldsNamed(const std::vector<std::string>& names) {
  std::vector<FieldInfo> fields;
  for (const std::string& name : names) fields.emplace_back().name = name;
  return fields;
}

/// The same work, row by row against row.
class PlainComparison {
 public:
  PlainComparison(const std::vector<Row>& a, const std::vector<Row>& b, std::size_t keys)
      : a_(a), b_(b), keys_(keys), partners_(a.size()), isTaken_(b.size()) {
    const std::size_t all = a.empty() ? 0 : a[0].size();
    std::vector<bool> equal(a.size());
    Pair(all, &equal);
    if (keys != 0) Pair(keys, nullptr);
    for (std::size_t i = 0; i < a.size(); ++i)
      if (equal[i]) ++equal_;
      else Tell(i);
    for (std::size_t i = 0; i < b.size(); ++i)
      if (!isTaken_[i]) lines_.push_back("only in B|B|NULL" + Cells(b[i]));
  }
  [[nodiscard]] const std::vector<std::string>& Lines() const { return lines_; }
  [[nodiscard]] std::int64_t Equal() const { return equal_; }

 private:
  static bool Same(const Row& x, const Row& y, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      if (!ValueSameness{}.Same(ToView(x[i]), ToView(y[i]))) return false;
    return true;
  }
  static std::string Cells(const Row& row) {
    std::string text;
    for (const Value& value : row)
      text += "|" + (IsNull(ToView(value)) ? "NULL" : ToText(ToView(value)));
    return text;
  }
  /// Each row of B takes the first one of A that is left and the same in `columns` columns.
  void Pair(std::size_t columns, std::vector<bool>* found) {
    for (std::size_t j = 0; j < b_.size(); ++j) {
      for (std::size_t i = 0; i < a_.size() && !isTaken_[j]; ++i) {
        if (partners_[i] != nullptr || !Same(a_[i], b_[j], columns)) continue;
        partners_[i] = &b_[j];
        isTaken_[j] = true;
        if (found != nullptr) (*found)[i] = true;
      }
    }
  }
  void Tell(std::size_t i) {
    if (partners_[i] == nullptr) {
      lines_.push_back("only in A|A|NULL" + Cells(a_[i]));
      return;
    }
    std::string names;
    for (std::size_t c = keys_; c < a_[i].size(); ++c)
      if (!ValueSameness{}.Same(ToView(a_[i][c]), ToView((*partners_[i])[c])))
        names += (names.empty() ? "c" : ", c") + std::to_string(c);
    lines_.push_back("changed|A|" + names + Cells(a_[i]));
    lines_.push_back("changed|B|" + names + Cells(*partners_[i]));
  }

  const std::vector<Row>& a_;
  const std::vector<Row>& b_;
  std::size_t keys_;
  std::vector<const Row*> partners_;
  std::vector<bool> isTaken_;
  std::vector<std::string> lines_;
  std::int64_t equal_ = 0;
};

/// Values of which some are the same though they look different, and some have the same hash though
/// they are not the same.
const std::vector<Value>& Samples() {
  static const std::vector<Value> samples = {
      Value(),         Whole(1),         Digits("1.0"),
      Value(1.0),      Whole(2),         Digits("2.50"),
      Value(2.5),      Text("a"),        Text(""),
      Octets("a"),     Value(true),      Digits("1e400"),
      Digits("2e400"), At("2024-01-01"), At("2024-01-01 00:00:00")};
  return samples;
}

std::vector<Row> RandomRows(std::mt19937& random, std::size_t columns) {
  std::vector<Row> rows(std::uniform_int_distribution<std::size_t>(0, 40)(random));
  std::uniform_int_distribution<std::size_t> pick(0, Samples().size() - 1);
  for (Row& row : rows)
    for (std::size_t i = 0; i < columns; ++i) row.push_back(Samples()[pick(random)]);
  return rows;
}

}  // namespace

class ComparedRowsTest : public DataTest {
 protected:
  [[nodiscard]] std::shared_ptr<Recordset> Made(const std::vector<std::string>& names,
                                                const std::vector<Row>& rows) {
    return data_.MakeRecordset(FieldsNamed(names), rows);
  }
  [[nodiscard]] std::unique_ptr<RowComparison> Compared(std::shared_ptr<Recordset> a,
                                                        std::shared_ptr<Recordset> b,
                                                        std::vector<std::string> keys = {},
                                                        std::int64_t step = 100000) {
    auto comparison = data_.CompareRows(
        {.a = {"A", std::move(a)}, .b = {"B", std::move(b)}, .keys = std::move(keys)});
    StepToEnd(*comparison, step);
    return comparison;
  }
  [[nodiscard]] std::shared_ptr<Connection> Sqlite() {
    return ConnectTo("Provider=SQLite;Data Source=:memory:");
  }
};

TEST_F(ComparedRowsTest, FindsWhatAPlainComparisonFinds) {
  std::mt19937 random(20240501);
  const std::vector<std::string> names = {"c0", "c1", "c2"};
  for (int round = 0; round < 600; ++round) {
    const std::vector<Row> a = RandomRows(random, names.size());
    const std::vector<Row> b = RandomRows(random, names.size());
    for (std::size_t keys = 0; keys < names.size(); ++keys) {
      const auto comparison =
          Compared(Made(names, a), Made(names, b),
                   {names.begin(), names.begin() + static_cast<int>(keys)}, 1 + round % 7);
      const PlainComparison plain(a, b, keys);
      ASSERT_EQ(LinesOf(*comparison->Rows()), plain.Lines()) << "round " << round;
      ASSERT_EQ(comparison->Counts().equal, a.empty() ? 0 : plain.Equal());
    }
  }
}

TEST_F(ComparedRowsTest, KeysThatAreNotUniqueAreCounted) {
  const std::vector<std::string> names = {"k", "x"};
  const auto rows = [&](std::vector<std::int64_t> keys) {
    std::vector<Row> made;
    for (const std::int64_t key : keys)
      made.push_back({Whole(key), Whole(static_cast<std::int64_t>(made.size()))});
    return Made(names, made);
  };
  const auto counted = [&](std::vector<std::int64_t> a, std::vector<std::int64_t> b) {
    return Compared(rows(std::move(a)), rows(std::move(b)), {"k"})->Counts().keysNotUnique;
  };
  EXPECT_EQ(counted({1, 2, 3}, {3, 2, 1}), 0);
  EXPECT_EQ(counted({1, 1, 1, 2}, {1, 1}), 1);
  EXPECT_EQ(counted({1, 2}, {1, 1, 1, 2, 2}), 2);
  EXPECT_EQ(counted({}, {1, 1, 1, 2, 3, 3}), 2);
  EXPECT_EQ(counted({1, 1}, {2, 2}), 2);
}

TEST_F(ComparedRowsTest, ManyRowsOfOneKeyTakeNoLonger) {
  std::vector<Row> a;
  std::vector<Row> b;
  for (std::int64_t i = 0; i < 60'000; ++i) {
    a.push_back({Whole(1), Whole(i)});
    b.push_back({Whole(1), Whole(59'999 + 10 - i)});
  }
  const auto comparison = Compared(Made({"k", "x"}, a), Made({"k", "x"}, b), {"k"});
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(0, 0, 10, 59'990, 1));
}

TEST_F(ComparedRowsTest, NullIsItselfAndEmptyTextIsNot) {
  const auto comparison =
      Compared(Made({"k", "x"}, {{Value(), Text("")}, {Text(""), Value()}}),
               Made({"k", "x"}, {{Text(""), Value()}, {Value(), Value()}}), {"k"});
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|x|NULL|", "changed|B|x|NULL|NULL"));
}

TEST_F(ComparedRowsTest, EqualNamesAreMatchedInTheirOrder) {
  const auto comparison =
      Compared(Made({"a", "a", "b"}, {{Whole(1), Whole(2), Whole(3)}}),
               Made({"A", "b", "A", "a"}, {{Whole(1), Whole(3), Whole(9), Whole(4)}}), {"a"});
  EXPECT_THAT(NamesOf(*comparison->Rows()),
              ElementsAre("State", "Connection", "Changed", "a", "a", "b", "a"));
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|a|1|2|3|NULL", "changed|B|a|1|9|3|4"));
  EXPECT_THAT(MarksOf(*comparison), ElementsAre("----a--", "----a--"));
  EXPECT_THAT(comparison->OnlyInA(), IsEmpty());
  EXPECT_THAT(comparison->OnlyInB(), ElementsAre("a"));
}

TEST_F(ComparedRowsTest, FiveThousandColumnsAreComparedInSmallSteps) {
  std::vector<std::string> names;
  Row row;
  for (int i = 0; i < 5000; ++i) {
    names.push_back("c" + std::to_string(i));
    row.push_back(Whole(i));
  }
  Row other = row;
  other[4999] = Text("x");
  const std::vector<Row> a(50, row);
  std::vector<Row> b(50, row);
  b[20] = other;
  const auto comparison =
      data_.CompareRows({.a = {"A", Made(names, a)}, .b = {"B", Made(names, b)}, .keys = {"c0"}});
  int steps = 0;
  for (; comparison->Done() < comparison->Total(); ++steps) comparison->Step(1'000'000);
  EXPECT_GT(steps, 8);
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(0, 0, 1, 49, 1));
  EXPECT_EQ(ToText(comparison->Rows()->ValueAt(0, 2)), "c4999");
}

TEST_F(ComparedRowsTest, RowsOfSeveralChunksAreFoundInAnyOrder) {
  const auto connection = Sqlite();
  const std::string series = "with recursive c(n) as (select 1 union all select n + 1 from c where "
                             "n < 200000) select n as id, 'row ' || n as t, n / 8.0 as d from c";
  const auto a = QueryNow(*connection, series);
  const auto b = QueryNow(
      *connection, "select id, case when id % 50000 = 7 then 'other' else t end as t, d from (" +
                       series + ") where id % 60000 <> 11 order by id * 7919 % 200003");
  const auto comparison = Compared(a, b, {"ID"});
  EXPECT_THAT(CountsOf(*comparison), ElementsAre(4, 0, 4, 199'992, 0));
  EXPECT_THAT(TextsOf(*comparison->Rows(), 3),
              ElementsAre("7", "7", "11", "50007", "50007", "60011", "100007", "100007", "120011",
                          "150007", "150007", "180011"));
}

TEST_F(ComparedRowsTest, RowsInAFileAreComparedAsThoseInMemory) {
  DataAccessObjects data(queue_, nullptr, RowMemory{1'000'000, SpillFolder()}, slowdown);
  const auto connection = data.CreateConnection();
  connection->SetConnectionString("Provider=SQLite;Data Source=:memory:");
  OpenNow(*connection);
  const auto read = [&](const std::string& text) -> std::shared_ptr<Recordset> {
    return QueryNow(*connection,
                    "with recursive c(n) as (select 1 union all select n + 1 from c where n < "
                    "150000) select n, " +
                        text + " as t from c");
  };
  const auto a = read("'row ' || n");
  ASSERT_LE(static_cast<const ClientRecordset&>(*a).HeldBytes(), 1'000'000U);
  const auto comparison = data.CompareRows(
      {.a = {"A", a}, .b = {"B", read("'row ' || (n + (n = 140000))")}, .keys = {"n"}});
  StepToEnd(*comparison, 1'000'000);
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|t|140000|row 140000", "changed|B|t|140000|row 140001"));
}

// --- parts that are changed, and results ---------------------------------------------------------

TEST_F(ComparedRowsTest, ChangesMadeMeanwhileAreNotSeen) {
  const auto connection = Sqlite();
  auto a =
      QueryNow(*connection,
               "create table t (id integer primary key, x text); insert into t values (1, 'a'), "
               "(2, 'b'), (3, 'c'); select id, x from t",
               LockType::Optimistic)
          .Rows();
  const auto b = Made({"id", "x"}, {{Whole(1), Text("a")}, {Whole(2), Text("B")}});
  const auto comparison = data_.CompareRows({.a = {"A", a}, .b = {"B", b}, .keys = {"id"}});
  comparison->Step(2);
  a->SetFieldValue(1, Text("z"));
  Update(*a);
  Delete(*a);
  a->AddNew();
  a->SetFieldValue(0, Whole(8));
  Update(*a);
  comparison->Step(1);
  a->Close();
  a.reset();
  connection->Close();
  StepToEnd(*comparison);
  EXPECT_THAT(LinesOf(*comparison->Rows()),
              ElementsAre("changed|A|x|2|b", "changed|B|x|2|B", "only in A|A|NULL|3|c"));
}

TEST_F(ComparedRowsTest, AComparisonMayBeGivenUpAndItsRowsOutliveIt) {
  const auto a = Made({"x"}, {{Whole(1)}, {Whole(2)}});
  auto givenUp = data_.CompareRows({.a = {"A", a}, .b = {"B", a}, .keys = {}});
  givenUp->Step(1);
  givenUp.reset();

  auto comparison = Compared(a, Made({"x"}, {{Whole(2)}, {Whole(3)}}));
  const auto rows = comparison->Rows();
  comparison.reset();
  rows->SetSort("State DESC");
  EXPECT_THAT(LinesOf(*rows), ElementsAre("only in B|B|NULL|3", "only in A|A|NULL|1"));
  EXPECT_THAT(LinesOf(*rows->Clone(LockType::ReadOnly)),
              ElementsAre("only in A|A|NULL|1", "only in B|B|NULL|3"));
  EXPECT_EQ(rows->WhyNotChangeable()->number, errorNumber::readOnly);
}

TEST_F(ComparedRowsTest, DifferencesAndMergedRowsCanBeCompared) {
  const auto rows = Made({"x"}, {{Whole(1)}, {Whole(2)}});
  const auto one = data_.MergeRows({{"p", rows}, {"q", rows}});
  const auto two = data_.MergeRows({{"q", rows}, {"p", Made({"x"}, {{Value(1.0)}, {Whole(3)}})}});
  EXPECT_THAT(LinesOf(*Compared(one, two)->Rows()),
              ElementsAre("only in A|A|NULL|p|2", "only in B|B|NULL|p|3"));
  EXPECT_THAT(CountsOf(*Compared(one, one, {"Connection", "x"})), ElementsAre(0, 0, 0, 4, 0));
}

// --- values across databases ---------------------------------------------------------------------

/// One row of every kind of value, from each database in its own types.
class ComparedDatabases : public ComparedRowsTest {
 protected:
  void ExpectEqualTo(const std::string& connectionString, const std::string& sql) {
    const auto sqlite = Sqlite();
    const auto here = QueryNow(
        *sqlite, "create table t (n integer, money decimal(10,2), real_ double, t text, d date,"
                 " moment datetime, bytes blob, missing text, flag boolean);"
                 "insert into t values (7, 19.90, 0.1, 'Zo\xC3\xAB', '2024-02-29',"
                 " '2024-02-29 10:00:00.5', x'00ff', null, 1); select * from t");
    const auto other = ConnectTo(connectionString);
    const auto there = QueryNow(*other, sql);
    const auto comparison = data_.CompareRows(
        {.a = {"here", here}, .b = {"there", there}, .keys = {}, .booleansAreNumbers = true});
    StepToEnd(*comparison);
    EXPECT_THAT(comparison->OnlyInA(), IsEmpty());
    EXPECT_THAT(comparison->OnlyInB(), IsEmpty());
    EXPECT_THAT(LinesOf(*comparison->Rows()), IsEmpty());
    EXPECT_EQ(comparison->Counts().equal, 1);
  }
};

TEST_F(ComparedDatabases, PostgresGivesTheValuesThatSqliteGives) {
  ExpectEqualTo(PostgresNative().ConnectionString(),
                "select 7::bigint as n, 19.90::numeric(10,2) as money, 0.1::real as real_,"
                " 'Zo\xC3\xAB'::varchar as t, date '2024-02-29' as d,"
                " timestamp '2024-02-29 10:00:00.5' as moment, '\\x00ff'::bytea as bytes,"
                " null::text as missing, true as flag");
}

TEST_F(ComparedDatabases, MariaDbGivesTheValuesThatSqliteGives) {
  ExpectEqualTo(
      MariaNative().ConnectionString(),
      "select cast(7 as unsigned) as n, cast(19.9 as decimal(10,4)) as money, 0.1e0 as real_,"
      " 'Zo\xC3\xAB' as t, date '2024-02-29' as d,"
      " timestamp '2024-02-29 10:00:00.500' as moment, x'00ff' as bytes,"
      " null as missing, true as flag");
}

TEST_F(ComparedDatabases, AMomentWithATimeZoneIsItsInstantInEverySession) {
  const auto read = [this](const std::string& zone) -> std::shared_ptr<Recordset> {
    const auto connection = ConnectTo(PostgresNative().ConnectionString());
    Run(*connection, "set time zone '" + zone + "'");
    return Run(*connection, "select timestamptz '2024-07-01 12:00:00+00' as moment");
  };
  const auto here = read("Asia/Kolkata");
  const auto there = read("America/St_Johns");
  ASSERT_NE(TextsOf(*here), TextsOf(*there));
  EXPECT_EQ(Compared(here, there)->Counts().equal, 1);
}

}  // namespace tessel::test
