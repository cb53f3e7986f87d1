#include "tests/data/support/EventLog.h"

namespace tessel::test {

void EventLog::Seen::Add(const std::string& name, const ErrorInfo* error, EventStatus status,
                         const std::string& more) {
  const bool failed = status == EventStatus::ErrorsOccurred;
  lastError = error == nullptr ? std::nullopt : std::optional(*error);
  std::string line = name + (failed ? " failed" : " ok");
  if (failed != (error != nullptr)) line += " (status and error disagree)";
  if (error != nullptr) line += " " + std::to_string(error->number);
  lines.push_back(line + more);
}

void EventLog::Watch(Connection& connection) {
  connection.ConnectComplete = [seen = seen_](const ErrorInfo* error, EventStatus status) {
    ++seen->ends;
    seen->Add("ConnectComplete", error, status);
  };
  connection.ExecuteComplete = [seen = seen_](std::int64_t affected, const ErrorInfo* error,
                                              EventStatus status, Recordset* recordset) {
    seen->recordsAffected = affected;
    const int state = recordset->State();
    if ((state & objectState::open) == 0) ++seen->ends;
    seen->Add("ExecuteComplete", error, status, " state=" + std::to_string(state));
  };
}

void EventLog::Watch(Recordset& recordset) {
  recordset.FetchProgress = [seen = seen_](std::int64_t rows, std::int64_t /*expected*/,
                                           EventStatus) {
    ++seen->progress;
    seen->lastProgress = rows;
  };
  recordset.FetchComplete = [seen = seen_](const ErrorInfo* error, EventStatus status) {
    ++seen->ends;
    seen->Add("FetchComplete", error, status);
  };
}

}  // namespace tessel::test
