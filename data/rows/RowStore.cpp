#include "data/rows/RowStore.h"

#include <algorithm>
#include <utility>

namespace tessel {

void RowStore::Add(ChunkPtr chunk) {
  if (chunk->rows == 0) return;
  starts_.push_back(rows_);
  rows_ += static_cast<std::int64_t>(chunk->rows);
  chunks_.push_back(std::move(chunk));
}

void RowStore::Look(std::int64_t row) const {
  chunks_[lastChunk_]->NoteLook();
  const auto after = std::ranges::upper_bound(starts_, row);
  lastChunk_ = static_cast<std::size_t>(after - starts_.begin()) - 1;
  chunks_[lastChunk_]->NoteLook();
}

std::size_t RowStore::HeldBytes() const {
  std::size_t bytes = 0;
  for (const ChunkPtr& chunk : chunks_) bytes += chunk->HeldBytes();
  return bytes;
}

}  // namespace tessel
