#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/CombinedRows.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TreeView.h"
#include "logic/program/Global.h"

namespace tessel {

/// What the user wants to be compared: one result with another, or with each of the others.
struct CompareChoice {
  std::size_t a = 0;              ///< Of the results to choose from.
  std::optional<std::size_t> b;   ///< Nothing: with each of the others.
  std::vector<std::string> keys;  ///< Names of the columns; empty: whole rows are counted.
  bool booleansAreNumbers = false;
};

/// The dialog that asks which results are to be compared and by which columns. The key that is
/// known of the first result is proposed.
class dlgCompare {
 public:
  explicit dlgCompare(const Global& global);

  /// `results` are two or more, in the order of the list. Nothing when cancelled.
  [[nodiscard]] std::optional<CompareChoice> Go(Window& owner, std::vector<NamedRows> results);

 private:
  void ListOthers();
  void ListKeys();
  [[nodiscard]] std::vector<std::size_t> Others() const;
  [[nodiscard]] CompareChoice Choice() const;

  std::unique_ptr<Window> window_;
  ComboBox& cboA_;
  ComboBox& cboB_;
  TreeView& trvKeys_;
  CheckBox& chkBooleans_;
  std::vector<NamedRows> results_;
  bool confirmed_ = false;
};

}  // namespace tessel
