#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "contract/system/FileStreams.h"

namespace tessel {

/// A lock that is held; destroying it gives it back. It may outlive the Files that gave it.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

/// The files of the program. Paths are in the platform's own form, UTF-8; one that does not begin
/// at the root begins at the current folder. Failures raise Error(file) whose description is the
/// system's reason ("No such file or directory"), with the path in front. The program calls it on
/// the UI thread, and every call is done when it returns.
class Files {
 public:
  virtual ~Files() = default;

  /// Whether a normal file of that name is there; false for folders, hidden files (a name that
  /// begins with a dot) and everything else. A symbolic link counts as what it leads to. Never
  /// raises.
  [[nodiscard]] virtual bool FileExists(const std::string& path) const = 0;

  /// Bytes of a file as far as the system tells. A folder, a missing or an unreadable file raises.
  [[nodiscard]] virtual std::uint64_t Size(const std::string& path) const = 0;

  /// All bytes of a file, as they are. A folder, a missing or an unreadable file raises, and so
  /// does what is no regular file, such as a pipe: it is not waited for.
  [[nodiscard]] virtual std::string ReadWhole(const std::string& path) const = 0;

  /// The same file, to be read in pieces. Any thread.
  [[nodiscard]] virtual std::unique_ptr<FileReader> OpenToRead(const std::string& path) = 0;

  /// Puts `content` in place of the file, wholly or not at all: a temporary file beside it is
  /// written, synced and renamed, so the old file survives a crash or a full disk. Permissions of
  /// an existing file are kept; a new one is readable by its owner only when `ownerOnly` (an
  /// existing one too). A symbolic link is followed. Raises when the file may not be written, or is
  /// a folder or no regular file; nothing of the temporary file is left then.
  virtual void ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) = 0;

  /// Begins to put something in place of the file by the rules of ReplaceWhole, in pieces; who else
  /// may read the file is left as it is. Raises at once when the file may not be written. Any
  /// thread.
  [[nodiscard]] virtual std::unique_ptr<FileReplacement>
  StartReplacing(const std::string& path) = 0;

  /// Removes a file; one that is missing already is no failure. Of a symbolic link the link goes.
  virtual void Remove(const std::string& path) = 0;

  /// Takes the lock that belongs to `path`. It keeps out whoever takes it too, in this process or
  /// another, and nobody else; the file need not be there and is not touched. Waits at most
  /// `milliseconds`: null when another one still holds it then. The end of a process gives its
  /// locks back. Raises when no lock can be made there: an unwritable folder.
  [[nodiscard]] virtual std::unique_ptr<FileLock> Lock(const std::string& path,
                                                       int milliseconds) = 0;

  /// The folder of the process from which other paths begin, whole, without a separator at its end.
  /// Raises when it is there no more.
  [[nodiscard]] virtual std::string CurrentFolder() const = 0;
};

/// The character between folders of a path.
inline constexpr char pathSeparator = '/';

}  // namespace tessel
