#include "system/ThreadLine.h"

#include <chrono>
#include <utility>

namespace tessel {

ThreadLine::~ThreadLine() {
  {
    const std::scoped_lock lock(mutex_);
    waiting_.clear();
    ends_ = true;
  }
  added_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void ThreadLine::Add(std::function<void()> piece) {
  {
    const std::scoped_lock lock(mutex_);
    if (failure_) return;
    waiting_.push_back(std::move(piece));
  }
  added_.notify_one();
  if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
}

std::size_t ThreadLine::Left() const {
  const std::scoped_lock lock(mutex_);
  return waiting_.size() + (working_ ? 1 : 0);
}

bool ThreadLine::Wait(std::size_t pieces, int milliseconds) {
  std::unique_lock lock(mutex_);
  const bool reached = done_.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] {
    return waiting_.size() + (working_ ? 1 : 0) <= pieces;
  });
  if (failure_) std::rethrow_exception(failure_);
  return reached;
}

void ThreadLine::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    added_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
    if (ends_) return;
    std::function<void()> piece = std::move(waiting_.front());
    waiting_.pop_front();
    working_ = true;
    lock.unlock();
    Do(piece);
    piece = nullptr;  // What it holds goes here, and not under the lock.
    lock.lock();
    working_ = false;
    done_.notify_one();
  }
}

void ThreadLine::Do(const std::function<void()>& piece) noexcept {
  try {
    piece();
  } catch (...) {
    const std::scoped_lock lock(mutex_);
    failure_ = std::current_exception();
    waiting_.clear();
  }
}

}  // namespace tessel
