#include "tests/data/support/EventLog.h"

#include <utility>

namespace tessel::test {

void EventLog::Seen::NoteRows(const QueryOperation& operation, bool& noted) {
  if (operation.FirstRows() && !std::exchange(noted, true)) lines.emplace_back("fetching");
}

void EventLog::Seen::NoteEnd(const Operation& operation) {
  ++ends;
  lastError = operation.Failure();
  lines.push_back(lastError ? "failed " + std::to_string(lastError->number) : "done");
}

void EventLog::Watch(Operation& operation) {
  operation.Ended = [seen = seen_, &operation] { seen->NoteEnd(operation); };
}

void EventLog::Watch(QueryOperation& operation) {
  const auto noted = std::make_shared<bool>(false);
  operation.Progress = [seen = seen_, noted, &operation] {
    seen->NoteRows(operation, *noted);
    seen->recordsAffected = operation.RecordsAffected();
    if (operation.Rows() <= seen->lastProgress) return;
    ++seen->progress;
    seen->lastProgress = operation.Rows();
  };
  operation.Ended = [seen = seen_, noted, &operation] {
    seen->NoteRows(operation, *noted);
    seen->recordsAffected = operation.RecordsAffected();
    seen->NoteEnd(operation);
  };
}

}  // namespace tessel::test
