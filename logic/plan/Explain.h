#pragma once

#include <memory>
#include <optional>
#include <string>

#include "contract/data/Connection.h"
#include "contract/desktop/Window.h"
#include "logic/plan/ExplainText.h"
#include "logic/plan/dlgPlan.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/frmRecords.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// Asks a database how it would run a statement, or runs it, takes its work back and asks what came
/// of it, and shows the plan.
class Explain {
 public:
  /// All outlive it.
  Explain(const Global& global, Window& frame, dlgAsync& async, SqlTarget& sqlWindow)
      : global_(global), help_(global), frame_(frame), async_(async), sqlWindow_(sqlWindow) {}

  /// The plan of the one statement of `taggedSQL`, whose tags are filled in as `window` would. What
  /// stands in the way is said.
  void Show(frmRecords& window, const std::string& taggedSQL);

 private:
  /// Nothing when the user cancelled.
  [[nodiscard]] std::optional<ShownPlan> Read(frmRecords& window,
                                              const ExplainedStatement& statement, bool measured);
  [[nodiscard]] std::shared_ptr<Recordset> Run(Connection& connection, const std::string& command,
                                               bool takenBack);
  [[nodiscard]] bool MayMeasure(const ExplainedStatement& statement) const;
  void ShowStatement(frmRecords& window, const ExplainedStatement& statement);

  const Global& global_;
  Help help_;
  Window& frame_;
  dlgAsync& async_;
  SqlTarget& sqlWindow_;
};

}  // namespace tessel
