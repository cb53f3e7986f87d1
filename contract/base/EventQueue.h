#pragma once

#include <functional>
#include <memory>

namespace tessel {

/// Carries notices from worker threads to the UI thread.
class EventQueue {
 public:
  virtual ~EventQueue() = default;

  /// Queues `notice` to run once on the UI thread, in the order of posting. Any thread may call it.
  /// When `owner` has expired by the time its turn comes, the notice is dropped without being run.
  /// The notice must not throw.
  virtual void Post(std::weak_ptr<const void> owner, std::function<void()> notice) = 0;
};

}  // namespace tessel
