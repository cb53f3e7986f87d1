#include "logic/together/RunSummary.h"

#include <algorithm>
#include <utility>

#include "logic/results/runs/ListRows.h"

namespace tessel {

namespace {

constexpr double millisecondsOfSecond = 1000;

std::vector<FieldInfo> Columns() {
  return {ListColumn("Connection", DataType::VarWChar),
          ListColumn("State", DataType::VarWChar),
          ListColumn("Records", DataType::BigInt),
          ListColumn("Records Affected", DataType::BigInt),
          ListColumn("First Row (s)", DataType::Double),
          ListColumn("Seconds", DataType::Double),
          ListColumn("Error", DataType::VarWChar)};
}

std::string_view StateText(RunState state) {
  switch (state) {
    case RunState::Done: return "done";
    case RunState::Failed: return "failed";
    case RunState::Cancelled: return "cancelled";
    case RunState::Skipped: return "skipped";
  }
  return {};
}

Value Seconds(std::int64_t milliseconds) {
  if (milliseconds < 0) return {};
  return static_cast<double>(milliseconds) / millisecondsOfSecond;
}

std::vector<Value> RowOf(const RunLine& line) {
  const RunReport& report = line.report;
  return {line.caption,
          std::string(StateText(report.state)),
          CountOrNull(report.rows),
          CountOrNull(report.recordsAffected),
          Seconds(report.firstRow),
          Seconds(report.elapsed),
          report.error};
}

}  // namespace

std::shared_ptr<Recordset> SummaryRows(DataAccess& data, const std::vector<RunLine>& lines) {
  std::vector<std::vector<Value>> rows;
  rows.reserve(lines.size());
  for (const RunLine& line : lines) rows.push_back(RowOf(line));
  return data.MakeRecordset(Columns(), std::move(rows));
}

std::string SummaryStatus(const std::vector<RunLine>& lines) {
  std::vector<StateCount> states;
  for (const RunState state :
       {RunState::Done, RunState::Failed, RunState::Cancelled, RunState::Skipped}) {
    const auto isIn = [state](const RunLine& line) { return line.report.state == state; };
    states.push_back({StateText(state), std::ranges::count_if(lines, isIn)});
  }
  return WithStates(std::to_string(lines.size()) + " connections", states);
}

}  // namespace tessel
