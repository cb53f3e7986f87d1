#pragma once

#include <cstdint>
#include <memory>

#include "contract/data/Connection.h"
#include "data/changes/RowChange.h"
#include "data/changes/RowOrigin.h"
#include "data/tasks/Task.h"

namespace tessel {

class ClientRecordset;
class ResultRows;

/// A row that is being changed, among those it belongs to.
struct ChangedRow {
  std::shared_ptr<ResultRows> rows;
  std::int64_t number = 0;
};

/// What recordsets and operations ask of the connection that they belong to. UI thread.
class CursorHost {
 public:
  [[nodiscard]] virtual std::shared_ptr<Connection> AsConnection() = 0;
  /// Where rows that were read now would come from.
  [[nodiscard]] virtual RowOrigin Origin() const = 0;
  /// Asks `task` to stop, if it is the one that runs.
  virtual void CancelTask(const std::shared_ptr<Task>& task) = 0;
  /// Waits until `task` has ended, without the event queue.
  virtual void WaitFor(Task& task) = 0;
  /// Writes `change` of `row` for `recordset`. Raises what Recordset::StartUpdate says.
  [[nodiscard]] virtual std::shared_ptr<Operation>
  StartWrite(const std::shared_ptr<ClientRecordset>& recordset, ChangedRow row,
             RowChange change) = 0;

 protected:
  ~CursorHost() = default;
};

}  // namespace tessel
