#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "data/rows/pages/ChunkPages.h"

namespace tessel {

/// The pages in files that were looked at, of all results of the program: the memory of those that
/// were not looked at lately is given back. Any thread.
class LookedPages {
 public:
  /// `pages` are looked at now: in a file they take memory, until it is time to let go of them.
  void Note(const std::shared_ptr<const ChunkPages>& pages);

 private:
  /// So much of the files may stay in memory.
  static constexpr std::size_t residentBytes = std::size_t{64} << 20U;
  static constexpr std::chrono::milliseconds trimInterval{50};

  void LetGoOfOthers(ChunkPages::Time now);

  std::mutex mutex_;
  std::vector<std::weak_ptr<const ChunkPages>> looked_;  ///< Each once.
  std::atomic<ChunkPages::Time> trimmed_ = ChunkPages::Time();
};

}  // namespace tessel
