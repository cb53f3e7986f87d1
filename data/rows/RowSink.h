#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "data/rows/ColumnBuilder.h"
#include "data/rows/ColumnChunk.h"

namespace tessel {

/// Takes rows cell by cell and gives chunks. For each row append one cell to every column, then
/// call EndRow. Worker thread.
class RowSink {
 public:
  explicit RowSink(std::size_t columns) : columns_(columns) {}

  [[nodiscard]] ColumnBuilder& Column(std::size_t index) { return columns_[index]; }
  [[nodiscard]] std::size_t ColumnCount() const { return columns_.size(); }
  void EndRow() {
    if (++pendingRows_ == Chunk::maxRows || AnyArenaIsLarge()) CloseChunk();
  }

  /// Rows ended so far, in all chunks.
  [[nodiscard]] std::int64_t Rows() const {
    return closedRows_ + static_cast<std::int64_t>(pendingRows_);
  }
  /// Rows that are in no chunk yet.
  [[nodiscard]] std::size_t PendingRows() const { return pendingRows_; }

  /// Makes a chunk of the rows ended so far; drops a row that was begun but not ended.
  void CloseChunk();
  /// The chunks closed since the last call, in order.
  [[nodiscard]] std::vector<ChunkPtr> TakeChunks();

 private:
  [[nodiscard]] bool AnyArenaIsLarge() const {
    return std::ranges::any_of(columns_, &ColumnBuilder::ArenaIsLarge);
  }

  std::vector<ColumnBuilder> columns_;
  std::vector<ChunkPtr> chunks_;
  std::size_t pendingRows_ = 0;
  std::int64_t closedRows_ = 0;
};

}  // namespace tessel
