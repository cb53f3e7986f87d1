#include "data/rows/pages/PageReturn.h"

#include <exception>
#include <utility>

namespace tessel {

PageReturn::~PageReturn() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

/// Few pages go sooner than another thread would hear of them. Where there is no thread or memory
/// to be had, all do.
void PageReturn::Take(std::unique_ptr<ChunkPages> pages) noexcept {
  constexpr std::size_t fewPages = std::size_t{256} << 10U;
  pages->CountOut();
  if (pages->Size() <= fewPages) return;
  try {
    Queue(pages);
  } catch (const std::exception&) {
    return;
  }
}

/// Takes them only when nothing fails.
void PageReturn::Queue(std::unique_ptr<ChunkPages>& pages) {
  const std::lock_guard lock(mutex_);
  if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
  waiting_.reserve(waiting_.size() + 1);
  waiting_.push_back(std::move(pages));
  changed_.notify_all();
}

void PageReturn::Work() {
  while (!Next().empty()) continue;
}

/// Those that wait, once there are any; none at the end.
PageReturn::Pages PageReturn::Next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
  return std::exchange(waiting_, {});
}

}  // namespace tessel
