#pragma once

#include <memory>
#include <string>

#include "contract/desktop/Window.h"
#include "logic/plan/reading/PlanTree.h"
#include "logic/program/Global.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// What a window with a plan shows.
struct ShownPlan {
  Plan plan;
  std::string raw;          ///< As the database told it.
  std::string connection;   ///< What the user calls it.
  bool measured = false;    ///< The statement has run.
  bool canMeasure = false;  ///< The database could run it and tell more.
};

/// What the user wants next of a plan.
enum class PlanWish { Nothing, Measure };

/// Shows the plan in a modal window, the costliest step marked, until the user closes it.
PlanWish ShowPlan(const Global& global, Window& owner, SqlTarget& sqlWindow,
                  const ShownPlan& shown);

}  // namespace tessel
