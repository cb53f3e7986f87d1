#include "data/tasks/TaskRunner.h"

#include <new>
#include <utility>

namespace tessel {

namespace {

/// What is thrown while a task runs, as the one kind of error that leaves the data layer.
Error CurrentError() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return {errorNumber::database, "Tessel", "There is not enough memory."};
  } catch (const std::exception& error) {
    return {errorNumber::database, "Tessel", error.what()};
  }
}

}  // namespace

TaskRunner::TaskRunner(std::unique_ptr<ProviderSession> session) : session_(std::move(session)) {}

bool TaskRunner::Step(Task& task) {
  std::optional<ErrorInfo> failure;
  try {
    if (std::exchange(begun_, &task) != &task) task.ThrowIfStopped();
    if (task.Step(*session_)) return true;
  } catch (...) {
    const Error error = CurrentError();
    task.NoteFailure(error);
    failure = error.Info();
  }
  End(task, std::move(failure));
  return false;
}

void TaskRunner::End(Task& task, std::optional<ErrorInfo> failure) {
  const bool lost = failure && opened_ && !session_->IsAlive();
  if (opened_ && !lost) TellTransaction(task);
  begun_ = nullptr;
  opened_ = opened_ || task.OpenedSession();
  task.End(std::move(failure), lost);
}

/// The task itself is done: what goes wrong here does not make it a failure.
void TaskRunner::TellTransaction(Task& task) noexcept {
  try {
    task.TellTransaction(session_->Transaction());
  } catch (const std::exception&) {
    return;
  }
}

void TaskRunner::Close() {
  if (opened_) session_->Close();
}

}  // namespace tessel
