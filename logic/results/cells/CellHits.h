#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessel {

/// Cells that were found, by their numbers: row by row from 0. One bit a cell.
class CellHits {
 public:
  CellHits() = default;
  explicit CellHits(std::size_t cells) : words_((cells + bits - 1) / bits), cells_(cells) {}

  void Add(std::size_t cell);
  [[nodiscard]] bool Has(std::size_t cell) const {
    return cell < cells_ && ((words_[cell / bits] >> (cell % bits)) & 1U) != 0;
  }
  [[nodiscard]] std::int64_t Count() const { return count_; }
  /// The first one from `from` on; nothing when there is none before the end.
  [[nodiscard]] std::optional<std::size_t> FirstFrom(std::size_t from) const;
  /// The last one before `before`.
  [[nodiscard]] std::optional<std::size_t> LastBefore(std::size_t before) const;
  /// How many there are before `cell`.
  [[nodiscard]] std::int64_t CountBefore(std::size_t cell) const;

 private:
  static constexpr std::size_t bits = 64;

  std::vector<std::uint64_t> words_;
  std::size_t cells_ = 0;
  std::int64_t count_ = 0;
};

}  // namespace tessel
