#include "data/rows/RowMemory.h"

#include <algorithm>
#include <cstring>
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

/// What a buffer takes in pages: numbers stand at multiples of 8, as in memory.
std::size_t RoomOf(const GrowBuffer& buffer) {
  constexpr std::size_t wordSize = 8;
  return (buffer.Size() + wordSize - 1) / wordSize * wordSize;
}

std::size_t RoomOf(const Chunk& chunk) {
  std::size_t size = 0;
  for (const ColumnChunk& column : chunk.columns)
    for (const auto* buffer : {&column.cells, &column.nulls, &column.kinds, &column.arena})
      size += RoomOf(*buffer);
  return size;
}

/// The same chunk, its cells in `pages`.
ChunkPtr CopiedTo(std::shared_ptr<const ChunkPages> pages, std::shared_ptr<LookedPages> looked,
                  const Chunk& chunk) {
  auto copy = std::make_shared<Chunk>();
  copy->rows = chunk.rows;
  std::byte* at = pages->Data();
  const auto copied = [&at](const GrowBuffer& buffer) {
    if (buffer.Size() != 0) std::memcpy(at, buffer.Data(), buffer.Size());
    return GrowBuffer::Over(std::exchange(at, at + RoomOf(buffer)), buffer.Size());
  };
  copy->columns.reserve(chunk.columns.size());
  for (const ColumnChunk& from : chunk.columns)
    copy->columns.push_back({.kind = from.kind,
                             .cells = copied(from.cells),
                             .nulls = copied(from.nulls),
                             .kinds = copied(from.kinds),
                             .arena = copied(from.arena)});
  copy->pages = std::move(pages);
  copy->looked = std::move(looked);
  return copy;
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

// --- the memory of all rows ----------------------------------------------------------------------

std::shared_ptr<ChunkPages> RowBudget::NewPages(std::size_t size,
                                                std::shared_ptr<SpillFile> file) const {
  auto made = std::make_unique<ChunkPages>(size, std::move(file));
  made->CountIn(held_);
  return {made.release(), [returned = return_](ChunkPages* pages) {
            returned->Take(std::unique_ptr<ChunkPages>(pages));
          }};
}

void RowBudget::Add(const std::shared_ptr<ChunkPages>& pages) {
  const std::lock_guard lock(mutex_);
  if (inMemory_.size() >= forgetAt_) ForgetEnded();
  inMemory_.push_back(pages);
}

/// Takes the time of all entries, but only when there are twice as many as were left last.
void RowBudget::ForgetEnded() {
  std::erase_if(inMemory_, [](const auto& pages) { return pages.expired(); });
  forgetAt_ = std::max(forgetAt_, inMemory_.size() * 2);
}

std::optional<Error> RowBudget::MakeRoom() {
  while (const std::shared_ptr<ChunkPages> oldest = TakeOldest()) {
    try {
      oldest->MoveToFile();
    } catch (const std::system_error& reason) {
      PutBack(oldest);
      return NoRoom(memory_.folder, reason);
    }
  }
  return std::nullopt;
}

/// Null when all fit. What was taken counts no more: nobody else has to make room for it.
std::shared_ptr<ChunkPages> RowBudget::TakeOldest() {
  const std::lock_guard lock(mutex_);
  while (!Fits() && !inMemory_.empty()) {
    std::shared_ptr<ChunkPages> oldest = inMemory_.front().lock();
    inMemory_.pop_front();
    if (!oldest) continue;
    oldest->CountOut();
    return oldest;
  }
  return nullptr;
}

void RowBudget::PutBack(std::shared_ptr<ChunkPages> pages) {
  pages->CountIn(held_);
  const std::lock_guard lock(mutex_);
  inMemory_.emplace_front(std::move(pages));
}

// --- the rows of a result ------------------------------------------------------------------------

std::optional<Error> ChunkKeeper::Keep(std::vector<ChunkPtr>& chunks) {
  for (ChunkPtr& chunk : chunks) KeepOne(chunk);
  if (!noRoom_ || told_ || beyond_ <= budget_->Allowance()) return std::nullopt;
  told_ = true;
  return noRoom_;
}

/// A disk that was found full is not tried again for each chunk.
void ChunkKeeper::KeepOne(ChunkPtr& chunk) {
  const std::shared_ptr<ChunkPages> pages = budget_->NewPages(RoomOf(*chunk), file_);
  chunk = CopiedTo(pages, budget_->Looked(), *chunk);
  budget_->Add(pages);
  if (budget_->Fits()) return;
  if (!noRoom_) noRoom_ = budget_->MakeRoom();
  if (noRoom_) beyond_ += pages->Size();
}

}  // namespace tessel
