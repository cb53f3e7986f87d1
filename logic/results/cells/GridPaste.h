#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/DataGrid.h"
#include "logic/results/cells/PastedBlock.h"

namespace tessel {

/// What pasting asks of the window, all as for a change that is typed.
struct PasteHost {
  /// Does something to the records; false when a failure came up and was shown.
  std::function<bool(const std::function<void()>& action)> tryTo;
  /// Saves the change that waits; false when it still does.
  std::function<bool()> saveChange;
  std::function<void()> changed;                          ///< A change waits in the current record.
  std::function<void(const std::string& reason)> refuse;  ///< Nothing was pasted.
  std::function<void(const std::string& text)> tell;      ///< What became of several rows.
  /// Calls `step` with 0, 1, ... below `count` until it returns false or the user cancels, and
  /// shows how far it is. Returns how many steps were done.
  std::function<std::int64_t(std::int64_t count, const std::function<bool(std::int64_t)>& step)>
      forEach;
};

/// Fills the cells of a grid from a block on the clipboard, from the current cell on or the first
/// selected one. All values are looked at first: where one is none of its column, or its cell
/// cannot be changed, nothing is pasted, and the reason is shown at the cell. A block of one row
/// then waits as a change does that was typed; of several each row is saved, up to the first that
/// the database refuses, whose change stays, or until the user cancels, and it is told how many
/// were saved. Rows behind the last one become new ones where these may be added.
class GridPaste {
 public:
  /// All outlive it.
  GridPaste(DataGrid& grid, Clipboard& clipboard, PasteHost host);

  /// The user pastes; false when the clipboard holds no block, and its text is to be typed.
  bool Paste();

 private:
  struct Place {
    std::int64_t row = 0;
    int column = 0;
  };
  struct Refusal {
    Place at;
    std::string reason;
  };

  [[nodiscard]] TextBlock Block() const;
  [[nodiscard]] std::optional<Place> Start() const;
  [[nodiscard]] bool IsTyped(const TextBlock& block) const;
  [[nodiscard]] TextBlock FillingSelection(TextBlock block) const;
  [[nodiscard]] std::optional<Refusal> WhyNot(const TextBlock& block, const Place& start) const;
  [[nodiscard]] std::optional<Refusal> WhyNotRow(const std::vector<std::string>& row,
                                                 const Place& start) const;
  void Fill(const TextBlock& block, const Place& start);
  [[nodiscard]] std::int64_t SaveRows(const TextBlock& block, const Place& start);
  [[nodiscard]] bool FillRow(const std::vector<std::string>& row, const Place& start);
  void Show(const Refusal& refusal);

  DataGrid& grid_;
  Clipboard& clipboard_;
  PasteHost host_;
};

}  // namespace tessel
