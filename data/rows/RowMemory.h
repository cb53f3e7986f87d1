#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "contract/base/Error.h"
#include "data/rows/ColumnChunk.h"
#include "data/rows/pages/ChunkPages.h"
#include "data/rows/pages/PageReturn.h"

namespace tessel {

/// How much memory the rows of all results may take together, and where those beyond it go.
struct RowMemory {
  std::size_t bytes = 0;
  std::filesystem::path folder;

  /// A quarter of the machine's memory, but at least 256 MB; temporary files go to SpillFolder().
  [[nodiscard]] static RowMemory OfMachine();
};

/// The one owner of the memory that rows take, shared by all connections of the program. Where it
/// is used up the oldest rows, of whatever result, go to the file of their result. Any thread.
class RowBudget {
 public:
  explicit RowBudget(RowMemory memory) : memory_(std::move(memory)) {}

  /// A file for the rows of one result.
  [[nodiscard]] std::shared_ptr<SpillFile> NewFile() const {
    return std::make_shared<SpillFile>(memory_.folder);
  }
  /// Memory for `size` bytes of rows, the newest ones. It counts until it ends or goes to `file`.
  [[nodiscard]] std::shared_ptr<ChunkPages> NewPages(std::size_t size,
                                                     std::shared_ptr<SpillFile> file) const;
  /// Lets the pages, which are filled, be moved to their file.
  void Add(const std::shared_ptr<ChunkPages>& pages);
  /// Moves the oldest to their files until the others fit: on the thread that calls, which reads
  /// nobody's rows but these. When that fails they stay in memory, and the reason is returned.
  [[nodiscard]] std::optional<Error> MakeRoom();
  [[nodiscard]] bool Fits() const { return *held_ <= memory_.bytes; }
  /// Bytes that the rows in memory take now.
  [[nodiscard]] std::size_t HeldBytes() const { return *held_; }
  /// To hear of looks at the rows.
  [[nodiscard]] const std::shared_ptr<LookedPages>& Looked() const { return looked_; }
  /// What each result may take beyond the budget when nothing more can go to a file: so that a
  /// small one can still be read.
  [[nodiscard]] std::size_t Allowance() const { return memory_.bytes / 64; }

 private:
  [[nodiscard]] std::shared_ptr<ChunkPages> TakeOldest();
  void PutBack(std::shared_ptr<ChunkPages> pages);
  void ForgetEnded();

  const RowMemory memory_;
  const std::shared_ptr<RowTally> held_ = std::make_shared<RowTally>(0);
  const std::shared_ptr<LookedPages> looked_ = std::make_shared<LookedPages>();
  const std::shared_ptr<PageReturn> return_ = std::make_shared<PageReturn>();
  std::mutex mutex_;
  std::deque<std::weak_ptr<ChunkPages>> inMemory_;  ///< The oldest first.
  std::size_t forgetAt_ = 1024;  ///< With so many entries those that ended are taken out.
};

/// Brings the rows of one result into the memory of the program. Worker thread.
class ChunkKeeper {
 public:
  explicit ChunkKeeper(std::shared_ptr<RowBudget> budget)
      : budget_(std::move(budget)), file_(budget_->NewFile()) {}

  /// Replaces `chunks`, which follow those kept before, by the same ones in pages of their own, and
  /// makes room for them. When that fails, the reason is returned, once, as soon as this result
  /// takes more than its allowance; they and all that follow stay in memory.
  [[nodiscard]] std::optional<Error> Keep(std::vector<ChunkPtr>& chunks);

 private:
  void KeepOne(ChunkPtr& chunk);

  std::shared_ptr<RowBudget> budget_;
  std::shared_ptr<SpillFile> file_;
  std::optional<Error> noRoom_;
  bool told_ = false;
  std::size_t beyond_ = 0;  ///< Bytes kept since there was no room.
};

}  // namespace tessel
