#include "data/rows/ColumnChunk.h"

#include <bit>

namespace tessel {

void ColumnChunk::ReadMixed(std::size_t row, ValueView& value) const {
  const auto cell = kinds.At<CellKind>(row);
  const auto bits = cells.At<std::uint64_t>(row);
  switch (cell) {
    case CellKind::Null: value = std::monostate{}; return;
    case CellKind::Boolean: value = bits != 0; return;
    case CellKind::Integer: value = static_cast<std::int64_t>(bits); return;
    case CellKind::Unsigned: value = bits; return;
    case CellKind::Single: value = std::bit_cast<float>(static_cast<std::uint32_t>(bits)); return;
    case CellKind::Double: value = std::bit_cast<double>(bits); return;
    default: ReadArena(cell, std::bit_cast<ArenaSlice>(bits), value);
  }
}

std::size_t Chunk::HeldBytes() const {
  if (pages) return pages->InFile() ? 0 : pages->Size();
  std::size_t bytes = 0;
  for (const ColumnChunk& column : columns) bytes += column.HeldBytes();
  return bytes;
}

}  // namespace tessel
