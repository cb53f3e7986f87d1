#include "data/cursor/DataLoad.h"

namespace tessel {

std::shared_ptr<DataLoad> DataLoad::Of(std::shared_ptr<Operation> operation,
                                       std::shared_ptr<LoadTask> task) {
  const std::shared_ptr<DataLoad> load(new DataLoad(std::move(operation), std::move(task)));
  const std::weak_ptr<DataLoad> weak = load;
  load->operation_->Progress = [weak] {
    if (const auto self = weak.lock()) self->TakeProgress();
  };
  load->operation_->Ended = [weak] {
    if (const auto self = weak.lock()) self->TakeEnd();
  };
  return load;
}

/// What a handler throws passes to whoever raised the event of the operation.
void DataLoad::TakeProgress() {
  CountRows(operation_->Rows());
  Progress.Raise(nullptr);
}

void DataLoad::TakeEnd() {
  CountRows(operation_->Rows());
  SetRowsKept(task_->RowsKept());
  SetRefused(task_->Refused());
  End(operation_->Failure());
  Ended.Raise(nullptr);
}

}  // namespace tessel
