#include "logic/plan/reading/PlanTree.h"

namespace tessel {

namespace {

double WeightOf(const PlanStep& step) {
  double weight = step.weight;
  for (const PlanStep& below : step.below) weight += WeightOf(below);
  return weight;
}

void GiveShares(PlanStep& step, double whole, PlanStep*& heaviest) {
  step.share = step.weight / whole;
  if (heaviest == nullptr || step.weight > heaviest->weight) heaviest = &step;
  for (PlanStep& below : step.below) GiveShares(below, whole, heaviest);
}

void Append(const PlanStep& step, int depth, std::vector<std::pair<const PlanStep*, int>>& steps) {
  steps.emplace_back(&step, depth);
  for (const PlanStep& below : step.below) Append(below, depth + 1, steps);
}

/// Adds the rows that belong to `parent` below a step.
void AddBelow(PlanStep& step, int parent, const std::vector<SqlitePlanRow>& rows,
              std::size_t from) {
  for (std::size_t i = from; i < rows.size(); ++i) {
    if (rows[i].parent != parent) continue;
    PlanStep below;
    below.name = rows[i].words;
    AddBelow(below, rows[i].number, rows, i + 1);
    step.below.push_back(std::move(below));
  }
}

}  // namespace

void WorkOutShares(Plan& plan) {
  const double whole = WeightOf(plan.root);
  if (!(whole > 0)) {
    plan.measure = PlanMeasure::Nothing;
    return;
  }
  PlanStep* heaviest = nullptr;
  GiveShares(plan.root, whole, heaviest);
  heaviest->costliest = true;
}

std::vector<std::pair<const PlanStep*, int>> StepsOf(const Plan& plan) {
  std::vector<std::pair<const PlanStep*, int>> steps;
  Append(plan.root, 0, steps);
  return steps;
}

/// A row stands behind the one that it belongs to, so that each is looked for behind its parent.
Plan ReadSqlitePlan(const std::vector<SqlitePlanRow>& rows) {
  Plan plan;
  plan.root.name = "Query";
  AddBelow(plan.root, 0, rows, 0);
  plan.note = "SQLite tells neither rows nor times.";
  return plan;
}

}  // namespace tessel
