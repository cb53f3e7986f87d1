#include "tests/headless/HeadlessServices.h"

#include <array>
#include <cstdio>

namespace tessel::test {

std::string HeadlessClock::LongTime() const {
  const std::int64_t seconds = now_ / 1000 + std::int64_t{12} * 3600;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text.data();
}

std::string HeadlessClock::ShortTimeOf(std::chrono::system_clock::time_point moment) const {
  const std::int64_t minutes = std::chrono::system_clock::to_time_t(moment) / 60;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d", static_cast<int>(minutes / 60 % 24),
                static_cast<int>(minutes % 60));
  return text.data();
}

void HeadlessQueue::Post(std::weak_ptr<const void> owner, std::function<void()> notice) {
  const std::lock_guard lock(mutex_);
  notices_.emplace_back(std::move(owner), std::move(notice));
}

std::size_t HeadlessQueue::Count() const {
  const std::lock_guard lock(mutex_);
  return notices_.size();
}

bool HeadlessQueue::RunOne() {
  std::pair<std::weak_ptr<const void>, std::function<void()>> first;
  {
    const std::lock_guard lock(mutex_);
    if (notices_.empty()) return false;
    first = std::move(notices_.front());
    notices_.pop_front();
  }
  if (const auto owner = first.first.lock()) first.second();
  return true;
}

void HeadlessTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Restart();
}

void HeadlessTimer::SetInterval(int milliseconds) {
  interval_ = milliseconds;
  Restart();
}

void HeadlessTimer::TickNow() {
  next_ += interval_;
  Tick.Raise(failures_);
}

}  // namespace tessel::test
