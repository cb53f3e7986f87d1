#include "data/providers/CancelSwitch.h"

#include <algorithm>

namespace tessel {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

void CancelSwitch::TurnOn() {
  const std::lock_guard lock(mutex_);
  on_ = true;
  sent_ = false;
  next_ = {};
  interval_ = milliseconds(15);
}

void CancelSwitch::TurnOff() {
  const std::lock_guard lock(mutex_);
  on_ = false;
}

void CancelSwitch::Request() noexcept {
  const std::lock_guard lock(mutex_);
  if (!on_ || steady_clock::now() < next_) return;
  send_();
  sent_ = true;
  next_ = steady_clock::now() + interval_;
  interval_ = std::min(interval_ * 2, milliseconds(1000));
}

bool CancelSwitch::Sent() const {
  const std::lock_guard lock(mutex_);
  return sent_;
}

}  // namespace tessel
