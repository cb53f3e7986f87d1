#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tessel {

/// A thread that says when its work is done, so that joining it takes no time.
class WatchedThread {
 public:
  WatchedThread() = default;
  explicit WatchedThread(std::function<void()> work);

  [[nodiscard]] bool Done() const { return done_->load(); }
  [[nodiscard]] bool Joinable() const { return thread_.joinable(); }
  /// May also be called on the thread itself, which may be the last to hold its owner.
  void Join() {
    if (thread_.get_id() == std::this_thread::get_id()) thread_.detach();
    else thread_.join();
  }
  void Detach() { thread_.detach(); }

 private:
  std::shared_ptr<std::atomic<bool>> done_ = std::make_shared<std::atomic<bool>>(false);
  std::thread thread_;
};

/// Threads that nobody waits for: those that help to cancel, and workers that hang in a driver.
/// Each owns all it uses, and ends and frees that by itself once its driver comes back. Any thread.
///
/// The destructor waits a moment for the last ones and lets go of those that still hang. A program
/// in which Any() holds at its end must leave by _exit, since what hangs may wake up while static
/// objects are being destroyed.
class LeftBehind {
 public:
  LeftBehind() = default;
  LeftBehind(const LeftBehind&) = delete;
  LeftBehind& operator=(const LeftBehind&) = delete;
  ~LeftBehind();

  void Keep(WatchedThread thread);
  [[nodiscard]] bool Any();

 private:
  void JoinDone();

  std::mutex mutex_;
  std::vector<WatchedThread> threads_;
};

}  // namespace tessel
