#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessel {

/// One step of a plan, in words that fit every database. What a database does not tell is nothing.
struct PlanStep {
  std::string name;     ///< What is done, and on what: "Seq Scan on orders".
  std::string details;  ///< By which condition or key; one line.
  // For each time the step is taken:
  std::optional<double> rowsExpected;
  std::optional<double> rowsReal;
  std::optional<double> loops;         ///< How often it was taken.
  std::optional<double> milliseconds;  ///< Of all its loops, with the steps below.
  double weight = 0;  ///< What it takes by itself, in the measure of the plan; not negative.
  double share = 0;   ///< Of the weight of the whole plan, 0 to 1.
  bool costliest = false;
  std::vector<PlanStep> below;
};

/// What the weights of a plan measure.
enum class PlanMeasure { Nothing, Time, Cost, RowsRead };

/// How a database would run a statement, or has run it.
struct Plan {
  PlanStep root;
  PlanMeasure measure = PlanMeasure::Nothing;
  std::string note;  ///< What it tells of the whole, such as the time of planning; may be empty.
};

/// The plans of the databases, as they tell them. Those of text raise Error(application) for what
/// is no JSON, or no plan. Shares and the costliest step are worked out.
[[nodiscard]] Plan ReadPostgresPlan(std::string_view json);
[[nodiscard]] Plan ReadMariaPlan(std::string_view json);

/// A row of SQLite's: its number, that of the step it belongs to (0: none), and its words.
struct SqlitePlanRow {
  int number = 0;
  int parent = 0;
  std::string words;
};
[[nodiscard]] Plan ReadSqlitePlan(const std::vector<SqlitePlanRow>& rows);

/// Gives each step its share of the weight, and marks the one that has most of it, if any has.
void WorkOutShares(Plan& plan);

/// All steps in the order in which they are read, each with how deep it stands, from 0.
[[nodiscard]] std::vector<std::pair<const PlanStep*, int>> StepsOf(const Plan& plan);

}  // namespace tessel
