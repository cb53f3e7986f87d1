#pragma once

#include <functional>
#include <memory>

#include "data/providers/Provider.h"
#include "data/tasks/Task.h"

namespace tessel {

/// Where the tasks of one connection run: on a session of its own, one task at a time, from the
/// connection's Open to its Close. UI thread.
class SessionHost {
 public:
  virtual ~SessionHost() = default;

  /// Begins `task`; the one before has ended.
  virtual void Run(std::shared_ptr<Task> task) = 0;
  /// Asks `task` to stop, without waiting; any number of times. It ends within the session's
  /// patience.
  virtual void Cancel(const std::shared_ptr<Task>& task) = 0;
  /// Cancels `running` (may be null), waits for its end no longer than the session's patience, and
  /// ends the session. The host is not used after that.
  virtual void Stop(const std::shared_ptr<Task>& running) = 0;

  /// Waits until `task` has ended, without the event queue.
  virtual void WaitForEnd(Task& task) = 0;
};

/// Makes the host of a session that is to be opened.
using HostStarter = std::function<std::shared_ptr<SessionHost>(std::unique_ptr<ProviderSession>)>;

}  // namespace tessel
