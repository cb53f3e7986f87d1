#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "data/rows/pages/ChunkPages.h"

namespace tessel {

/// Gives the memory of large results back on a thread of its own: for a gigabyte the system takes a
/// tenth of a second, and it is the UI thread that lets go of results. The thread begins with the
/// first pages. The destructor waits until all have gone; it may not be called on that thread, so
/// the pages given here must not own this. Any thread.
class PageReturn {
 public:
  PageReturn() = default;
  PageReturn(const PageReturn&) = delete;
  PageReturn& operator=(const PageReturn&) = delete;
  ~PageReturn();

  /// They count no more from now on, and nobody uses them.
  void Take(std::unique_ptr<ChunkPages> pages) noexcept;

 private:
  using Pages = std::vector<std::unique_ptr<ChunkPages>>;

  void Queue(std::unique_ptr<ChunkPages>& pages);
  void Work();
  [[nodiscard]] Pages Next();

  std::mutex mutex_;
  std::condition_variable changed_;
  Pages waiting_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace tessel
