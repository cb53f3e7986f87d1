#pragma once

#include <memory>
#include <utility>

#include "contract/data/BulkLoad.h"
#include "data/tasks/LoadTask.h"

namespace tessel {

/// A load of this data layer: the operation of its task, and what the task has to say of the rows.
class DataLoad final : public LoadOperation, public std::enable_shared_from_this<DataLoad> {
 public:
  /// Takes over `operation`, that of `task`, of whose events nobody has heard yet.
  [[nodiscard]] static std::shared_ptr<DataLoad> Of(std::shared_ptr<Operation> operation,
                                                    std::shared_ptr<LoadTask> task);

  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override {
    return operation_->ActiveConnection();
  }
  void Cancel() override { operation_->Cancel(); }
  void Wait() override {
    const auto operation = operation_;  // A handler may let go of this one.
    operation->Wait();
  }

 private:
  DataLoad(std::shared_ptr<Operation> operation, std::shared_ptr<LoadTask> task)
      : operation_(std::move(operation)), task_(std::move(task)) {}

  void TakeProgress();
  void TakeEnd();

  std::shared_ptr<Operation> operation_;
  std::shared_ptr<LoadTask> task_;
};

}  // namespace tessel
