#include "data/providers/CancelSwitch.h"

#include <algorithm>

namespace tessel {

using std::chrono::steady_clock;

void CancelSwitch::TurnOn(std::function<void()> send) {
  const std::lock_guard lock(mutex_);
  send_ = std::move(send);
  sent_ = false;
  next_ =
      pace_.before.count() == 0 ? steady_clock::time_point() : steady_clock::now() + pace_.before;
  interval_ = pace_.between;
}

void CancelSwitch::TurnOff() {
  const std::lock_guard lock(mutex_);
  send_ = nullptr;
}

void CancelSwitch::Request() noexcept {
  const std::lock_guard lock(mutex_);
  if (!send_ || steady_clock::now() < next_) return;
  send_();
  sent_ = true;
  next_ = steady_clock::now() + interval_;
  interval_ = std::min(interval_ * 2, Milliseconds(1000));
}

bool CancelSwitch::Sent() const {
  const std::lock_guard lock(mutex_);
  return sent_;
}

}  // namespace tessel
