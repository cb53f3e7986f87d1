#pragma once

#include <functional>
#include <memory>

namespace tessel {

/// Carries notices from worker threads to the UI thread. It outlives everything that posts to it.
/// The desktop has one; modal windows and ProcessPending let notices through, and Operation::Wait
/// does not. Notices that are still queued when it goes are dropped, as those of an owner that
/// expired.
class EventQueue {
 public:
  virtual ~EventQueue() = default;

  /// Queues `notice` to run once on the UI thread, in the order of posting. Any thread may call it.
  /// It returns at once, and never runs the notice itself, not even on the UI thread. When `owner`
  /// has expired by the time its turn comes, the notice is dropped without being run; while the
  /// notice runs, the owner is kept alive. The notice must not throw. Owner and notice are let go
  /// of on the UI thread, so what they hold last may be destroyed there.
  virtual void Post(std::weak_ptr<const void> owner, std::function<void()> notice) = 0;
};

}  // namespace tessel
