#include "data/rows/RowStore.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tessel {

void RowStore::Add(ChunkPtr chunk) {
  if (chunk->rows == 0) return;
  starts_.push_back(rows_);
  rows_ += static_cast<std::int64_t>(chunk->rows);
  chunks_.push_back(std::move(chunk));
}

void RowStore::Look(std::int64_t row) const {
  const auto after = std::ranges::upper_bound(starts_, row);
  lastChunk_ = static_cast<std::size_t>(after - starts_.begin()) - 1;
  if (chunks_[lastChunk_]->part) NoteLook(lastChunk_);
}

/// Once in a while only: who jumps from chunk to chunk, such as a sort, must not read the file
/// again and again.
void RowStore::NoteLook(std::size_t chunk) const {
  const Time now = std::chrono::steady_clock::now();
  looked_.resize(chunks_.size());
  looked_[chunk] = now;
  if (now - trimmed_ > trimInterval) LetGoOfOthers(now);
}

/// The chunks looked at last stay, up to what may; those of this very moment stay all.
void RowStore::LetGoOfOthers(Time now) const {
  std::vector<std::size_t> latest;
  for (std::size_t i = 0; i < looked_.size(); ++i)
    if (looked_[i] != Time()) latest.push_back(i);
  std::ranges::sort(latest, std::greater(), [this](std::size_t i) { return looked_[i]; });
  std::size_t bytes = 0;
  for (const std::size_t i : latest) {
    bytes += chunks_[i]->part->Bytes().size();
    if (bytes <= residentBytes || looked_[i] >= trimmed_) continue;
    chunks_[i]->part->LetGo();
    looked_[i] = Time();
  }
  trimmed_ = now;
}

std::size_t RowStore::HeldBytes() const {
  std::size_t bytes = 0;
  for (const ChunkPtr& chunk : chunks_) bytes += chunk->HeldBytes();
  return bytes;
}

}  // namespace tessel
