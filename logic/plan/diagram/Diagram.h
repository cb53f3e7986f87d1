#pragma once

#include <optional>
#include <string>

#include "contract/desktop/Window.h"
#include "logic/plan/diagram/DiagramText.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"

namespace tessel {

/// Draws the tables of a database with their foreign keys: another program, dot, lays them out, and
/// a modal window shows them.
class Diagram {
 public:
  /// All outlive it.
  Diagram(const Global& global, Window& frame, dlgAsync& async)
      : global_(global), help_(global), frame_(frame), async_(async) {}

  /// Shows the tables of `structure`; null: nothing is known of them. What stands in the way is
  /// said. `caption` is what the user calls the database.
  void Show(const Structure* structure, const std::string& caption);

 private:
  /// Nothing when the user cancelled, or it could not be done, which has been said.
  [[nodiscard]] std::optional<std::string> LaidOut(const std::string& text);
  void ShowDrawing(const std::string& svg, const DiagramText& text, const std::string& caption);

  const Global& global_;
  Help help_;
  Window& frame_;
  dlgAsync& async_;
};

}  // namespace tessel
