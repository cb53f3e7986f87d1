// Plans of the databases, as they were told by servers of the versions the program is tested on.

#include <gmock/gmock.h>

#include "contract/base/Error.h"
#include "logic/plan/reading/JsonTree.h"
#include "logic/plan/reading/PlanTree.h"

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}

std::vector<std::string> Names(const Plan& plan) {
  std::vector<std::string> names;
  for (const auto& [step, depth] : StepsOf(plan))
    names.push_back(std::string(static_cast<std::size_t>(depth), '.') + step->name);
  return names;
}

const PlanStep& Costliest(const Plan& plan) {
  for (const auto& [step, depth] : StepsOf(plan))
    if (step->costliest) return *step;
  return plan.root;
}

// --- JSON ----------------------------------------------------------------------------------------

TEST(JsonTree, ADocumentIsReadAsATree) {
  const JsonValue value =
      ReadJson(R"json( {"a": [1, -2.5e3, "x"], "b": {"c": null, "d": true}} )json");
  ASSERT_EQ(value.members.size(), 2U);
  EXPECT_EQ(value.Find("a")->items[1].text, "-2.5e3");
  EXPECT_EQ(value.Find("b")->Find("c")->kind, JsonValue::Kind::Null);
  EXPECT_EQ(value.Find("b")->TextOf("d"), "true");
  EXPECT_EQ(value.Find("nothing"), nullptr);
}

TEST(JsonTree, EscapesStandForTheirCharacters) {
  EXPECT_EQ(ReadJson(R"json("a\"\\\/\n\t\u00e4\u20ac\ud83d\ude00")json").text,
            "a\"\\/\n\t\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(ReadJson(R"json("\ud83d")json").text, "\xEF\xBF\xBD")
      << "half of a pair is no character";
}

TEST(JsonTree, WhatIsNoJsonIsRefusedWithItsPlace) {
  for (const char* text : {"", "{", "[1,", "{\"a\" 1}", "[1 2]", "\"a", "tru", "1 x", "\"\\q\"",
                           "\"\\u12g4\"", "--1", "{1:2}"})
    EXPECT_THAT(FailureOf([&] { static_cast<void>(ReadJson(text)); }), HasSubstr("no JSON"))
        << text;
  EXPECT_EQ(FailureOf([] { static_cast<void>(ReadJson("[1, x]")); }),
            "This is no JSON: a value is expected, at byte 5.");
  EXPECT_THAT(FailureOf([] { static_cast<void>(ReadJson(std::string(100'000, '['))); }),
              HasSubstr("nested too deeply"));
}

// --- PostgreSQL ----------------------------------------------------------------------------------

constexpr const char* postgresPlan =
    R"json([{"Plan": {"Node Type": "Hash Join", "Join Type": "Left",
  "Startup Cost": 1.0, "Total Cost": 100.0, "Plan Rows": 50, "Hash Cond": "(o.c = c.id)",
  "Plans": [
    {"Node Type": "Seq Scan", "Parent Relationship": "Outer", "Relation Name": "orders",
     "Alias": "o", "Total Cost": 70.0, "Plan Rows": 1000, "Filter": "(n > 5)"},
    {"Node Type": "Hash", "Total Cost": 20.0, "Plan Rows": 10, "Plans": [
      {"Node Type": "Index Scan", "Index Name": "c_key", "Relation Name": "customers",
       "Alias": "customers", "Total Cost": 18.0, "Plan Rows": 10}]}]}}])json";

TEST(PostgresPlan, StepsAreNamedByWhatTheyDoAndOnWhat) {
  const Plan plan = ReadPostgresPlan(postgresPlan);
  EXPECT_THAT(Names(plan), ElementsAre("Hash Join (Left)", ".Seq Scan on orders o", ".Hash",
                                       "..Index Scan by c_key on customers"));
  EXPECT_EQ(plan.root.details, "Hash Cond: (o.c = c.id)");
  EXPECT_EQ(plan.root.below[0].rowsExpected, 1000);
  EXPECT_EQ(plan.root.below[0].rowsReal, std::nullopt);
}

TEST(PostgresPlan, TheShareIsThatOfTheCostThatIsItsOwn) {
  const Plan plan = ReadPostgresPlan(postgresPlan);
  EXPECT_EQ(plan.measure, PlanMeasure::Cost);
  EXPECT_DOUBLE_EQ(plan.root.share, 0.1);
  EXPECT_DOUBLE_EQ(plan.root.below[0].share, 0.7);
  EXPECT_DOUBLE_EQ(plan.root.below[1].share, 0.02);
  EXPECT_EQ(Costliest(plan).name, "Seq Scan on orders o");
}

TEST(PostgresPlan, WhatHasRunTellsRowsLoopsAndTimes) {
  const Plan plan = ReadPostgresPlan(R"json([{"Plan": {"Node Type": "Nested Loop", "Total Cost": 9,
    "Plan Rows": 3, "Actual Total Time": 10.0, "Actual Rows": 7, "Actual Loops": 1, "Plans": [
      {"Node Type": "Seq Scan", "Relation Name": "a", "Alias": "a", "Plan Rows": 2,
       "Actual Total Time": 1.0, "Actual Rows": 4, "Actual Loops": 1,
       "Rows Removed by Filter": 6},
      {"Node Type": "Index Scan", "Index Name": "b_i", "Relation Name": "b", "Alias": "b",
       "Plan Rows": 1, "Actual Total Time": 2.0, "Actual Rows": 2, "Actual Loops": 4}]},
    "Planning Time": 0.2, "Execution Time": 10.5}])json");
  EXPECT_EQ(plan.measure, PlanMeasure::Time);
  EXPECT_EQ(plan.note, "Planning Time 0.2 ms, Execution Time 10.5 ms");
  EXPECT_EQ(plan.root.below[1].milliseconds, 8.0) << "of all its loops";
  EXPECT_EQ(plan.root.below[1].loops, 4);
  EXPECT_EQ(plan.root.below[0].rowsReal, 4);
  EXPECT_EQ(plan.root.below[0].details, "Rows Removed by Filter: 6");
  EXPECT_DOUBLE_EQ(plan.root.share, 0.1);
  EXPECT_TRUE(plan.root.below[1].costliest);
}

TEST(PostgresPlan, WhatIsNoPlanIsRefused) {
  for (const char* text : {"[]", "{}", "[{}]", "[{\"Plan\": {}}]", "3"})
    EXPECT_EQ(FailureOf([&] { static_cast<void>(ReadPostgresPlan(text)); }),
              "This is no plan of PostgreSQL.")
        << text;
  EXPECT_THAT(FailureOf([] { static_cast<void>(ReadPostgresPlan("Seq Scan on t")); }),
              HasSubstr("This is no JSON"));
}

// --- MariaDB -------------------------------------------------------------------------------------

TEST(MariaPlan, TheTablesOfANestedLoopAreReadForEachRowBefore) {
  const Plan plan = ReadMariaPlan(R"json({"query_block": {"select_id": 1, "nested_loop": [
    {"table": {"table_name": "orders", "access_type": "ALL", "rows": 100, "filtered": 50,
               "attached_condition": "orders.n > 5"}},
    {"table": {"table_name": "customers", "access_type": "eq_ref", "key": "PRIMARY", "rows": 3,
               "filtered": 100}}]}})json");
  EXPECT_THAT(Names(plan),
              ElementsAre("query block", ".full scan on orders", ".eq_ref on customers"));
  EXPECT_EQ(plan.measure, PlanMeasure::RowsRead);
  EXPECT_EQ(plan.root.below[0].weight, 100);
  EXPECT_EQ(plan.root.below[1].weight, 150);
  EXPECT_TRUE(plan.root.below[1].costliest);
  EXPECT_EQ(plan.root.below[0].details, "attached_condition: orders.n > 5");
  EXPECT_EQ(plan.root.below[1].details, "key: PRIMARY");
}

TEST(MariaPlan, WhatHasRunTellsRowsLoopsAndTimes) {
  const Plan plan = ReadMariaPlan(R"json({"query_optimization": {"r_total_time_ms": 0.1},
    "query_block": {"select_id": 1, "r_loops": 1, "r_total_time_ms": 5.5, "filesort":
      {"sort_key": "a.n", "r_loops": 1, "r_total_time_ms": 4.5, "temporary_table": {"nested_loop": [
        {"table": {"table_name": "a", "access_type": "ALL", "r_loops": 1, "rows": 10,
                   "r_rows": 12, "r_table_time_ms": 3, "r_other_time_ms": 1,
                   "r_engine_stats": {"pages_accessed": 1}}}]}}}})json");
  EXPECT_EQ(plan.measure, PlanMeasure::Time);
  EXPECT_EQ(plan.note, "Execution Time 5.5 ms");
  EXPECT_THAT(Names(plan),
              ElementsAre("query block", ".filesort", "..temporary table", "...full scan on a"));
  EXPECT_EQ(Costliest(plan).name, "full scan on a");
  EXPECT_EQ(Costliest(plan).milliseconds, 4);
  EXPECT_EQ(Costliest(plan).rowsReal, 12);
  EXPECT_EQ(plan.root.milliseconds, 5.5);
  EXPECT_EQ(plan.root.weight, 1);
}

/// As the server tells a sort of a temporary table: the sorting alone.
TEST(MariaPlan, WhatIsFilledBeforeASortIsNotTheQuerysOwnTime) {
  const Plan plan = ReadMariaPlan(R"json({"query_block": {"r_loops": 1, "r_total_time_ms": 8.76844,
    "filesort": {"sort_key": "c.city", "r_loops": 1, "r_total_time_ms": 0.014,
      "temporary_table": {"nested_loop": [
        {"table": {"table_name": "c", "r_table_time_ms": 5, "r_other_time_ms": 0}},
        {"table": {"table_name": "o", "r_table_time_ms": 3.5, "r_other_time_ms": 0}}]}}}})json");
  EXPECT_EQ(Costliest(plan).name, "table on c");
  EXPECT_NEAR(plan.root.below[0].weight, 0.014, 1e-9);
  EXPECT_NEAR(*plan.root.below[0].milliseconds, 8.514, 1e-9);
  EXPECT_NEAR(plan.root.weight, 0.25444, 1e-9);
  EXPECT_EQ(plan.note, "Execution Time 8.768 ms");
}

TEST(MariaPlan, WhatIsNoPlanIsRefused) {
  EXPECT_EQ(FailureOf([] { static_cast<void>(ReadMariaPlan("[1]")); }),
            "This is no plan of MariaDB.");
  EXPECT_THAT(FailureOf([] { static_cast<void>(ReadMariaPlan("-> Table scan")); }),
              HasSubstr("This is no JSON"));
}

// --- SQLite --------------------------------------------------------------------------------------

TEST(SqlitePlan, RowsHangOnTheirParents) {
  const Plan plan = ReadSqlitePlan({{2, 0, "SCAN orders"},
                                    {5, 0, "CORRELATED SCALAR SUBQUERY 1"},
                                    {8, 5, "SEARCH items USING INDEX i"},
                                    {9, 0, "USE TEMP B-TREE FOR ORDER BY"}});
  EXPECT_THAT(Names(plan),
              ElementsAre("Query", ".SCAN orders", ".CORRELATED SCALAR SUBQUERY 1",
                          "..SEARCH items USING INDEX i", ".USE TEMP B-TREE FOR ORDER BY"));
  EXPECT_EQ(plan.measure, PlanMeasure::Nothing);
}

}  // namespace
}  // namespace tessel
