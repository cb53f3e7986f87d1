#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tessel::bench {

/// A column of texts: their bytes one behind the other, where each ends, and bits for the nulls.
struct RawTexts {
  std::vector<std::uint32_t> ends;
  std::vector<char> arena;
  std::vector<std::uint64_t> nulls;

  void Add(std::string_view text) {
    arena.insert(arena.end(), text.begin(), text.end());
    ends.push_back(static_cast<std::uint32_t>(arena.size()));
  }
  void AddNull();
  [[nodiscard]] std::size_t Bytes() const {
    return ends.capacity() * 4 + arena.capacity() + nulls.capacity() * 8;
  }
};

/// Rows of the table `orders`, as typed arrays.
struct RawBlock {
  static constexpr std::size_t rows = 65536;

  std::vector<std::int64_t> id, quantity, paid;
  std::vector<double> amount;
  RawTexts customer, city, placed, note, code, rate;

  RawBlock();
  /// Gives back what was reserved and not used.
  void Shrink();
  [[nodiscard]] std::size_t Bytes() const;
};

/// The rows of `orders` that a loop keeps which knows the columns: the least that keeping them
/// takes.
class RawBlocks {
 public:
  [[nodiscard]] RawBlock& ForNextRow() {
    if (blocks_.empty() || blocks_.back().id.size() == RawBlock::rows) Begin();
    return blocks_.back();
  }
  /// As allocated.
  [[nodiscard]] std::size_t Bytes() const;
  [[nodiscard]] std::int64_t Rows() const;

 private:
  void Begin();

  std::vector<RawBlock> blocks_;
};

template <class Number>
Number RawNumber(std::optional<std::string_view> text) {
  Number number{};
  if (text) std::from_chars(text->data(), text->data() + text->size(), number);
  return number;
}

/// Adds a row whose cells come as text: `cell` gives that of each column, counted from 0.
template <class Cell>
void AddRowOfTexts(RawBlock& block, Cell cell) {
  const auto add = [&](RawTexts& to, int column) {
    const std::optional<std::string_view> text = cell(column);
    if (text) to.Add(*text);
    else to.AddNull();
  };
  block.id.push_back(RawNumber<std::int64_t>(cell(0)));
  add(block.customer, 1);
  add(block.city, 2);
  block.amount.push_back(RawNumber<double>(cell(3)));
  block.quantity.push_back(RawNumber<std::int64_t>(cell(4)));
  add(block.placed, 5);
  add(block.note, 6);
  const std::optional<std::string_view> paid = cell(7);
  block.paid.push_back(paid == "t" || paid == "1" ? 1 : 0);
  add(block.code, 8);
  add(block.rate, 9);
}

}  // namespace tessel::bench
