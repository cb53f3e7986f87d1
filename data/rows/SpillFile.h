#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace tessel {

/// A part of a file, mapped into memory for as long as the object lives: its bytes stay where they
/// are, but take memory only once they are looked at. Any thread.
class FilePart {
 public:
  /// `offset` is a multiple of the page size; the file may be closed afterwards. Throws
  /// std::system_error.
  FilePart(int file, std::size_t offset, std::size_t size);
  FilePart(const FilePart&) = delete;
  FilePart& operator=(const FilePart&) = delete;
  ~FilePart();

  [[nodiscard]] std::span<const std::byte> Bytes() const { return {data_, size_}; }
  /// Gives the memory back. What is looked at again comes from the file again.
  void LetGo() const noexcept;

 private:
  const std::byte* data_ = nullptr;
  std::size_t size_;
};

/// A temporary file without a name, for what does not fit into memory: it is gone with the last
/// part that is mapped, however the process ends. Worker thread.
class SpillFile {
 public:
  /// A new file in `folder`. Throws std::system_error.
  explicit SpillFile(const std::filesystem::path& folder);
  SpillFile(const SpillFile&) = delete;
  SpillFile& operator=(const SpillFile&) = delete;
  ~SpillFile();

  /// Writes the pieces one behind the other and maps them. Throws std::system_error, for example
  /// when the disk is full.
  [[nodiscard]] std::shared_ptr<const FilePart>
  Write(const std::vector<std::span<const std::byte>>& pieces);

 private:
  void WriteAll(std::span<const std::byte> bytes, std::size_t offset) const;

  int file_ = -1;
  std::size_t end_ = 0;
};

/// Where temporary files that may become large belong: $TMPDIR, else the folder of the system that
/// lies on a disk.
[[nodiscard]] std::filesystem::path SpillFolder();

}  // namespace tessel
