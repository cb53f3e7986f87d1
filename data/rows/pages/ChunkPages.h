#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>

#include "data/rows/pages/SpillFile.h"

namespace tessel {

/// How many bytes of memory the rows of the program take. Any thread.
using RowTally = std::atomic<std::size_t>;

/// The memory in which the cells of a chunk stand: whole pages, that a file can take the place of.
/// The bytes stay what they are and where they are, so that a thread may read them all the while
/// and a view into them stays good.
class ChunkPages {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Memory for `size` bytes, all zero; `file` is where they may go. Raises std::bad_alloc.
  ChunkPages(std::size_t size, std::shared_ptr<SpillFile> file);
  ChunkPages(const ChunkPages&) = delete;
  ChunkPages& operator=(const ChunkPages&) = delete;
  ~ChunkPages();

  /// To be filled before another thread knows of it.
  [[nodiscard]] std::byte* Data() const { return data_; }
  /// In whole pages.
  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] bool InFile() const { return inFile_.load(std::memory_order_acquire); }

  /// Counts the pages in `tally`, until CountOut or their end. Not by two threads at a time, as
  /// MoveToFile.
  void CountIn(std::shared_ptr<RowTally> tally);
  void CountOut();

  /// Writes the bytes to the file, and lets it take their place. Throws std::system_error, for
  /// example when the disk is full: they stay in memory then.
  void MoveToFile();

  /// When the bytes were last looked at in their file; the clock's first moment: not since their
  /// memory was given back.
  [[nodiscard]] Time LookedAt() const { return lookedAt_; }
  /// Gives what LookedAt was before.
  Time SetLookedAt(Time when) const { return lookedAt_.exchange(when); }
  /// Gives back the memory that looking at bytes in the file took. What is looked at again comes
  /// from the file again.
  void LetGo() const noexcept;

 private:
  std::byte* data_;
  std::size_t size_;
  std::atomic<bool> inFile_ = false;
  std::shared_ptr<SpillFile> file_;  ///< Until they are in it.
  mutable std::atomic<Time> lookedAt_ = Time();
  std::shared_ptr<RowTally> tally_;  ///< Where they are counted, else null.
};

}  // namespace tessel
