#include "data/combined/matching/RowSameness.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tessel {

namespace {

/// The cells of a column in a run of each side.
struct ColumnCells {
  const ColumnChunk& a;
  const ColumnChunk& b;
  const RowRun& runA;
  const RowRun& runB;
};

/// Calls `same` with the places of both cells, for pairs where neither is null.
template <class SameCells>
void CompareEach(const ColumnCells& cells, std::span<const RowPair> pairs,
                 std::span<std::uint8_t> differ, SameCells same) {
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const std::size_t a = cells.runA.Within(pairs[i].a);
    const std::size_t b = cells.runB.Within(pairs[i].b);
    const bool nullA = cells.a.IsNullAt(a);
    const bool isSame = nullA || cells.b.IsNullAt(b) ? nullA == cells.b.IsNullAt(b) : same(a, b);
    differ[i] |= isSame ? 0 : 1;
  }
}

template <class T>
void CompareNumbers(const ColumnCells& cells, std::span<const RowPair> pairs,
                    std::span<std::uint8_t> differ) {
  CompareEach(cells, pairs, differ, [&](std::size_t a, std::size_t b) {
    const T x = cells.a.cells.At<T>(a);
    const T y = cells.b.cells.At<T>(b);
    return x == y || (x != x && y != y);  // Not-a-number is not equal to itself.
  });
}

bool SameBytes(const ColumnCells& cells, std::size_t a, std::size_t b) {
  const ArenaSlice x = cells.a.SliceAt(a);
  const ArenaSlice y = cells.b.SliceAt(b);
  if (x.size != y.size) return false;
  if (x.size == 0) return true;  // An arena without bytes has no address.
  return std::memcmp(cells.a.arena.Data() + x.offset, cells.b.arena.Data() + y.offset, x.size) == 0;
}

void CompareBytes(const ColumnCells& cells, std::span<const RowPair> pairs,
                  std::span<std::uint8_t> differ) {
  CompareEach(cells, pairs, differ,
              [&](std::size_t a, std::size_t b) { return SameBytes(cells, a, b); });
}

/// Cells whose characters may differ although they are worth the same, or of unlike kinds.
void CompareWorth(const ColumnCells& cells, std::span<const RowPair> pairs,
                  std::span<std::uint8_t> differ, const ValueSameness& values) {
  const bool haveBytes = cells.a.kind == cells.b.kind && IsArenaKind(cells.a.kind);
  CompareEach(cells, pairs, differ, [&](std::size_t a, std::size_t b) {
    return (haveBytes && SameBytes(cells, a, b)) || values.Same(cells.a.At(a), cells.b.At(b));
  });
}

void CompareCells(const ColumnCells& cells, std::span<const RowPair> pairs,
                  std::span<std::uint8_t> differ, const ValueSameness& values) {
  const CellKind kind = cells.a.kind == cells.b.kind ? cells.a.kind : CellKind::Mixed;
  switch (kind) {
    case CellKind::Boolean: CompareNumbers<std::uint8_t>(cells, pairs, differ); return;
    case CellKind::Integer: CompareNumbers<std::int64_t>(cells, pairs, differ); return;
    case CellKind::Unsigned: CompareNumbers<std::uint64_t>(cells, pairs, differ); return;
    case CellKind::Single: CompareNumbers<float>(cells, pairs, differ); return;
    case CellKind::Double: CompareNumbers<double>(cells, pairs, differ); return;
    case CellKind::Text:
    case CellKind::Binary: CompareBytes(cells, pairs, differ); return;
    default: CompareWorth(cells, pairs, differ, values); return;
  }
}

}  // namespace

void RowSameness::Compare(std::span<const RowPair> pairs, std::span<const ColumnPair> columns,
                          std::span<std::uint8_t> differ) const {
  while (!pairs.empty()) {
    const RowRun runA = a_.RunAt(pairs[0].a);
    const RowRun runB = b_.RunAt(pairs[0].b);
    const auto isWithin = [&](const RowPair& pair) {
      return runA.Holds(pair.a) && runB.Holds(pair.b);
    };
    const auto end = std::ranges::find_if_not(pairs, isWithin);
    const auto count = static_cast<std::size_t>(end - pairs.begin());
    if (runA.chunk == nullptr || runB.chunk == nullptr) {
      for (std::size_t i = 0; i < count; ++i) differ[i] |= Same(pairs[i], columns) ? 0 : 1;
    } else {
      for (const ColumnPair& column : columns)
        CompareCells({runA.chunk->columns[column.a], runB.chunk->columns[column.b], runA, runB},
                     pairs.first(count), differ.first(count), values_);
    }
    pairs = pairs.subspan(count);
    differ = differ.subspan(count);
  }
}

bool RowSameness::Same(RowPair pair, std::span<const ColumnPair> columns) const {
  return std::ranges::all_of(columns, [&](const ColumnPair& column) {
    return values_.Same(a_.At(pair.a, column.a), b_.At(pair.b, column.b));
  });
}

std::vector<std::uint32_t> RowSameness::Differing(RowPair pair,
                                                  std::span<const ColumnPair> columns) const {
  std::vector<std::uint32_t> differing;
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (!values_.Same(a_.At(pair.a, columns[i].a), b_.At(pair.b, columns[i].b)))
      differing.push_back(static_cast<std::uint32_t>(i));
  return differing;
}

}  // namespace tessel
