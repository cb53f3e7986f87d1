#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/desktop/Window.h"
#include "contract/desktop/controls/ChartBox.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/system/WorkLine.h"
#include "logic/plan/chart/ChartRows.h"
#include "logic/program/Global.h"

namespace tessel {

/// A modal window with a chart of rows. The kind and the columns are chosen in it; the rows are
/// read in slices, between which the window works.
class dlgChart {
 public:
  explicit dlgChart(const Global& global);

  /// Shows the rows, which are open, in their present order until the user closes the window.
  void Go(Window& owner, const std::string& caption, std::shared_ptr<Recordset> rows);

 private:
  void ListColumns();
  [[nodiscard]] ChartKind Kind() const { return static_cast<ChartKind>(cboKind_.ListIndex()); }
  [[nodiscard]] ChartChoice Choice() const;
  void BeginReading();
  void ReadSlice();
  void EndReading();
  void ShowWhole();
  void ShowPart(const Range& view);
  [[nodiscard]] std::string StatusText() const;

  const Global& global_;
  std::unique_ptr<Window> window_;
  ComboBox& cboKind_;
  ComboBox& cboX_;
  ComboBox& cboY_;
  ChartBox& chtChart_;
  Label& lblChart_;
  Timer& tmrRead_;
  std::shared_ptr<Recordset> rows_;
  std::vector<std::size_t> xColumns_;  ///< As the boxes list them.
  std::vector<std::size_t> yColumns_;
  std::unique_ptr<ChartRows> chart_;
  std::unique_ptr<WorkLine> line_;  ///< Ends the chart while the window stays alive.
  std::int64_t read_ = 0;
  std::int64_t count_ = 0;  ///< Rows at the start; those that come later are not drawn.
  bool listing_ = false;
  bool isEnded_ = false;  ///< The chart can be drawn.
};

}  // namespace tessel
