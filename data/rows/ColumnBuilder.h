#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "data/rows/ColumnChunk.h"

namespace tessel {

/// Collects the cells of one column. Cells may be of different kinds: the column then becomes a
/// mixed one by itself. At most Chunk::maxRows cells. Worker thread.
class ColumnBuilder {
 public:
  /// An arena that grows beyond this many bytes asks for the chunk to be closed.
  static constexpr std::size_t arenaGoal = std::size_t{64} << 20U;
  /// No cell may be larger.
  static constexpr std::size_t largestCell = std::size_t{1} << 31U;

  void AppendNull();
  void AppendBoolean(bool value) { AppendFixed<std::uint8_t>(CellKind::Boolean, value ? 1 : 0); }
  void AppendInteger(std::int64_t value) { AppendFixed(CellKind::Integer, value); }
  void AppendUnsigned(std::uint64_t value) { AppendFixed(CellKind::Unsigned, value); }
  void AppendSingle(float value) { AppendFixed(CellKind::Single, value); }
  void AppendDouble(double value) { AppendFixed(CellKind::Double, value); }
  void AppendDecimal(std::string_view digits) { AppendArena(CellKind::Decimal, digits); }
  void AppendMoment(std::string_view text) { AppendArena(CellKind::Moment, text); }
  /// Any bytes; kept as they are even when they are no valid UTF-8.
  void AppendText(std::string_view text) { AppendArena(CellKind::Text, text); }
  void AppendBinary(std::span<const std::byte> bytes) {
    AppendArena(CellKind::Binary, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  }
  /// Adds an owned value by its kind.
  void Append(const Value& value);

  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] bool ArenaIsLarge() const { return data_.arena.Size() > arenaGoal; }

  /// Drops the cells from `rows` on.
  void Truncate(std::size_t rows);
  /// The cells collected; the builder is empty then, ready for the next chunk of the same column.
  [[nodiscard]] ColumnChunk Take();

 private:
  template <class T>
  void AppendFixed(CellKind kind, T value) {
    if (data_.kind != kind) [[unlikely]] {
      if (!Become(kind)) return PushMixed(kind, Bits(value));
    }
    data_.cells.Push(value);
    ++rows_;
  }
  void AppendArena(CellKind kind, std::string_view bytes) {
    if (bytes.size() > largestCell) [[unlikely]]
      RaiseTooLarge(bytes.size());
    if (data_.kind != kind) [[unlikely]] {
      if (!Become(kind)) return PushMixed(kind, bytes);
    }
    data_.arena.Append(bytes.data(), bytes.size());
    data_.cells.Push(static_cast<std::uint32_t>(data_.arena.Size()));
    ++rows_;
  }

  template <class T>
  [[nodiscard]] static std::uint64_t Bits(T value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(T));
    return bits;
  }

  [[nodiscard]] bool Become(CellKind kind);
  void BecomeMixed();
  void SetNullBits(std::size_t first, std::size_t count);
  void PushMixed(CellKind kind, std::uint64_t bits);
  void PushMixed(CellKind kind, std::string_view bytes);
  [[noreturn]] static void RaiseTooLarge(std::size_t size);

  ColumnChunk data_;
  std::size_t rows_ = 0;
};

}  // namespace tessel
