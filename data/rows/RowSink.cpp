#include "data/rows/RowSink.h"

#include <utility>

namespace tessel {

void RowSink::CloseChunk() {
  if (pendingRows_ == 0) {
    for (ColumnBuilder& column : columns_) column.Truncate(0);
    return;
  }
  auto chunk = std::make_shared<Chunk>();
  chunk->rows = pendingRows_;
  chunk->columns.reserve(columns_.size());
  for (ColumnBuilder& column : columns_) {
    column.Truncate(pendingRows_);
    chunk->columns.push_back(column.Take());
  }
  chunks_.push_back(std::move(chunk));
  closedRows_ += static_cast<std::int64_t>(pendingRows_);
  pendingRows_ = 0;
}

std::vector<ChunkPtr> RowSink::TakeChunks() { return std::exchange(chunks_, {}); }

}  // namespace tessel
