#include "data/combined/RowHashes.h"

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

void HashRow(const FixedRows& rows, const std::vector<std::size_t>& columns,
             const ValueSameness& sameness, std::int64_t row, std::uint64_t& hash) {
  for (const std::size_t column : columns)
    hash = AddHash(hash, sameness.Hash(rows.At(row, column)));
}

/// As many rows of the run that begins with `row` as there are of `most`.
RowRun RunOf(const FixedRows& rows, std::int64_t row, std::int64_t most) {
  RowRun run = rows.RunAt(row);
  run.rows = std::min(run.rows, most);
  return run;
}

}  // namespace

void HashRows(const FixedRows& rows, const std::vector<std::size_t>& columns,
              const ValueSameness& sameness, std::int64_t first, std::span<std::uint64_t> hashes) {
  std::ranges::fill(hashes, 0);
  while (!hashes.empty()) {
    const RowRun run = RunOf(rows, first, static_cast<std::int64_t>(hashes.size()));
    const auto count = static_cast<std::size_t>(run.rows);
    if (run.chunk == nullptr) {
      HashRow(rows, columns, sameness, first, hashes[0]);
    } else {
      for (const std::size_t column : columns)
        HashCells(run.chunk->columns[column], run.first, sameness, hashes.first(count));
    }
    first += run.rows;
    hashes = hashes.subspan(count);
  }
}

std::size_t LongBytes(const FixedRows& rows, std::int64_t first, std::int64_t count) {
  std::size_t bytes = 0;
  for (const std::int64_t end = first + count; first < end;) {
    const RowRun run = RunOf(rows, first, end - first);
    first += run.rows;
    if (run.chunk == nullptr) continue;
    const std::size_t last = run.first + static_cast<std::size_t>(run.rows) - 1;
    for (const ColumnChunk& column : run.chunk->columns) {
      if (!IsArenaKind(column.kind)) continue;
      const ArenaSlice lastCell = column.SliceAt(last);
      bytes += lastCell.offset + lastCell.size - column.SliceAt(run.first).offset;
    }
  }
  return bytes;
}

}  // namespace tessel
