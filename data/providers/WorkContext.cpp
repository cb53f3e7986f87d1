#include "data/providers/WorkContext.h"

#include <algorithm>
#include <utility>

namespace tessel {

void WorkContext::ThrowIfStopped() const {
  if (StopAsked()) throw CancelledError();
}

void WorkContext::Raise(std::vector<ErrorInfo> records) {
  ErrorInfo first = records.front();
  for (ErrorInfo& record : records) reports_.push_back(std::move(record));
  raised_ = true;
  throw Error(std::move(first));
}

void WorkContext::NoteFailure(const Error& failure) {
  if (!std::exchange(raised_, false)) reports_.push_back(failure.Info());
}

void WorkContext::BeginStatement(const StatementPlace& statement, EarlierStatements earlier) {
  statement_ = statement;
  failedAt_.reset();
  if (earlier == EarlierStatements::Stay)
    keptUpTo_ = std::max<std::int64_t>(statement.number - 1, 0);
  if (earlier == EarlierStatements::NotKnown) keptUpTo_.reset();
}

void WorkContext::EndStatement(std::int64_t recordsAffected) {
  statements_.push_back({recordsAffected, TakeReports(), statement_});
}

std::vector<DoneStatement> WorkContext::TakeStatements() { return std::exchange(statements_, {}); }

std::vector<ErrorInfo> WorkContext::TakeReports() { return std::exchange(reports_, {}); }

Error CancelledError() {
  return {errorNumber::cancelled, "Tessel", "The operation was cancelled."};
}

}  // namespace tessel
