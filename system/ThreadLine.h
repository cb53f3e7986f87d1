#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "contract/system/WorkLine.h"

namespace tessel {

/// Does its pieces on a thread of its own, which begins with the first one.
class ThreadLine final : public WorkLine {
 public:
  ThreadLine() = default;
  ThreadLine(const ThreadLine&) = delete;
  ThreadLine& operator=(const ThreadLine&) = delete;
  ~ThreadLine() override;

  void Add(std::function<void()> piece) override;
  [[nodiscard]] std::size_t Left() const override;
  bool Wait(std::size_t pieces, int milliseconds) override;

 private:
  void Work();
  void Do(const std::function<void()>& piece) noexcept;

  mutable std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable done_;
  std::deque<std::function<void()>> waiting_;
  bool working_ = false;        ///< A piece runs.
  bool ends_ = false;           ///< The thread is to end.
  std::exception_ptr failure_;  ///< What a piece raised.
  std::thread thread_;
};

}  // namespace tessel
