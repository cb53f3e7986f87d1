// The plan of PostgreSQL, as EXPLAIN (FORMAT JSON) tells it, with or without ANALYZE.

#include <algorithm>

#include "logic/plan/reading/JsonTree.h"
#include "logic/plan/reading/PlanTree.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

/// Members that say by what a step works, in the order in which they are told.
constexpr const char* conditions[] = {"Index Cond",  "Recheck Cond", "Hash Cond",  "Merge Cond",
                                      "Join Filter", "Filter",       "TID Cond",   "Sort Key",
                                      "Group Key",   "Cache Key",    "Sort Method"};
/// Members of that are only told when they are more than nothing.
constexpr const char* counts[] = {"Rows Removed by Filter", "Heap Fetches", "Temp Written Blocks",
                                  "Shared Read Blocks"};

std::string OneText(const JsonValue& value) {
  if (value.kind != JsonValue::Kind::Array) return value.text;
  std::string list;
  for (const JsonValue& item : value.items) list += (list.empty() ? "" : ", ") + item.text;
  return list;
}

void AddDetail(std::string& details, const std::string& name, const std::string& text) {
  if (!text.empty()) details += (details.empty() ? "" : "; ") + name + ": " + text;
}

std::string DetailsOf(const JsonValue& node) {
  std::string details;
  for (const char* name : conditions)
    if (const JsonValue* member = node.Find(name)) AddDetail(details, name, OneText(*member));
  for (const char* name : counts)
    if (node.NumberOf(name).value_or(0) > 0) AddDetail(details, name, node.TextOf(name));
  return details;
}

std::string NameOf(const JsonValue& node) {
  std::string name = node.TextOf("Node Type");
  if (const std::string join = node.TextOf("Join Type"); !join.empty() && join != "Inner")
    name += " (" + join + ")";
  if (const std::string index = node.TextOf("Index Name"); !index.empty()) name += " by " + index;
  const std::string table = node.TextOf("Relation Name");
  const std::string alias = node.TextOf("Alias");
  if (!table.empty()) name += " on " + table + (alias.empty() || alias == table ? "" : " " + alias);
  if (const std::string sub = node.TextOf("Subplan Name"); !sub.empty()) name = sub + ": " + name;
  return name;
}

/// All of a step with what is below it, in the measure of the plan.
double Whole(const JsonValue& node, bool timed) {
  if (!timed) return node.NumberOf("Total Cost").value_or(0);
  return node.NumberOf("Actual Total Time").value_or(0) * node.NumberOf("Actual Loops").value_or(1);
}

PlanStep StepOf(const JsonValue& node, bool timed) {
  if (node.TextOf("Node Type").empty()) RaiseAppError("This is no plan of PostgreSQL.");
  PlanStep step;
  step.name = NameOf(node);
  step.details = DetailsOf(node);
  step.rowsExpected = node.NumberOf("Plan Rows");
  step.rowsReal = node.NumberOf("Actual Rows");
  step.loops = node.NumberOf("Actual Loops");
  if (timed) step.milliseconds = Whole(node, true);
  double below = 0;
  if (const JsonValue* plans = node.Find("Plans"))
    for (const JsonValue& child : plans->items) {
      step.below.push_back(StepOf(child, timed));
      below += Whole(child, timed);
    }
  step.weight = std::max(0.0, Whole(node, timed) - below);
  return step;
}

std::string TimeNote(const JsonValue& whole) {
  std::string note;
  for (const char* name : {"Planning Time", "Execution Time"})
    if (const std::string time = whole.TextOf(name); !time.empty())
      note += (note.empty() ? "" : ", ") + std::string(name) + " " + time + " ms";
  return note;
}

}  // namespace

Plan ReadPostgresPlan(std::string_view json) {
  const JsonValue document = ReadJson(json);
  const JsonValue* root = document.items.empty() ? nullptr : document.items.front().Find("Plan");
  if (root == nullptr) RaiseAppError("This is no plan of PostgreSQL.");
  const bool timed = root->NumberOf("Actual Total Time").has_value();
  Plan plan;
  plan.root = StepOf(*root, timed);
  plan.measure = timed ? PlanMeasure::Time : PlanMeasure::Cost;
  plan.note = TimeNote(document.items.front());
  WorkOutShares(plan);
  return plan;
}

}  // namespace tessel
