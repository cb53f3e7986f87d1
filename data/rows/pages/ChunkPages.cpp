#include "data/rows/pages/ChunkPages.h"

#include <algorithm>
#include <new>
#include <utility>

#include <sys/mman.h>

namespace tessel {

ChunkPages::ChunkPages(std::size_t size, std::shared_ptr<SpillFile> file)
    : size_(SpillFile::WholePages(std::max<std::size_t>(size, 1))), file_(std::move(file)) {
  void* mapped = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  data_ = static_cast<std::byte*>(mapped);
}

ChunkPages::~ChunkPages() {
  CountOut();
  munmap(data_, size_);
}

void ChunkPages::CountIn(std::shared_ptr<RowTally> tally) {
  tally_ = std::move(tally);
  *tally_ += size_;
}

void ChunkPages::CountOut() {
  if (const auto tally = std::exchange(tally_, nullptr)) *tally -= size_;
}

void ChunkPages::MoveToFile() {
  file_->TakePlaceOf({data_, size_});
  inFile_.store(true, std::memory_order_release);
  file_.reset();
}

/// Bytes that are in no file would be lost.
void ChunkPages::LetGo() const noexcept {
  if (InFile()) madvise(data_, size_, MADV_DONTNEED);
}

}  // namespace tessel
