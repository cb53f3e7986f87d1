#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// What is read and written in pieces.
//
// Files that are too long to be held in memory whole: read and written in pieces. Files gives them
// (OpenToRead, StartReplacing). One thread at a time uses an object of these, and it need not be
// the UI thread: a disk takes its time. Failures raise Error(file) as those of Files do.

namespace tessel {

/// A file that is being written beside the one that it will replace, which stays as it is until
/// PutInPlace: who gives up in the middle, or fails, has lost nothing. Destroyed before PutInPlace
/// has succeeded, nothing of the new file is left.
class FileReplacement {
 public:
  FileReplacement() = default;
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  virtual ~FileReplacement() = default;

  /// Appends bytes. Raises when they cannot be written, as on a full disk; the object is good for
  /// nothing but to be destroyed then.
  virtual void Write(std::string_view bytes) = 0;
  /// Syncs what was written and puts it in place of the old file, wholly or not at all. The last
  /// call, and only one. It may take as long as the disk needs for all that was written.
  virtual void PutInPlace() = 0;
};

/// A file that is being read from its beginning on. Who wants to read it twice opens it twice. What
/// another program changes in it meanwhile may be seen or not.
class FileReader {
 public:
  FileReader() = default;
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;
  virtual ~FileReader() = default;

  /// Bytes of the file when it was opened, as far as the system tells: for a progress bar, not for
  /// the place to stop at.
  [[nodiscard]] virtual std::uint64_t Size() const = 0;
  /// Fills `buffer`, which is not empty, with the bytes that follow and says how many there were:
  /// fewer than it has room for only at the end of the file, 0 behind it. Raises when the file
  /// cannot be read.
  [[nodiscard]] virtual std::size_t Read(std::span<char> buffer) = 0;
};

}  // namespace tessel
