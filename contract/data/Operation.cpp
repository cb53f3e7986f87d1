#include "contract/data/Operation.h"

#include <algorithm>
#include <utility>

namespace tessel {

OperationOutcome Operation::Outcome() const {
  if (!failure_) return OperationOutcome::Done;
  return failure_->number == errorNumber::cancelled ? OperationOutcome::Cancelled
                                                    : OperationOutcome::Failed;
}

void Operation::End(std::optional<ErrorInfo> failure) {
  phase_ = OperationPhase::Ended;
  failure_ = std::move(failure);
}

void Finish(Operation& operation) {
  operation.Wait();
  if (operation.Failure()) throw Error(*operation.Failure());
}

std::shared_ptr<Recordset> QueryOperation::FirstRows() const {
  const auto found = std::ranges::find_if(
      results_, [](const CommandResult& result) { return result.rows != nullptr; });
  return found == results_.end() ? nullptr : found->rows;
}

}  // namespace tessel
