#include "bench/RawCsv.h"

#include <charconv>

namespace tessel::bench {

namespace {

template <class Number>
void Put(std::string& out, Number number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  out.append(digits, end);
}

void PutCell(std::string& out, const ColumnChunk& column, std::size_t row) {
  if (column.IsNullAt(row)) return;
  switch (column.kind) {
    case CellKind::Boolean: out += column.cells.At<std::uint8_t>(row) != 0 ? '1' : '0'; return;
    case CellKind::Integer: Put(out, column.cells.At<std::int64_t>(row)); return;
    case CellKind::Double: Put(out, column.cells.At<double>(row)); return;
    default: break;
  }
  const ArenaSlice slice = column.SliceAt(row);
  out.append(reinterpret_cast<const char*>(column.arena.Data()) + slice.offset, slice.size);
}

}  // namespace

std::string RawCsv(const RowStore& store, std::size_t bytes) {
  std::string out;
  out.reserve(bytes);
  for (const ChunkPtr& chunk : store.Chunks()) {
    for (std::size_t row = 0; row < chunk->rows; ++row) {
      for (std::size_t column = 0; column < chunk->columns.size(); ++column) {
        if (column != 0) out += ',';
        PutCell(out, chunk->columns[column], row);
      }
      out += "\r\n";
    }
  }
  return out;
}

}  // namespace tessel::bench
