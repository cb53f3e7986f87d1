#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "data/rows/ColumnChunk.h"
#include "data/rows/RowSource.h"

namespace tessel {

/// Rows that follow each other in a chunk too, whose cells there are what is to be seen of them.
struct RowRun {
  const Chunk* chunk = nullptr;  ///< Null: the cells are to be asked for one by one.
  std::int64_t start = 0;        ///< The first of the rows.
  std::int64_t end = 0;          ///< Behind the last one.
  std::size_t first = 0;         ///< Where the first one stands in the chunk.

  [[nodiscard]] bool Holds(std::int64_t row) const { return row >= start && row < end; }
  [[nodiscard]] std::size_t Within(std::int64_t row) const {
    return first + static_cast<std::size_t>(row - start);
  }
};

/// Rows that do not change any more, numbered without a gap: what merged and compared rows refer
/// to.
class FixedRows : public RowSource {
 public:
  [[nodiscard]] std::int64_t NextNumber() const final { return Count(); }
  [[nodiscard]] bool Contains(std::int64_t row) const final { return row >= 0 && row < Count(); }
  [[nodiscard]] std::vector<std::int64_t> Numbers() const final;
  [[nodiscard]] std::optional<std::int64_t> NewRow() const final { return std::nullopt; }

  /// A run that holds `row`, for who reads many cells. Good until the event queue runs.
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
