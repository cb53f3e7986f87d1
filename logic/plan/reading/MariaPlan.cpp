// The plan of MariaDB, as EXPLAIN FORMAT=JSON and ANALYZE FORMAT=JSON tell it. Its steps are
// objects whose names say what is done; tables tell rows and, when it has run, times of their own.

#include <algorithm>

#include "logic/plan/reading/JsonTree.h"
#include "logic/plan/reading/PlanTree.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr const char* conditions[] = {"key",         "attached_condition", "index_condition",
                                      "sort_key",    "having_condition",   "message",
                                      "buffer_type", "join_type"};

/// Members that count what came of a step begin so; they are none themselves.
constexpr std::string_view measured = "r_";

std::string DetailsOf(const JsonValue& node) {
  std::string details;
  for (const char* name : conditions)
    if (const std::string text = node.TextOf(name); !text.empty())
      details += (details.empty() ? "" : "; ") + std::string(name) + ": " + text;
  return details;
}

/// A number with three decimals at most.
std::string Shortened(const std::string& number) {
  constexpr std::size_t decimals = 3;
  const std::size_t point = number.find('.');
  return point == std::string::npos ? number : number.substr(0, point + 1 + decimals);
}

std::string WithBlanks(std::string name) {
  std::ranges::replace(name, '_', ' ');
  return name;
}

/// "ALL" reads the whole table.
std::string TableName(const JsonValue& table) {
  const std::string access = table.TextOf("access_type");
  const std::string how = access == "ALL" ? "full scan" : access;
  return (how.empty() ? "table" : how) + " on " + table.TextOf("table_name");
}

/// Reads the steps of a plan, in the measure that it tells.
class Reader {
 public:
  explicit Reader(bool timed) : timed_(timed) {}

  PlanStep Step(const std::string& name, const JsonValue& node) {
    PlanStep step;
    step.name = name == "table" ? TableName(node) : WithBlanks(name);
    step.details = DetailsOf(node);
    step.rowsExpected = node.NumberOf("rows");
    step.rowsReal = node.NumberOf("r_rows");
    step.loops = node.NumberOf("r_loops");
    if (!timed_) step.weight = RowsRead(name, node);
    AddBelow(step, node);
    if (timed_) TakeTime(step, node, name == "filesort");
    return step;
  }

 private:
  /// The steps that it is made of are its members that are objects, or lists of such.
  void AddBelow(PlanStep& step, const JsonValue& node) {
    for (const auto& [name, member] : node.members) {
      if (name.starts_with(measured)) continue;
      if (member.kind == JsonValue::Kind::Object) step.below.push_back(Step(name, member));
      if (member.kind != JsonValue::Kind::Array) continue;
      before_ = 1;
      for (const JsonValue& item : member.items)
        if (item.kind == JsonValue::Kind::Object) AddBelow(step, item);
    }
  }

  /// A table tells what it takes itself, any other step what it takes with those below it. But the
  /// sorting of a temporary table tells nothing of the filling.
  static void TakeTime(PlanStep& step, const JsonValue& node, bool sorts) {
    double below = 0;
    for (const PlanStep& part : step.below) below += part.milliseconds.value_or(0);
    const double own =
        node.NumberOf("r_table_time_ms").value_or(0) + node.NumberOf("r_other_time_ms").value_or(0);
    const double told = node.NumberOf("r_total_time_ms").value_or(own + below);
    step.milliseconds = sorts && told < below ? told + below : told;
    step.weight = std::max(0.0, *step.milliseconds - below);
  }

  /// A table of a nested loop is read once for each row that comes of those before it.
  double RowsRead(const std::string& name, const JsonValue& node) {
    if (name != "table") return 0;
    const double rows = node.NumberOf("rows").value_or(0);
    const double read = before_ * rows;
    before_ = std::max(1.0, read * node.NumberOf("filtered").value_or(100) / 100);
    return read;
  }

  bool timed_;
  double before_ = 1;  ///< Rows that come of the tables before, in a nested loop.
};

}  // namespace

Plan ReadMariaPlan(std::string_view json) {
  const JsonValue document = ReadJson(json);
  const auto isStep = [](const auto& member) {
    return member.second.kind == JsonValue::Kind::Object;
  };
  const auto root = std::ranges::find_if(document.members, [&](const auto& member) {
    return isStep(member) && member.first != "query_optimization";
  });
  if (root == document.members.end()) RaiseAppError("This is no plan of MariaDB.");
  const std::optional<double> time = root->second.NumberOf("r_total_time_ms");
  Plan plan;
  plan.root = Reader(time.has_value()).Step(root->first, root->second);
  plan.measure = time ? PlanMeasure::Time : PlanMeasure::RowsRead;
  if (time)
    plan.note = "Execution Time " + Shortened(root->second.TextOf("r_total_time_ms")) + " ms";
  WorkOutShares(plan);
  return plan;
}

}  // namespace tessel
