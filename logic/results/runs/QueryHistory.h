#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/Button.h"
#include "logic/results/runs/HistoryRing.h"

namespace tessel {

/// What the history asks of its records window.
class QueryRunner {
 public:
  /// Runs the SQL of the entry at `position` as it was executed.
  virtual void RunAgain(const HistoryEntry& entry, bool confirmFirst, int position) = 0;
  /// Runs the entry at `position` with its tags filled anew.
  virtual void RunTagged(const HistoryEntry& entry, bool confirmFirst, int position) = 0;
  virtual void ShowSQL(const std::string& sql) = 0;
  virtual void FocusRecords() = 0;

 protected:
  ~QueryRunner() = default;
};

/// The query history of a records window: its ring, its buttons and its menu.
class QueryHistory {
 public:
  QueryHistory(const Desktop& desktop, Window& window, QueryRunner& runner);

  /// Records a query that gave rows: a new one, or a re-run of the entry at `position` (newQuery
  /// otherwise).
  void Record(const HistoryEntry& entry, int position);

  /// Runs the entry that many steps from the current one; shown for review first while Shift is
  /// held.
  void GoHistory(int offset, bool resubstituteTags);

  /// Takes a key of the history; false when it is none or its button cannot be pressed now.
  bool HandleKey(int keyCode, int shift);

  [[nodiscard]] const HistoryRing& Ring() const { return ring_; }

 private:
  void UpdateHistoryButtons();
  void UpdateRequeryTags();
  void UpdateForwardTags();
  void SetTip(Button& button, const char* direction, int position);
  void ShowHistoryMenu(bool forward);
  void FillMenuItem(std::size_t item, int position, int step);
  bool HandleRunningKey(int keyCode, int shift);
  bool ShowMenuOf(Button& button, bool forward);

  const Desktop& desktop_;
  Window& window_;
  QueryRunner& runner_;
  Button& cmdRequery_;
  Button& cmdRequeryTags_;
  Button& cmdHistoryBack_;
  Button& cmdHistoryForward_;
  Button& cmdHistoryForwardTags_;
  Button& cmdProperties_;
  std::vector<MenuItem*> mnuHistorical_;
  HistoryRing ring_;
};

}  // namespace tessel
