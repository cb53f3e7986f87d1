#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Operation.h"

namespace tessel::test {

/// Writes down what operations tell: "fetching" once there is a result with columns, and their end
/// as "done" or "failed 3712". Progress is counted, not listed.
class EventLog {
 public:
  /// Once for each operation. One that has ended already is not written down.
  void Watch(Operation& operation);
  void Watch(QueryOperation& operation);

  [[nodiscard]] const std::vector<std::string>& Lines() const { return seen_->lines; }
  [[nodiscard]] int ProgressCount() const { return seen_->progress; }
  [[nodiscard]] std::int64_t LastProgress() const { return seen_->lastProgress; }
  /// How many operations have told their end.
  [[nodiscard]] int Ends() const { return seen_->ends; }
  [[nodiscard]] const std::optional<ErrorInfo>& LastError() const { return seen_->lastError; }
  [[nodiscard]] std::int64_t RecordsAffected() const { return seen_->recordsAffected; }

 private:
  struct Seen {
    std::vector<std::string> lines;
    int progress = 0;
    std::int64_t lastProgress = 0;
    int ends = 0;
    std::optional<ErrorInfo> lastError;
    std::int64_t recordsAffected = -2;

    void NoteRows(const QueryOperation& operation, bool& noted);
    void NoteEnd(const Operation& operation);
  };

  /// Shared with the handlers, which may be called when the log is gone.
  std::shared_ptr<Seen> seen_ = std::make_shared<Seen>();
};

}  // namespace tessel::test
