#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/rows/ColumnChunk.h"

namespace tessel {

/// The rows of one result: chunks in order, only ever added to. Row numbers count from 0.
/// UI thread.
class RowStore {
 public:
  void Add(ChunkPtr chunk);

  [[nodiscard]] std::int64_t Rows() const { return rows_; }
  /// `row` < Rows(), `column` < the number of columns. The view lives as long as the store.
  [[nodiscard]] ValueView At(std::int64_t row, std::size_t column) const {
    const std::size_t index = ChunkOf(row);
    return chunks_[index]->columns[column].At(static_cast<std::size_t>(row - starts_[index]));
  }
  /// As many cells of a row as `values` has room for, from `column` on.
  void Read(std::int64_t row, std::size_t column, std::span<ValueView> values) const {
    const std::size_t index = ChunkOf(row);
    const ColumnChunk* cells = &chunks_[index]->columns[column];
    for (ValueView& value : values)
      (cells++)->Read(static_cast<std::size_t>(row - starts_[index]), value);
  }
  /// Where a row stands: the chunk, and the row within it.
  struct Spot {
    const Chunk* chunk = nullptr;
    std::size_t row = 0;
  };
  [[nodiscard]] Spot SpotOf(std::int64_t row) const {
    const std::size_t index = ChunkOf(row);
    return {chunks_[index].get(), static_cast<std::size_t>(row - starts_[index])};
  }
  [[nodiscard]] const std::vector<ChunkPtr>& Chunks() const { return chunks_; }
  /// Bytes of memory that all cells take, as allocated; cells that stand in a file take none.
  [[nodiscard]] std::size_t HeldBytes() const;

 private:
  [[nodiscard]] std::size_t ChunkOf(std::int64_t row) const {
    const std::int64_t offset = row - starts_[lastChunk_];
    if (offset < 0 || offset >= static_cast<std::int64_t>(chunks_[lastChunk_]->rows)) Look(row);
    return lastChunk_;
  }
  /// Makes the chunk that holds the row the last one looked at. The one looked at before may have
  /// gone to the file meanwhile.
  void Look(std::int64_t row) const;

  std::vector<ChunkPtr> chunks_;
  std::vector<std::int64_t> starts_;
  std::int64_t rows_ = 0;
  mutable std::size_t lastChunk_ =
      0;  ///< Where the last look was: most looks go to the same chunk again.
};

}  // namespace tessel
