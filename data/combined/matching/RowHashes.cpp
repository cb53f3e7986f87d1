#include "data/combined/matching/RowHashes.h"

#include <algorithm>

namespace tessel {

namespace {

/// The cells of a run of one column, from `first` on.
void HashCells(const ColumnChunk& column, std::size_t first, const ValueSameness& sameness,
               std::span<std::uint64_t> hashes) {
  if (column.kind == CellKind::Integer) {
    for (std::uint64_t& hash : hashes) {
      const bool isNull = column.IsNullAt(first);
      const auto number = column.cells.At<std::int64_t>(first++);
      hash = AddHash(hash, isNull ? HashOfNull() : HashOfInteger(number));
    }
    return;
  }
  ValueView value;
  for (std::uint64_t& hash : hashes) {
    column.Read(first++, value);
    hash = AddHash(hash, sameness.Hash(value));
  }
}

/// Of the cells from `first` to `last`.
std::size_t LongBytes(const Chunk& chunk, std::size_t first, std::size_t last) {
  std::size_t bytes = 0;
  for (const ColumnChunk& column : chunk.columns) {
    if (!IsArenaKind(column.kind)) continue;
    const ArenaSlice end = column.SliceAt(last);
    bytes += end.offset + end.size - column.SliceAt(first).offset;
  }
  return bytes;
}

void HashRow(const FixedRows& rows, const std::vector<std::size_t>& columns,
             const ValueSameness& sameness, std::int64_t row, std::uint64_t& hash) {
  for (const std::size_t column : columns)
    hash = AddHash(hash, sameness.Hash(rows.At(row, column)));
}

}  // namespace

void HashRows(const FixedRows& rows, const std::vector<std::size_t>& columns,
              const ValueSameness& sameness, std::int64_t first, std::span<std::uint64_t> hashes) {
  std::ranges::fill(hashes, 0);
  while (!hashes.empty()) {
    const RowRun run = rows.RunAt(first);
    const std::size_t count = std::min(hashes.size(), static_cast<std::size_t>(run.end - first));
    if (run.chunk == nullptr) {
      HashRow(rows, columns, sameness, first, hashes[0]);
    } else {
      for (const std::size_t column : columns)
        HashCells(run.chunk->columns[column], run.Within(first), sameness, hashes.first(count));
    }
    first += static_cast<std::int64_t>(count);
    hashes = hashes.subspan(count);
  }
}

std::size_t LongBytes(const FixedRows& rows, std::int64_t first, std::int64_t end) {
  std::size_t bytes = 0;
  while (first < end) {
    const RowRun run = rows.RunAt(first);
    const std::int64_t last = std::min(run.end, end) - 1;
    if (run.chunk != nullptr) bytes += LongBytes(*run.chunk, run.Within(first), run.Within(last));
    first = last + 1;
  }
  return bytes;
}

}  // namespace tessel
