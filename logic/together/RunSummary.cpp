#include "logic/together/RunSummary.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr double millisecondsOfSecond = 1000;

FieldInfo Column(std::string name, DataType type) {
  FieldInfo field;
  field.name = std::move(name);
  field.type = type;
  return field;
}

std::vector<FieldInfo> Columns() {
  return {Column("Connection", DataType::VarWChar),  Column("State", DataType::VarWChar),
          Column("Records", DataType::BigInt),       Column("Records Affected", DataType::BigInt),
          Column("First Row (s)", DataType::Double), Column("Seconds", DataType::Double),
          Column("Error", DataType::VarWChar)};
}

std::string StateText(RunState state) {
  switch (state) {
    case RunState::Done: return "done";
    case RunState::Failed: return "failed";
    case RunState::Cancelled: return "cancelled";
    case RunState::Skipped: return "skipped";
  }
  return {};
}

Value Count(std::int64_t number) { return number < 0 ? Value() : Value(number); }

Value Seconds(std::int64_t milliseconds) {
  if (milliseconds < 0) return {};
  return static_cast<double>(milliseconds) / millisecondsOfSecond;
}

std::vector<Value> RowOf(const RunLine& line) {
  const RunReport& report = line.report;
  return {line.caption,
          StateText(report.state),
          Count(report.rows),
          Count(report.recordsAffected),
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
  std::string text = std::to_string(lines.size()) + " connections";
  std::string separator = ": ";
  for (const RunState state :
       {RunState::Done, RunState::Failed, RunState::Cancelled, RunState::Skipped}) {
    const auto count = std::ranges::count_if(
        lines, [state](const RunLine& line) { return line.report.state == state; });
    if (count == 0) continue;
    text += std::exchange(separator, ", ") + std::to_string(count) + " " + StateText(state);
  }
  return text;
}

}  // namespace tessel
