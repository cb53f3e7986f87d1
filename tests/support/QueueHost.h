#pragma once

#include <memory>

#include "contract/base/EventQueue.h"
#include "data/providers/memory/MemorySession.h"
#include "data/tasks/SessionHost.h"
#include "data/tasks/TaskRunner.h"

namespace tessel::test {

/// Takes each step of a task as a notice of the test's event queue, so that a test can act between
/// any two; where somebody waits, all steps at once. A step that the session is to hold back comes
/// only when the test resumes it, or the task is cancelled. No threads.
class QueueHost final : public SessionHost, public std::enable_shared_from_this<QueueHost> {
 public:
  /// `queue` outlives the host; `session` is a MemorySession.
  QueueHost(EventQueue& queue, std::unique_ptr<ProviderSession> session);

  void Run(std::shared_ptr<Task> task) override;
  void Cancel(const std::shared_ptr<Task>& task) override;
  void Stop(const std::shared_ptr<Task>& running) override;
  void WaitForEnd(Task& task) override;

  [[nodiscard]] MemorySession& Session() const { return session_; }
  /// Whether a step is held back.
  [[nodiscard]] bool IsHeld() const { return held_; }
  /// Lets that step come.
  void Resume();

 private:
  void PostStep();
  void TakePostedStep();
  /// False: it is held back, or the task has ended.
  bool TakeStep();
  [[nodiscard]] bool HoldsNextStep() const;
  [[nodiscard]] bool HoldsCommand(const std::string& sql) const;

  EventQueue& queue_;
  TaskRunner runner_;
  MemorySession& session_;
  std::shared_ptr<Task> running_;  ///< Null when it has ended.
  bool posted_ = false;
  bool held_ = false;
  bool resumed_ = false;
};

}  // namespace tessel::test
