#include "bench/RawBlock.h"

namespace tessel::bench {

void RawTexts::AddNull() {
  if (nulls.empty()) nulls.resize(RawBlock::rows / 64);
  nulls[ends.size() / 64] |= std::uint64_t{1} << (ends.size() % 64);
  ends.push_back(static_cast<std::uint32_t>(arena.size()));
}

RawBlock::RawBlock() {
  for (auto* numbers : {&id, &quantity, &paid}) numbers->reserve(rows);
  amount.reserve(rows);
  for (RawTexts* texts : {&customer, &city, &placed, &note, &code, &rate})
    texts->ends.reserve(rows);
}

void RawBlock::Shrink() {
  for (RawTexts* texts : {&customer, &city, &placed, &note, &code, &rate})
    texts->arena.shrink_to_fit();
}

std::size_t RawBlock::Bytes() const {
  std::size_t bytes = (id.capacity() + quantity.capacity() + paid.capacity()) * 8;
  bytes += amount.capacity() * 8;
  for (const RawTexts* texts : {&customer, &city, &placed, &note, &code, &rate})
    bytes += texts->Bytes();
  return bytes;
}

void RawBlocks::Begin() {
  if (!blocks_.empty()) blocks_.back().Shrink();
  blocks_.emplace_back();
}

std::size_t RawBlocks::Bytes() const {
  std::size_t bytes = 0;
  for (const RawBlock& block : blocks_) bytes += block.Bytes();
  return bytes;
}

std::int64_t RawBlocks::Rows() const {
  std::int64_t rows = 0;
  for (const RawBlock& block : blocks_) rows += static_cast<std::int64_t>(block.id.size());
  return rows;
}

}  // namespace tessel::bench
