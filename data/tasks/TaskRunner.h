#pragma once

#include <memory>

#include "data/providers/Provider.h"
#include "data/tasks/Task.h"

namespace tessel {

/// Takes the steps of tasks on a session, and ends each task with what came of it. Worker thread,
/// but for the constructor and, where the session allows it, Session.
class TaskRunner {
 public:
  explicit TaskRunner(std::unique_ptr<ProviderSession> session);

  /// Takes the next step of `task`; false: the task has ended with it. Nothing is raised.
  [[nodiscard]] bool Step(Task& task);
  /// Ends the session, if a task has opened it.
  void Close();

  [[nodiscard]] ProviderSession& Session() const { return *session_; }

 private:
  void End(Task& task, std::optional<ErrorInfo> failure);
  void TellTransaction(Task& task) noexcept;

  std::unique_ptr<ProviderSession> session_;
  const Task* begun_ = nullptr;  ///< Whose steps are being taken.
  bool opened_ = false;
};

}  // namespace tessel
