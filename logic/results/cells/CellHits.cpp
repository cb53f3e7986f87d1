#include "logic/results/cells/CellHits.h"

#include <algorithm>
#include <bit>

namespace tessel {

void CellHits::Add(std::size_t cell) {
  if (cell >= cells_ || Has(cell)) return;
  words_[cell / bits] |= std::uint64_t{1} << (cell % bits);
  ++count_;
}

std::optional<std::size_t> CellHits::FirstFrom(std::size_t from) const {
  if (from >= cells_) return std::nullopt;
  std::size_t word = from / bits;
  std::uint64_t rest = words_[word] & (~std::uint64_t{0} << (from % bits));
  while (rest == 0) {
    if (++word == words_.size()) return std::nullopt;
    rest = words_[word];
  }
  return word * bits + static_cast<std::size_t>(std::countr_zero(rest));
}

std::optional<std::size_t> CellHits::LastBefore(std::size_t before) const {
  for (std::size_t end = std::min(before, cells_); end > 0;) {
    const std::size_t word = (end - 1) / bits;
    const std::size_t used = end - word * bits;
    const std::uint64_t mask = used == bits ? ~std::uint64_t{0} : (std::uint64_t{1} << used) - 1;
    if (const std::uint64_t rest = words_[word] & mask)
      return word * bits + bits - 1 - static_cast<std::size_t>(std::countl_zero(rest));
    end = word * bits;
  }
  return std::nullopt;
}

std::int64_t CellHits::CountBefore(std::size_t cell) const {
  std::int64_t count = 0;
  const std::size_t whole = std::min(cell, cells_) / bits;
  for (std::size_t word = 0; word < whole; ++word) count += std::popcount(words_[word]);
  const std::size_t rest = std::min(cell, cells_) % bits;
  if (rest > 0) count += std::popcount(words_[whole] & ((std::uint64_t{1} << rest) - 1));
  return count;
}

}  // namespace tessel
