#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "contract/base/Error.h"
#include "data/rows/ColumnChunk.h"
#include "data/rows/SpillFile.h"

namespace tessel {

/// How much memory the rows of one result may take, and where those beyond it go.
struct RowMemory {
  std::size_t bytes = 0;
  std::filesystem::path folder;

  /// A quarter of the machine's memory, but at least 256 MB; temporary files go to SpillFolder().
  [[nodiscard]] static RowMemory OfMachine();
};

/// Keeps the rows of one result within their memory: the chunks that come when it is used up are
/// written to a temporary file and stand in it from then on. Worker thread.
class ChunkKeeper {
 public:
  explicit ChunkKeeper(RowMemory memory) : memory_(std::move(memory)) {}

  /// Replaces those of `chunks`, which follow those kept before, that have to go to the file. When
  /// that fails, the reason is returned, once, and they and all that follow stay in memory.
  [[nodiscard]] std::optional<Error> Keep(std::vector<ChunkPtr>& chunks);

 private:
  [[nodiscard]] ChunkPtr Spilled(const Chunk& chunk);

  RowMemory memory_;
  std::size_t held_ = 0;
  bool failed_ = false;
  std::unique_ptr<SpillFile> file_;
};

}  // namespace tessel
