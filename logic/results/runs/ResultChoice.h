#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Operation.h"
#include "contract/desktop/Window.h"
#include "contract/desktop/controls/ListControls.h"

namespace tessel {

/// The list by which the user chooses among the results of one command. It shows only while there
/// are several with columns.
class ResultChoice {
 public:
  using Rows = std::shared_ptr<Recordset>;

  /// `show` shows the rows that were chosen; false: those on show stay. The window outlives it.
  ResultChoice(Window& window, std::function<bool(const Rows&)> show);

  /// Offers the rows of a command that has ended; the first ones are on show.
  void Offer(const std::vector<CommandResult>& results);
  /// No rows are on show any more.
  void Clear() { Offer({}); }

  /// Goes so many results on; false when there are none to go to.
  bool Step(int results);
  /// Shows these rows; false when they are not among those offered, or those on show stay.
  bool Choose(const Rows& rows);

  /// "Result 2 of 3."; empty while there is nothing to choose.
  [[nodiscard]] std::string Text() const;

 private:
  void cboResult_Click();

  ComboBox& cboResult_;
  std::function<bool(const Rows&)> show_;
  std::vector<Rows> rows_;
  int shown_ = 0;
  bool choosing_ = false;
};

}  // namespace tessel
