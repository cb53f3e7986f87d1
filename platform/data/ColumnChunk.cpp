#include "platform/data/ColumnChunk.h"

#include <bit>

namespace tessel {

ValueView ColumnChunk::MixedAt(std::size_t row) const {
  const auto cell = kinds.At<CellKind>(row);
  const auto bits = cells.At<std::uint64_t>(row);
  switch (cell) {
    case CellKind::Null: return std::monostate{};
    case CellKind::Boolean: return bits != 0;
    case CellKind::Integer: return static_cast<std::int64_t>(bits);
    case CellKind::Unsigned: return bits;
    case CellKind::Single: return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    case CellKind::Double: return std::bit_cast<double>(bits);
    default: return ArenaView(cell, std::bit_cast<ArenaSlice>(bits));
  }
}

std::size_t Chunk::HeldBytes() const {
  std::size_t bytes = 0;
  for (const ColumnChunk& column : columns) bytes += column.HeldBytes();
  return bytes;
}

}  // namespace tessel
