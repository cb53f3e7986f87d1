#include "data/tasks/ThreadHost.h"

#include <utility>

namespace tessel {

ThreadHost::ThreadHost(std::unique_ptr<ProviderSession> session,
                       std::shared_ptr<LeftBehind> leftBehind, int patienceFactor)
    : runner_(std::move(session)),
      leftBehind_(std::move(leftBehind)),
      patienceFactor_(patienceFactor) {}

HostStarter ThreadHost::Starter(std::shared_ptr<LeftBehind> leftBehind, int patienceFactor) {
  return [leftBehind = std::move(leftBehind),
          patienceFactor](std::unique_ptr<ProviderSession> session) {
    std::shared_ptr<ThreadHost> host(
        new ThreadHost(std::move(session), leftBehind, patienceFactor));
    host->thread_ = WatchedThread([host] { host->Work(); });
    return host;
  };
}

void ThreadHost::Run(std::shared_ptr<Task> task) {
  {
    const std::lock_guard lock(mutex_);
    next_ = std::move(task);
  }
  changed_.notify_all();
}

std::chrono::milliseconds ThreadHost::Patience() const {
  return patienceFactor_ * runner_.Session().CancelPatience();
}

void ThreadHost::Cancel(const std::shared_ptr<Task>& task) {
  task->AskToStop();
  if (!task->BeginCancel()) return LeaveTakingBack(*task);
  const auto self = shared_from_this();
  const auto patience = Patience();
  leftBehind_->Keep(WatchedThread([self, task] { self->CancelUntilEnded(*task); }));
  leftBehind_->Keep(WatchedThread([self, task, patience] {
    if (!task->WaitForEnd(patience) && !task->TakesBack()) self->GiveUp(*task);
  }));
}

/// Who asks again does not want to wait for that either. The database goes on with it alone.
void ThreadHost::LeaveTakingBack(Task& task) {
  if (task.TakesBack()) GiveUp(task);
}

void ThreadHost::Stop(const std::shared_ptr<Task>& running) {
  const auto patience = Patience();
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
void ThreadHost::GiveUp(Task& task) {
  const std::lock_guard lock(mutex_);
  if (task.Abandon()) hangs_ = true;
}

void ThreadHost::Work() {
  while (const std::shared_ptr<Task> task = NextTask()) RunTask(*task);
  runner_.Close();
  const std::lock_guard lock(mutex_);
  exited_ = true;
  changed_.notify_all();
}

std::shared_ptr<Task> ThreadHost::NextTask() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return next_ || quit_; });
  return std::exchange(next_, nullptr);
}

void ThreadHost::RunTask(Task& task) {
  SetRunning(&task);
  while (runner_.Step(task)) continue;
  SetRunning(nullptr);
  runner_.Session().TidyUp();
}

void ThreadHost::SetRunning(Task* task) {
  const std::lock_guard lock(fence_);
  running_ = task;
}

/// Again and again: a request that comes before the driver has begun to wait may be forgotten by
/// it.
void ThreadHost::CancelUntilEnded(const Task& task) {
  using namespace std::chrono_literals;
  do {
    const std::lock_guard lock(fence_);
    if (running_ == &task && !task.TakesBack()) runner_.Session().Cancel();
  } while (!task.WaitForEnd(20ms));
}

}  // namespace tessel
