#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contract/data/Operation.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/cursor/rows/CursorHost.h"
#include "data/tasks/Task.h"

namespace tessel {

/// What the rows of a command are opened with.
struct RowSettings {
  std::string source;
  LockType lock = LockType::ReadOnly;
};

/// An operation of this data layer: a task of the worker, and what the UI thread has heard of it.
/// The connection hands it the news of its task.
class DataOperation final : public QueryOperation {
 public:
  DataOperation(std::weak_ptr<CursorHost> host, std::shared_ptr<Task> task, OperationPhase phase,
                RowSettings settings = {})
      : QueryOperation(phase),
        host_(std::move(host)),
        task_(std::move(task)),
        settings_(std::move(settings)) {}
  ~DataOperation() override;

  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override;
  void Cancel() override;
  void Wait() override;

  // --- for the connection ----------------------------------------------------------------------
  /// Brings the news of the task to this operation; called by Wait.
  void SetDelivery(std::function<void()> deliver) { deliver_ = std::move(deliver); }
  /// Takes in what is new: results and rows, the phase, the end. `origin` is where rows came from.
  void Take(TaskNews& news, const RowOrigin& origin);
  /// Raises the event that `news` are worth, if any.
  void Announce(const TaskNews& news, FailureSink& failures);
  /// The connection is closed: the rows that came stay, and no more will come. The end is still to
  /// be told.
  void LeaveRows();
  /// The connection is gone before its task told an end: the operation ends without a word.
  void EndUnheard();

 private:
  void TakeResult(ResultNews& result, std::int64_t recordsAffected);
  void TakeEnd(TaskNews& news, const RowOrigin& origin);

  std::weak_ptr<CursorHost> host_;
  std::shared_ptr<Task> task_;
  RowSettings settings_;
  std::function<void()> deliver_;
  std::vector<std::shared_ptr<ClientRecordset>> recordsets_;  ///< Of the results with columns.
};

}  // namespace tessel
