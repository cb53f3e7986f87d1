#include "data/tasks/LeftBehind.h"

#include <chrono>
#include <utility>

namespace tessel {

WatchedThread::WatchedThread(std::function<void()> work)
    : thread_([work = std::move(work), done = done_] {
        work();
        done->store(true);
      }) {}

LeftBehind::~LeftBehind() {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + 300ms;
  while (Any() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(1ms);
  for (WatchedThread& thread : threads_) thread.Detach();
}

void LeftBehind::Keep(WatchedThread thread) {
  const std::lock_guard lock(mutex_);
  JoinDone();
  threads_.push_back(std::move(thread));
}

bool LeftBehind::Any() {
  const std::lock_guard lock(mutex_);
  JoinDone();
  return !threads_.empty();
}

void LeftBehind::JoinDone() {
  std::erase_if(threads_, [](WatchedThread& thread) {
    if (thread.Done()) thread.Join();
    return !thread.Joinable();
  });
}

}  // namespace tessel
