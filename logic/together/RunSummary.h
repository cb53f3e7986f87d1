#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "logic/results/runs/RunReport.h"

namespace tessel {

/// One connection's part of a run.
struct RunLine {
  int windowID = -1;    ///< Of its records window, which may be gone meanwhile.
  std::string caption;  ///< Of that window, when it ran.
  RunReport report;
};

/// The lines as rows to be shown, in their order: connection, state, records, records affected,
/// seconds to the first row and in all, error.
[[nodiscard]] std::shared_ptr<Recordset> SummaryRows(DataAccess& data,
                                                     const std::vector<RunLine>& lines);

/// "3 connections: 2 done, 1 failed".
[[nodiscard]] std::string SummaryStatus(const std::vector<RunLine>& lines);

}  // namespace tessel
