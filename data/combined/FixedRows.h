#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "data/rows/ColumnChunk.h"
#include "data/rows/RowSource.h"

namespace tessel {

/// Rows that follow each other in a chunk, whose cells are what is to be seen of them.
struct RowRun {
  const Chunk* chunk = nullptr;  ///< Null: the cells are to be asked for one by one.
  std::size_t first = 0;         ///< Within the chunk.
  std::int64_t rows = 1;
};

/// Rows that do not change any more, numbered without a gap: what merged and compared rows refer
/// to.
class FixedRows : public RowSource {
 public:
  [[nodiscard]] std::int64_t NextNumber() const final { return Count(); }
  [[nodiscard]] bool Contains(std::int64_t row) const final { return row >= 0 && row < Count(); }
  [[nodiscard]] std::vector<std::int64_t> Numbers() const final;
  [[nodiscard]] std::optional<std::int64_t> NewRow() const final { return std::nullopt; }

  /// The run that begins with `row`: for who reads many cells. Good until the rows are asked for
  /// another one.
  [[nodiscard]] virtual RowRun RunAt(std::int64_t row) const;
};

/// The rows of a result without columns: none.
class NoRows final : public FixedRows {
 public:
  [[nodiscard]] std::int64_t Count() const override { return 0; }
  [[nodiscard]] ValueView At(std::int64_t /*row*/, std::size_t /*field*/) const override {
    return {};
  }
  void Read(std::int64_t /*row*/, std::size_t /*first*/,
            std::span<ValueView> /*values*/) const override {}
};

}  // namespace tessel
