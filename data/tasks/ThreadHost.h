#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

#include "data/providers/Provider.h"
#include "data/tasks/LeftBehind.h"
#include "data/tasks/SessionHost.h"
#include "data/tasks/Task.h"
#include "data/tasks/TaskRunner.h"

namespace tessel {

/// A session and the one thread that it lives on. The thread holds the host, so a thread that hangs
/// keeps all it uses. The public functions belong to the UI thread.
class ThreadHost : public SessionHost, public std::enable_shared_from_this<ThreadHost> {
 public:
  /// How long Stop waits for a session to be closed.
  static constexpr std::chrono::milliseconds closePatience{500};

  /// Makes hosts whose threads go to `leftBehind` where nobody waits for them. What was cancelled
  /// may take `patienceFactor` times the session's patience: more than 1 in a build that is slow.
  [[nodiscard]] static HostStarter Starter(std::shared_ptr<LeftBehind> leftBehind,
                                           int patienceFactor = 1);

  void Run(std::shared_ptr<Task> task) override;
  /// What does not end within the session's patience is abandoned, unless it is being taken back:
  /// that is waited for until Cancel comes once more.
  void Cancel(const std::shared_ptr<Task>& task) override;
  /// Ends the thread, or leaves it behind when it hangs. Waits no longer than the two patiences,
  /// and not at all for one that is known to hang.
  void Stop(const std::shared_ptr<Task>& running) override;

  void WaitForEnd(Task& task) override { task.WaitForEnd(); }

 private:
  ThreadHost(std::unique_ptr<ProviderSession> session, std::shared_ptr<LeftBehind> leftBehind,
             int patienceFactor);

  /// How long what runs now may take to end after a cancel.
  [[nodiscard]] std::chrono::milliseconds Patience() const;

  void Work();
  [[nodiscard]] std::shared_ptr<Task> NextTask();
  void RunTask(Task& task);
  void SetRunning(Task* task);
  void CancelUntilEnded(const Task& task);
  void GiveUp(Task& task);
  void LeaveTakingBack(Task& task);

  /// Of the worker; the session's Cancel also of the thread that cancels, its CancelPatience of the
  /// UI thread until Stop has told the worker to end. Destroyed by the worker at its end.
  TaskRunner runner_;
  const std::shared_ptr<LeftBehind> leftBehind_;
  const int patienceFactor_;
  WatchedThread thread_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::shared_ptr<Task> next_;
  bool quit_ = false;
  bool exited_ = false;
  bool hangs_ = false;  ///< A task was abandoned: the worker does not come back.

  /// Held around each call of ProviderSession::Cancel, and by the worker where one task is left and
  /// the next one begun: so no late cancel reaches the next task.
  std::mutex fence_;
  const Task* running_ = nullptr;
};

}  // namespace tessel
