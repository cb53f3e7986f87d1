#pragma once

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <span>
#include <utility>

namespace tessel {

/// A temporary file without a name, for what does not fit into memory: it is gone with the last
/// bytes whose place it took, however the process ends. Any thread.
class SpillFile {
 public:
  /// The file is made in `folder` when it is first needed.
  explicit SpillFile(std::filesystem::path folder) : folder_(std::move(folder)) {}
  SpillFile(const SpillFile&) = delete;
  SpillFile& operator=(const SpillFile&) = delete;
  ~SpillFile();

  /// Writes `pages`, memory from mmap that nobody writes to any more, and maps the file in their
  /// place: they can be read all the while and for as long as they stay mapped, but take memory
  /// only once they are looked at. Throws std::system_error, for example when the disk is full:
  /// they are as before then.
  void TakePlaceOf(std::span<std::byte> pages);

  /// `size` rounded up to whole pages.
  [[nodiscard]] static std::size_t WholePages(std::size_t size);

 private:
  [[nodiscard]] std::size_t Write(std::span<const std::byte> pages);
  void WriteAll(std::span<const std::byte> bytes, std::size_t offset) const;

  const std::filesystem::path folder_;
  std::mutex mutex_;
  int file_ = -1;
  std::size_t end_ = 0;
};

/// Where temporary files that may become large belong: $TMPDIR, else the folder of the system that
/// lies on a disk.
[[nodiscard]] std::filesystem::path SpillFolder();

}  // namespace tessel
