#include "data/rows/RowMemory.h"

#include <algorithm>
#include <array>
#include <string>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace tessel {

namespace {

constexpr std::size_t megabyte = 1'000'000;
constexpr std::size_t leastMemory = 256 * megabyte;

std::size_t MemoryOfMachine() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long size = sysconf(_SC_PAGESIZE);
  return pages < 0 || size < 0 ? 0
                               : static_cast<std::size_t>(pages) * static_cast<std::size_t>(size);
}

using Pieces = std::vector<std::span<const std::byte>>;

/// Every buffer of every column, in a fixed order.
template <class Columns, class Take>
void ForEachBuffer(Columns& columns, Take take) {
  for (auto& column : columns)
    for (auto* buffer : {&column.cells, &column.nulls, &column.kinds, &column.arena}) take(*buffer);
}

Error NoRoom(const std::filesystem::path& folder, const std::system_error& reason) {
  return {errorNumber::file, "Tessel",
          "The rows do not fit into memory, and those beyond it not into a temporary file in '" +
              folder.string() + "': " + reason.code().message() +
              ". The rows fetched so far are kept."};
}

}  // namespace

RowMemory RowMemory::OfMachine() {
  return {std::max(MemoryOfMachine() / 4, leastMemory), SpillFolder()};
}

std::optional<Error> ChunkKeeper::Keep(std::vector<ChunkPtr>& chunks) {
  for (ChunkPtr& chunk : chunks) {
    const std::size_t size = chunk->HeldBytes();
    if (failed_ || held_ + size <= memory_.bytes) {
      held_ += size;
      continue;
    }
    try {
      chunk = Spilled(*chunk);
    } catch (const std::system_error& reason) {
      failed_ = true;
      return NoRoom(memory_.folder, reason);
    }
  }
  return std::nullopt;
}

ChunkPtr ChunkKeeper::Spilled(const Chunk& chunk) {
  if (!file_) file_ = std::make_unique<SpillFile>(memory_.folder);
  constexpr std::size_t wordSize = 8;  // Numbers stand at multiples of it, as in memory.
  static constexpr std::array<std::byte, wordSize> filling{};
  Pieces pieces;
  ForEachBuffer(chunk.columns, [&](const GrowBuffer& buffer) {
    pieces.emplace_back(buffer.Data(), buffer.Size());
    pieces.emplace_back(filling.data(), (wordSize - buffer.Size() % wordSize) % wordSize);
  });
  auto spilled = std::make_shared<Chunk>();
  spilled->part = file_->Write(pieces);
  spilled->rows = chunk.rows;
  spilled->columns.resize(chunk.columns.size());
  for (std::size_t i = 0; i < chunk.columns.size(); ++i)
    spilled->columns[i].kind = chunk.columns[i].kind;
  std::size_t piece = 0;
  const std::byte* at = spilled->part->Bytes().data();
  ForEachBuffer(spilled->columns, [&](GrowBuffer& buffer) {
    buffer = GrowBuffer::Over(at, pieces[piece].size());
    at += pieces[piece].size() + pieces[piece + 1].size();
    piece += 2;
  });
  return spilled;
}

}  // namespace tessel
