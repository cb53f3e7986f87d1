#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "contract/base/Value.h"
#include "data/rows/pages/ChunkPages.h"
#include "data/rows/pages/GrowBuffer.h"
#include "data/rows/pages/LookedPages.h"

namespace tessel {

/// What a cell holds, and what all cells of a column that are not null hold. Decimal to Binary lie
/// in an arena.
enum class CellKind : std::uint8_t {
  Null,
  Boolean,
  Integer,
  Unsigned,
  Single,
  Double,
  Decimal,
  Moment,
  Text,
  Binary,
  Mixed,  ///< Of a column only: every cell says its own kind.
};

[[nodiscard]] constexpr bool IsArenaKind(CellKind kind) {
  return kind >= CellKind::Decimal && kind <= CellKind::Binary;
}

/// Where a cell of a mixed column stands in the arena.
struct ArenaSlice {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};

/// The cells of one column of one chunk, in the most compact of these forms:
/// - Null: nothing at all;
/// - numbers: an array of their own width;
/// - arena kinds: 4-byte ends, each cell begins where the one before it ends;
/// - Mixed: one byte of kind and 8 bytes a cell, a number or an ArenaSlice.
/// Except in a mixed column a cell is null when its bit in `nulls` is set; without nulls there are
/// no bits.
struct ColumnChunk {
  CellKind kind = CellKind::Null;
  GrowBuffer cells;
  GrowBuffer nulls;  ///< 64-bit words.
  GrowBuffer kinds;  ///< Mixed only.
  GrowBuffer arena;

  [[nodiscard]] ValueView At(std::size_t row) const {
    ValueView value;
    Read(row, value);
    return value;
  }
  /// The same, put where it is wanted: a value made elsewhere and moved there takes longer.
  void Read(std::size_t row, ValueView& value) const;
  [[nodiscard]] bool IsNullAt(std::size_t row) const {
    if (kind == CellKind::Null) return true;
    if (kind == CellKind::Mixed) return kinds.At<CellKind>(row) == CellKind::Null;
    return nulls.Size() != 0 && ((nulls.At<std::uint64_t>(row / 64) >> (row % 64)) & 1U) != 0;
  }
  /// Start and size in the arena of a cell of an arena kind.
  [[nodiscard]] ArenaSlice SliceAt(std::size_t row) const {
    const std::uint32_t start = row == 0 ? 0 : cells.At<std::uint32_t>(row - 1);
    return {start, cells.At<std::uint32_t>(row) - start};
  }
  [[nodiscard]] std::size_t HeldBytes() const {
    return cells.Capacity() + nulls.Capacity() + kinds.Capacity() + arena.Capacity();
  }

 private:
  void ReadMixed(std::size_t row, ValueView& value) const;
  void ReadArena(CellKind of, ArenaSlice slice, ValueView& value) const;
};

/// Up to `maxRows` rows, never changed once made: handed from the worker to cursors without a copy.
/// Any thread.
struct Chunk {
  static constexpr std::size_t maxRows = 65536;

  std::vector<ColumnChunk> columns;
  std::size_t rows = 0;
  std::shared_ptr<const ChunkPages> pages;  ///< Where its cells stand; null: in their buffers.
  std::shared_ptr<LookedPages> looked;      ///< Hears of looks at the pages; null without them.

  [[nodiscard]] bool InFile() const { return pages && pages->InFile(); }
  /// Its cells are about to be read.
  void NoteLook() const {
    if (pages) looked->Note(pages);
  }
  /// Bytes of memory, as allocated; a chunk that stands in a file has none.
  [[nodiscard]] std::size_t HeldBytes() const;
};

using ChunkPtr = std::shared_ptr<const Chunk>;

inline void ColumnChunk::ReadArena(CellKind of, ArenaSlice slice, ValueView& value) const {
  const std::byte* start = arena.Data() + slice.offset;
  const std::string_view text(reinterpret_cast<const char*>(start), slice.size);
  switch (of) {
    case CellKind::Decimal: value.emplace<DecimalView>(DecimalView{text}); return;
    case CellKind::Moment: value.emplace<MomentView>(MomentView{text}); return;
    case CellKind::Text: value.emplace<std::string_view>(text); return;
    default: value.emplace<BinaryView>(BinaryView{std::span(start, slice.size)}); return;
  }
}

inline void ColumnChunk::Read(std::size_t row, ValueView& value) const {
  if (kind == CellKind::Mixed) {
    ReadMixed(row, value);
  } else if (IsNullAt(row)) {
    value.emplace<std::monostate>();
  } else {
    switch (kind) {
      case CellKind::Boolean: value.emplace<bool>(cells.At<std::uint8_t>(row) != 0); return;
      case CellKind::Integer: value.emplace<std::int64_t>(cells.At<std::int64_t>(row)); return;
      case CellKind::Unsigned: value.emplace<std::uint64_t>(cells.At<std::uint64_t>(row)); return;
      case CellKind::Single: value.emplace<float>(cells.At<float>(row)); return;
      case CellKind::Double: value.emplace<double>(cells.At<double>(row)); return;
      default: ReadArena(kind, SliceAt(row), value); return;
    }
  }
}

}  // namespace tessel
