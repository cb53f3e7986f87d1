#include "data/work/SessionHost.h"

#include <new>
#include <utility>

#include "data/work/Slowdown.h"

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

/// How long what runs now may take to end after a cancel.
std::chrono::milliseconds PatienceOf(const ProviderSession& session) {
  return slowdown * session.CancelPatience();
}

}  // namespace

SessionHost::SessionHost(std::unique_ptr<ProviderSession> session,
                         std::shared_ptr<LeftBehind> leftBehind)
    : session_(std::move(session)), leftBehind_(std::move(leftBehind)) {}

std::shared_ptr<SessionHost> SessionHost::Start(std::unique_ptr<ProviderSession> session,
                                                std::shared_ptr<LeftBehind> leftBehind) {
  std::shared_ptr<SessionHost> host(new SessionHost(std::move(session), std::move(leftBehind)));
  host->thread_ = WatchedThread([host] { host->Work(); });
  return host;
}

void SessionHost::Run(std::shared_ptr<Task> task) {
  {
    const std::lock_guard lock(mutex_);
    next_ = std::move(task);
  }
  changed_.notify_all();
}

void SessionHost::Cancel(const std::shared_ptr<Task>& task) {
  task->AskToStop();
  if (!task->BeginCancel()) return;
  const auto self = shared_from_this();
  const auto patience = PatienceOf(*session_);
  leftBehind_->Keep(WatchedThread([self, task] { self->CancelUntilEnded(*task); }));
  leftBehind_->Keep(WatchedThread([self, task, patience] {
    if (!task->WaitForEnd(patience)) self->GiveUp(*task);
  }));
}

void SessionHost::Stop(const std::shared_ptr<Task>& running) {
  const auto patience = PatienceOf(*session_);
  if (running) Cancel(running);
  std::unique_lock lock(mutex_);
  quit_ = true;
  changed_.notify_all();
  lock.unlock();
  if (running && !running->WaitForEnd(patience)) GiveUp(*running);
  lock.lock();
  const auto limit = hangs_ ? std::chrono::milliseconds(0) : closePatience;
  const bool exited = changed_.wait_for(lock, limit, [this] { return exited_; });
  lock.unlock();
  if (exited) thread_.Join();
  else leftBehind_->Keep(std::move(thread_));
}

/// With the lock held: who hears of the end and stops the host must find the mark.
void SessionHost::GiveUp(Task& task) {
  const std::lock_guard lock(mutex_);
  if (task.Abandon()) hangs_ = true;
}

void SessionHost::Work() {
  while (const std::shared_ptr<Task> task = NextTask()) {
    RunTask(*task);
    if (task->OpenedSession()) opened_ = true;
  }
  if (opened_) session_->Close();
  const std::lock_guard lock(mutex_);
  exited_ = true;
  changed_.notify_all();
}

std::shared_ptr<Task> SessionHost::NextTask() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return next_ || quit_; });
  return std::exchange(next_, nullptr);
}

void SessionHost::RunTask(Task& task) {
  SetRunning(&task);
  std::optional<ErrorInfo> failure;
  try {
    task.ThrowIfStopped();
    task.Run(*session_);
  } catch (...) {
    const Error error = CurrentError();
    task.NoteFailure(error);
    failure = error.Info();
  }
  const bool lost = SessionIsLost(failure.has_value());
  if (opened_ && !lost) TellTransaction(task);
  task.End(std::move(failure), lost);
  SetRunning(nullptr);
  session_->TidyUp();
}

/// The task itself is done: what goes wrong here does not make it a failure.
void SessionHost::TellTransaction(Task& task) noexcept {
  try {
    task.TellTransaction(session_->Transaction());
  } catch (const std::exception&) {
    return;
  }
}

bool SessionHost::SessionIsLost(bool failed) { return failed && opened_ && !session_->IsAlive(); }

void SessionHost::SetRunning(Task* task) {
  const std::lock_guard lock(fence_);
  running_ = task;
}

/// Again and again: a request that comes before the driver has begun to wait may be forgotten by
/// it.
void SessionHost::CancelUntilEnded(const Task& task) {
  using namespace std::chrono_literals;
  do {
    const std::lock_guard lock(fence_);
    if (running_ == &task) session_->Cancel();
  } while (!task.WaitForEnd(20ms));
}

}  // namespace tessel
