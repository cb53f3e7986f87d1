#include "data/providers/Operation.h"

#include <utility>

namespace tessel {

void Operation::ThrowIfStopped() const {
  if (StopAsked()) throw CancelledError();
}

void Operation::Raise(std::vector<ErrorInfo> records) {
  ErrorInfo first = records.front();
  for (ErrorInfo& record : records) reports_.push_back(std::move(record));
  raised_ = true;
  throw Error(std::move(first));
}

void Operation::NoteFailure(const Error& failure) {
  if (!std::exchange(raised_, false)) reports_.push_back(failure.Info());
}

std::vector<ErrorInfo> Operation::TakeReports() { return std::exchange(reports_, {}); }

Error CancelledError() {
  return {errorNumber::cancelled, "Tessel", "The operation was cancelled."};
}

}  // namespace tessel
