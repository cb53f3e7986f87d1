// The files of the program on a POSIX system. Replacing a file wholly or not at all takes most of
// the room: links are followed, permissions kept, the folder synced; locks stand beside the files
// they belong to.

#include "system/PosixFiles.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr mode_t ownerOnlyMode = 0600;
constexpr mode_t permissionBits = 07777;

[[noreturn]] void ThrowFileError(const std::string& path, const std::string& reason, int code) {
  throw Error(ErrorInfo{errorNumber::file, code, {}, "Tessel", path + ": " + reason, {}, 0});
}

/// Raises the failure that `code` (an errno value) stands for.
[[noreturn]] void ThrowSystemError(const std::string& path, int code) {
  ThrowFileError(path, std::generic_category().message(code), code);
}

/// An open file, closed in the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  [[nodiscard]] int Number() const { return number_; }
  /// False, with errno set, when the system reports a late failure.
  [[nodiscard]] bool Close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

void RefuseUnlessRegular(const std::string& path, mode_t mode) {
  if (S_ISDIR(mode)) ThrowSystemError(path, EISDIR);
  if (!S_ISREG(mode)) ThrowFileError(path, "Not a regular file", 0);
}

/// Opens a regular file for reading. Without waiting: opening a pipe would otherwise hang until
/// somebody writes to it.
Descriptor OpenRegular(const std::string& path, struct stat& status) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0) ThrowSystemError(path, errno);
  RefuseUnlessRegular(path, status.st_mode);
  return file;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind(pathSeparator);
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string ReadLink(const std::string& path, const std::string& shown) {
  std::array<char, PATH_MAX> target;
  const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
  if (length < 0) ThrowSystemError(shown, errno);
  return {target.data(), static_cast<std::size_t>(length)};
}

/// The path behind all symbolic links, whether there is a file of that name yet or not.
std::string FollowLinks(const std::string& path) {
  constexpr int mostLinks = 40;
  std::string place = path;
  for (int links = 0; links < mostLinks; ++links) {
    struct stat status {};
    if (::lstat(place.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return place;
    const std::string target = ReadLink(place, path);
    if (target.front() == pathSeparator) place = target;
    else place = FolderOf(place).append(1, pathSeparator).append(target);
  }
  ThrowSystemError(path, ELOOP);
}

/// What is known of the file to be replaced; nothing when there is none.
std::optional<struct stat> StatusToReplace(const std::string& place, const std::string& path) {
  struct stat status {};
  if (::stat(place.c_str(), &status) != 0) {
    if (errno != ENOENT) ThrowSystemError(path, errno);
    return std::nullopt;
  }
  RefuseUnlessRegular(path, status.st_mode);
  if (::faccessat(AT_FDCWD, place.c_str(), W_OK, AT_EACCESS) != 0) ThrowSystemError(path, errno);
  return status;
}

/// A new file beside the one to be replaced; it is removed again unless Rename succeeds.
class TemporaryFile {
 public:
  /// `path` is the name that failures show.
  TemporaryFile(std::string place, std::string path, mode_t mode)
      : place_(std::move(place)), path_(std::move(path)), file_(Create(mode)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!renamed_) ::unlink(name_.c_str());
  }

  void Write(std::string_view content) {
    while (!content.empty()) {
      const ssize_t written = ::write(file_.Number(), content.data(), content.size());
      if (written < 0 && errno == EINTR) continue;
      Check(written >= 0);
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  /// Owner and group are kept where the system allows it.
  void TakeOver(const struct stat& old, mode_t mode) {
    [[maybe_unused]] const int result = ::fchown(file_.Number(), old.st_uid, old.st_gid);
    Check(::fchmod(file_.Number(), mode) == 0);
  }

  void Rename() {
    Check(::fsync(file_.Number()) == 0);
    Check(file_.Close());
    Check(::rename(name_.c_str(), place_.c_str()) == 0);
    renamed_ = true;
  }

 private:
  [[nodiscard]] Descriptor Create(mode_t mode) {
    const std::string stem = FolderOf(place_) + "/.tessel-" + std::to_string(::getpid()) + "-";
    for (int number = 0;; ++number) {
      name_ = stem + std::to_string(number) + ".tmp";
      Descriptor file(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      if (file.IsOpen()) return file;
      if (errno != EEXIST) ThrowSystemError(path_, errno);
    }
  }

  void Check(bool succeeded) const {
    if (!succeeded) ThrowSystemError(path_, errno);
  }

  std::string place_;
  std::string path_;
  std::string name_;
  Descriptor file_;
  bool renamed_ = false;
};

/// Makes the new name last. A folder that may not be opened, or a file system without the
/// operation, is left alone.
void SyncFolder(const std::string& folder, const std::string& path) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return;
  if (::fsync(opened.Number()) != 0 && errno != EINVAL && errno != ENOTSUP)
    ThrowSystemError(path, errno);
}

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
  const Descriptor file = OpenRegular(path, status);
  constexpr std::size_t step = 64UL * 1024;
  std::string content;
  std::size_t length = 0;
  for (;;) {
    if (content.size() == length)
      content.resize(length == 0 ? static_cast<std::size_t>(status.st_size) + step : length * 2);
    const ssize_t got = ::read(file.Number(), content.data() + length, content.size() - length);
    if (got == 0) break;
    if (got < 0 && errno != EINTR) ThrowSystemError(path, errno);
    if (got > 0) length += static_cast<std::size_t>(got);
  }
  content.resize(length);
  return content;
}

void PosixFiles::ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) {
  const std::string place = FollowLinks(path);
  const auto old = StatusToReplace(place, path);
  constexpr mode_t ordinaryMode = 0666;  // less what the process's mask takes away
  TemporaryFile fresh(place, path, old || ownerOnly ? ownerOnlyMode : ordinaryMode);
  fresh.Write(content);
  if (old) fresh.TakeOver(*old, ownerOnly ? ownerOnlyMode : old->st_mode & permissionBits);
  fresh.Rename();
  SyncFolder(FolderOf(place), path);
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
