#include "data/rows/ColumnBuilder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <utility>

#include "contract/base/Error.h"

namespace tessel {

namespace {

std::size_t CellWidth(CellKind kind) {
  switch (kind) {
    case CellKind::Null: return 0;
    case CellKind::Boolean: return 1;
    case CellKind::Single: return 4;
    default: return IsArenaKind(kind) ? 4 : 8;
  }
}

std::uint64_t CellBits(const ColumnChunk& column, std::size_t row) {
  if (column.kind == CellKind::Boolean) return column.cells.At<std::uint8_t>(row);
  if (column.kind == CellKind::Single) return column.cells.At<std::uint32_t>(row);
  if (!IsArenaKind(column.kind)) return column.cells.At<std::uint64_t>(row);
  return std::bit_cast<std::uint64_t>(column.SliceAt(row));
}

std::string_view AsText(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

void ColumnBuilder::RaiseTooLarge(std::size_t size) {
  throw Error(errorNumber::database, "Tessel",
              "A value of " + std::to_string(size) + " bytes is too large to be shown.");
}

void ColumnBuilder::AppendNull() {
  if (data_.kind == CellKind::Mixed) return PushMixed(CellKind::Null, std::uint64_t{0});
  SetNullBits(rows_, 1);
  if (IsArenaKind(data_.kind)) {
    data_.cells.Push(static_cast<std::uint32_t>(data_.arena.Size()));
  } else {
    data_.cells.AppendZeros(CellWidth(data_.kind));
  }
  ++rows_;
}

void ColumnBuilder::SetNullBits(std::size_t first, std::size_t count) {
  if (data_.kind == CellKind::Null || count == 0) return;
  if (data_.nulls.Size() == 0) data_.nulls.AppendZeros(Chunk::maxRows / 8);
  for (std::size_t row = first; row < first + count; ++row) {
    const auto word = data_.nulls.At<std::uint64_t>(row / 64);
    data_.nulls.Put(row / 64, word | (std::uint64_t{1} << (row % 64)));
  }
}

/// Makes the column one of `kind` when all cells so far are null; else a mixed one, and returns
/// false.
bool ColumnBuilder::Become(CellKind kind) {
  if (data_.kind != CellKind::Null) {
    BecomeMixed();
    return false;
  }
  data_.kind = kind;
  data_.cells.AppendZeros(rows_ * CellWidth(kind));
  SetNullBits(0, rows_);
  return true;
}

void ColumnBuilder::BecomeMixed() {
  if (data_.kind == CellKind::Mixed) return;
  GrowBuffer cells;
  GrowBuffer kinds;
  for (std::size_t row = 0; row < rows_; ++row) {
    const bool null = data_.IsNullAt(row);
    kinds.Push(null ? CellKind::Null : data_.kind);
    cells.Push(null ? std::uint64_t{0} : CellBits(data_, row));
  }
  data_.kind = CellKind::Mixed;
  data_.cells = std::move(cells);
  data_.kinds = std::move(kinds);
  data_.nulls = GrowBuffer();
}

void ColumnBuilder::PushMixed(CellKind kind, std::uint64_t bits) {
  data_.cells.Push(bits);
  data_.kinds.Push(kind);
  ++rows_;
}

void ColumnBuilder::PushMixed(CellKind kind, std::string_view bytes) {
  const ArenaSlice slice{static_cast<std::uint32_t>(data_.arena.Size()),
                         static_cast<std::uint32_t>(bytes.size())};
  data_.arena.Append(bytes.data(), bytes.size());
  PushMixed(kind, std::bit_cast<std::uint64_t>(slice));
}

void ColumnBuilder::Append(const Value& value) {
  struct Visitor {
    ColumnBuilder& to;
    void operator()(std::monostate) const { to.AppendNull(); }
    void operator()(bool v) const { to.AppendBoolean(v); }
    void operator()(std::int64_t v) const { to.AppendInteger(v); }
    void operator()(std::uint64_t v) const { to.AppendUnsigned(v); }
    void operator()(float v) const { to.AppendSingle(v); }
    void operator()(double v) const { to.AppendDouble(v); }
    void operator()(const Decimal& v) const { to.AppendDecimal(v.digits); }
    void operator()(const Moment& v) const { to.AppendMoment(v.text); }
    void operator()(const std::string& v) const { to.AppendText(v); }
    void operator()(const Bytes& v) const { to.AppendArena(CellKind::Binary, AsText(v)); }
  };
  std::visit(Visitor{*this}, value);
}

/// An append that ran out of memory may have left its bytes behind in one buffer and not in the
/// other: cutting both back to the rows that are complete mends that as well.
void ColumnBuilder::Truncate(std::size_t rows) {
  rows_ = std::min(rows_, rows);
  data_.cells.Truncate(rows_ * CellWidth(data_.kind));
  data_.kinds.Truncate(rows_);
  if (IsArenaKind(data_.kind))
    data_.arena.Truncate(rows_ == 0 ? 0 : data_.cells.At<std::uint32_t>(rows_ - 1));
}

ColumnChunk ColumnBuilder::Take() {
  const std::array sizes = {data_.cells.Size(), data_.arena.Size()};
  data_.cells.Shrink();
  data_.kinds.Shrink();
  data_.arena.Shrink();
  data_.nulls.Truncate((rows_ + 63) / 64 * 8);
  data_.nulls.Shrink();
  ColumnChunk taken = std::exchange(data_, ColumnChunk());
  if (rows_ == Chunk::maxRows) {
    data_.cells.Reserve(sizes[0]);
    data_.arena.Reserve(sizes[1] + sizes[1] / 32);
  }
  rows_ = 0;
  return taken;
}

}  // namespace tessel
