#pragma once

#include <utility>

#include "data/changes/RowChange.h"
#include "data/providers/Provider.h"
#include "data/providers/WorkContext.h"
#include "data/tasks/Task.h"

namespace tessel {

/// Writes one change in a transaction of its own, or behind a savepoint in the user's. Exactly one
/// row is changed, or none and Error is raised: also when another catalog is in use than when the
/// row was read. Returns what the row holds then, as far as it is known; nothing for a row that was
/// deleted. Worker thread.
[[nodiscard]] FieldValues WriteRow(ProviderSession& session, const RowChange& change,
                                   WorkContext& context);

/// Writes one change.
class WriteTask : public Task {
 public:
  explicit WriteTask(RowChange change) : change_(std::move(change)) {}

  [[nodiscard]] bool Step(ProviderSession& session) override;

  [[nodiscard]] RowChange::Kind Kind() const { return change_.kind; }
  /// What the row holds; to be asked for after an end that was no failure.
  [[nodiscard]] FieldValues TakeWritten() { return std::move(written_); }

 private:
  RowChange change_;
  FieldValues written_;
};

}  // namespace tessel
