#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "contract/base/EventQueue.h"

namespace tessel::test {

/// An event queue that runs its notices when a test pumps it, on the thread that pumps.
class PumpQueue : public EventQueue {
 public:
  void Post(std::weak_ptr<const void> owner, std::function<void()> notice) override;

  /// Runs the notices that wait now, in order; returns how many ran.
  int Pump();
  /// Pumps until `done` holds; false when it does not within `limit`.
  bool PumpUntil(const std::function<bool()>& done,
                 std::chrono::milliseconds limit = std::chrono::seconds(60));

 private:
  struct Item {
    std::weak_ptr<const void> owner;
    std::function<void()> notice;
  };
  bool RunOne(std::unique_lock<std::mutex>& lock);

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Item> items_;
};

}  // namespace tessel::test
