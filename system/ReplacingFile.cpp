// How a file is replaced wholly or not at all: links are followed, what is new is written beside,
// synced and renamed, permissions kept, and the folder synced.

#include "system/ReplacingFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include "contract/base/Files.h"

namespace tessel {

namespace {

constexpr mode_t ownerOnlyMode = 0600;
constexpr mode_t ordinaryMode = 0666;  ///< Less what the process's mask takes away.
constexpr mode_t permissionBits = 07777;

std::string ReadLink(const std::string& path, const std::string& shown) {
  std::array<char, PATH_MAX> target;
  const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
  if (length < 0) ThrowSystemError(shown, errno);
  return {target.data(), static_cast<std::size_t>(length)};
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

/// Makes the new name last. A folder that may not be opened, or a file system without the
/// operation, is left alone.
void SyncFolder(const std::string& folder, const std::string& path) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return;
  if (::fsync(opened.Number()) != 0 && errno != EINVAL && errno != ENOTSUP)
    ThrowSystemError(path, errno);
}

}  // namespace

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

ReplacingFile::ReplacingFile(const std::string& path, bool ownerOnly)
    : path_(path),
      place_(FollowLinks(path)),
      old_(StatusToReplace(place_, path)),
      ownerOnly_(ownerOnly),
      file_(Create(old_ || ownerOnly ? ownerOnlyMode : ordinaryMode)) {}

ReplacingFile::~ReplacingFile() {
  if (!inPlace_) ::unlink(name_.c_str());
}

Descriptor ReplacingFile::Create(mode_t mode) {
  const std::string stem = FolderOf(place_) + "/.tessel-" + std::to_string(::getpid()) + "-";
  for (int number = 0;; ++number) {
    name_ = stem + std::to_string(number) + ".tmp";
    Descriptor file(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (file.IsOpen()) return file;
    if (errno != EEXIST) ThrowSystemError(path_, errno);
  }
}

void ReplacingFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_.Number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    Check(written >= 0);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void ReplacingFile::CheckRoom(std::uint64_t bytes) {
  const int code = ::posix_fallocate(file_.Number(), 0, static_cast<off_t>(bytes));
  if (code != 0) ThrowSystemError(path_, code);
}

void ReplacingFile::TakeOver() {
  [[maybe_unused]] const int result = ::fchown(file_.Number(), old_->st_uid, old_->st_gid);
  const mode_t mode = ownerOnly_ ? ownerOnlyMode : old_->st_mode & permissionBits;
  Check(::fchmod(file_.Number(), mode) == 0);
}

void ReplacingFile::PutInPlace() {
  if (old_) TakeOver();
  Check(::fsync(file_.Number()) == 0);
  Check(file_.Close());
  Check(::rename(name_.c_str(), place_.c_str()) == 0);
  inPlace_ = true;
  SyncFolder(FolderOf(place_), path_);
}

void ReplacingFile::Check(bool succeeded) const {
  if (!succeeded) ThrowSystemError(path_, errno);
}

}  // namespace tessel
