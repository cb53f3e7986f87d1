#include "tests/data/support/PumpQueue.h"

namespace tessel::test {

void PumpQueue::Post(std::weak_ptr<const void> owner, std::function<void()> notice) {
  {
    const std::lock_guard lock(mutex_);
    items_.push_back({std::move(owner), std::move(notice)});
  }
  arrived_.notify_all();
}

bool PumpQueue::RunOne(std::unique_lock<std::mutex>& lock) {
  Item item = std::move(items_.front());
  items_.pop_front();
  lock.unlock();
  const bool alive = !item.owner.expired();
  if (alive) item.notice();
  item = {};
  lock.lock();
  return alive;
}

int PumpQueue::Pump() {
  std::unique_lock lock(mutex_);
  int ran = 0;
  for (std::size_t waiting = items_.size(); waiting != 0 && !items_.empty(); --waiting)
    if (RunOne(lock)) ++ran;
  return ran;
}

bool PumpQueue::PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  for (;;) {
    Pump();
    if (done()) return true;
    std::unique_lock lock(mutex_);
    if (!arrived_.wait_until(lock, end, [this] { return !items_.empty(); })) return done();
  }
}

}  // namespace tessel::test
