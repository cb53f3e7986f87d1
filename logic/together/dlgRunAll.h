#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Operation.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListView.h"
#include "logic/program/Global.h"
#include "logic/results/runs/RunReport.h"

namespace tessel {

class dlgAsync;
class frmRecords;

/// Runs one SQL in several records windows at once. While that takes long its window stands above
/// the frame, with a line for each connection: what it does, its records, its time, and a Cancel.
/// Each records window ends as if the SQL had been run in it alone.
///
/// Providers that cannot work while others do have their turn behind the others, one after another.
class dlgRunAll {
 public:
  /// `async` and `frame` outlive this object.
  dlgRunAll(const Global& global, dlgAsync& async, Window& frame);
  ~dlgRunAll();
  dlgRunAll(const dlgRunAll&) = delete;
  dlgRunAll& operator=(const dlgRunAll&) = delete;

  /// The tags of all windows are filled in, and the SQL is shown where `preview` asks for that,
  /// before anything runs; false: one was stopped there, and nothing ran. The windows must not be
  /// destroyed before it returns.
  bool Run(const std::vector<frmRecords*>& windows, const std::string& taggedSQL, bool preview);

 private:
  /// One connection's part of it.
  struct Line {
    frmRecords* window;
    PreparedQuery query;
    std::shared_ptr<QueryOperation> operation = nullptr;  ///< Null: it is not started, or failed.
    std::int64_t elapsed = 0;                             ///< When it ended, in milliseconds.
    bool cancelled = false;                               ///< The user asked it to stop.
  };

  [[nodiscard]] bool Prepare(const std::vector<frmRecords*>& windows, const std::string& taggedSQL,
                             bool preview);
  void WireWindow();
  void Start(Line& line);
  void WaitForAll();
  void LineEnded(Line& line);
  void TellOfAll() const;
  void ConcludeAll();
  void RunTheOthers();
  [[nodiscard]] bool AllEnded() const;

  void Cancel(Line& line);
  void CancelSelected();
  void CancelRest();
  void lsvRuns_KeyDown(KeyEvent& event);

  void ShowLines();
  void ShowProgress();
  [[nodiscard]] static std::vector<std::string> CellsOf(const Line& line);

  const Global& global_;
  dlgAsync& async_;
  Window& frame_;
  std::unique_ptr<Window> window_;
  ListView& list_;
  std::vector<Line> lines_;  ///< In the order of the list.
  std::int64_t start_ = 0;   ///< By the clock.
  bool restCancelled_ = false;
};

}  // namespace tessel
