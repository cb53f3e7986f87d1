#include "data/rows/pages/LookedPages.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tessel {

/// Once in a while only: who jumps from chunk to chunk, such as a sort, must not read the file
/// again and again.
void LookedPages::Note(const std::shared_ptr<const ChunkPages>& pages) {
  if (!pages->InFile()) return;
  const ChunkPages::Time now = std::chrono::steady_clock::now();
  const bool isFirst = pages->SetLookedAt(now) == ChunkPages::Time();
  const bool isTime = now - trimmed_.load() > trimInterval;
  if (!isFirst && !isTime) return;
  const std::lock_guard lock(mutex_);
  if (isFirst) looked_.emplace_back(pages);
  if (isTime) LetGoOfOthers(now);
}

/// Those looked at last stay, up to what may; those of this very moment stay all.
void LookedPages::LetGoOfOthers(ChunkPages::Time now) {
  std::vector<std::pair<ChunkPages::Time, std::shared_ptr<const ChunkPages>>> latest;
  for (const auto& looked : looked_)
    if (auto pages = looked.lock()) latest.emplace_back(pages->LookedAt(), std::move(pages));
  std::ranges::sort(latest, std::greater());
  looked_.clear();
  std::size_t bytes = 0;
  const ChunkPages::Time before = trimmed_.exchange(now);
  for (const auto& [when, pages] : latest) {
    bytes += pages->Size();
    if (bytes <= residentBytes || when >= before) {
      looked_.emplace_back(pages);
    } else {
      pages->SetLookedAt(ChunkPages::Time());
      pages->LetGo();
    }
  }
}

}  // namespace tessel
