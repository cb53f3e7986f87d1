// The files of the program on a POSIX system: how they are read, and the locks that stand beside
// the files they belong to.

#include "system/PosixFiles.h"

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "system/Descriptor.h"
#include "system/ReplacingFile.h"

namespace tessel {

namespace {

constexpr mode_t ownerOnlyMode = 0600;

/// Opens a regular file for reading. Without waiting: opening a pipe would otherwise hang until
/// somebody writes to it.
Descriptor OpenRegular(const std::string& path, struct stat& status) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0) ThrowSystemError(path, errno);
  RefuseUnlessRegular(path, status.st_mode);
  return file;
}

class PosixReader final : public FileReader {
 public:
  PosixReader(std::string path, Descriptor file, off_t size)
      : path_(std::move(path)), file_(std::move(file)), size_(static_cast<std::uint64_t>(size)) {}

  [[nodiscard]] std::uint64_t Size() const override { return size_; }

  [[nodiscard]] std::size_t Read(std::span<char> buffer) override {
    std::size_t length = 0;
    while (length < buffer.size()) {
      const ssize_t got = ::read(file_.Number(), buffer.data() + length, buffer.size() - length);
      if (got == 0) break;
      if (got < 0 && errno != EINTR) ThrowSystemError(path_, errno);
      if (got > 0) length += static_cast<std::size_t>(got);
    }
    return length;
  }

 private:
  std::string path_;
  Descriptor file_;
  std::uint64_t size_;
};

/// A lock file that is open and locked. It goes with the lock: nothing is left beside the program's
/// files.
class PosixLock final : public FileLock {
 public:
  PosixLock(std::string name, Descriptor file) : name_(std::move(name)), file_(std::move(file)) {}
  PosixLock(const PosixLock&) = delete;
  PosixLock& operator=(const PosixLock&) = delete;
  ~PosixLock() override { ::unlink(name_.c_str()); }

 private:
  std::string name_;
  Descriptor file_;
};

std::string LockNameOf(const std::string& place) {
  const std::size_t name = place.rfind(pathSeparator) + 1;
  return place.substr(0, name) + "." + place.substr(name) + ".lock";
}

/// Whether the name still belongs to the open file: its holder before may have removed it.
bool IsNameOf(const std::string& name, const Descriptor& file) {
  struct stat named {};
  struct stat opened {};
  return ::stat(name.c_str(), &named) == 0 && ::fstat(file.Number(), &opened) == 0 &&
         named.st_ino == opened.st_ino && named.st_dev == opened.st_dev;
}

/// The lock file, locked; nothing while somebody else holds it. `path` is the name that failures
/// show.
std::optional<Descriptor> TryLock(const std::string& name, const std::string& path) {
  for (;;) {
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    Descriptor file(::open(name.c_str(), flags, ownerOnlyMode));
    if (!file.IsOpen()) ThrowSystemError(path, errno);
    if (::flock(file.Number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK) return std::nullopt;
      if (errno != EINTR) ThrowSystemError(path, errno);
    } else if (IsNameOf(name, file)) {
      return file;
    }
  }
}

}  // namespace

bool PosixFiles::FileExists(const std::string& path) const {
  if (path.substr(path.rfind(pathSeparator) + 1).starts_with('.')) return false;
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::uint64_t PosixFiles::Size(const std::string& path) const {
  struct stat status {};
  const Descriptor file = OpenRegular(path, status);
  return static_cast<std::uint64_t>(status.st_size);
}

std::string PosixFiles::ReadWhole(const std::string& path) const {
  struct stat status {};
  Descriptor file = OpenRegular(path, status);
  PosixReader reader(path, std::move(file), status.st_size);
  constexpr std::size_t step = 64UL * 1024;
  std::string content;
  std::size_t length = 0;
  do {
    content.resize(length == 0 ? static_cast<std::size_t>(status.st_size) + step : length * 2);
    length += reader.Read(std::span(content).subspan(length));
  } while (length == content.size());
  content.resize(length);
  return content;
}

std::unique_ptr<FileReader> PosixFiles::OpenToRead(const std::string& path) {
  struct stat status {};
  Descriptor file = OpenRegular(path, status);
  return std::make_unique<PosixReader>(path, std::move(file), status.st_size);
}

void PosixFiles::ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) {
  ReplacingFile fresh(path, ownerOnly);
  fresh.Write(content);
  fresh.PutInPlace();
}

std::unique_ptr<FileReplacement> PosixFiles::StartReplacing(const std::string& path) {
  return std::make_unique<ReplacingFile>(path, false);
}

void PosixFiles::Remove(const std::string& path) {
  if (::unlink(path.c_str()) != 0 && errno != ENOENT) ThrowSystemError(path, errno);
}

std::unique_ptr<FileLock> PosixFiles::Lock(const std::string& path, int milliseconds) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds pause(2);
  const std::string name = LockNameOf(FollowLinks(path));
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    if (auto file = TryLock(name, path)) return std::make_unique<PosixLock>(name, std::move(*file));
    if (Clock::now() >= deadline) return nullptr;
    std::this_thread::sleep_for(pause);
  }
}

std::string PosixFiles::CurrentFolder() const {
  const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
  if (folder == nullptr) ThrowSystemError(".", errno);
  return folder.get();
}

}  // namespace tessel
