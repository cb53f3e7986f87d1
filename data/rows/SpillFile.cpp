#include "data/rows/SpillFile.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tessel {

namespace {

[[noreturn]] void RaiseSystemError() { throw std::system_error(errno, std::generic_category()); }

std::size_t PageSize() {
  static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return size;
}

/// Not every file system can make a file without a name.
int OpenUnnamed(const std::filesystem::path& folder) {
  const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (file >= 0) return file;
  std::string name = folder / "tessel-XXXXXX";
  const int named = mkostemp(name.data(), O_CLOEXEC);
  if (named >= 0) unlink(name.c_str());
  return named;
}

/// While it lives, a file that becomes larger than this user may make one is an error, not the end
/// of the process.
class LimitIsAnError {
 public:
  LimitIsAnError() {
    sigset_t limit;
    sigemptyset(&limit);
    sigaddset(&limit, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &limit, &before_);
  }
  LimitIsAnError(const LimitIsAnError&) = delete;
  LimitIsAnError& operator=(const LimitIsAnError&) = delete;
  /// The signal that waits is taken out first.
  ~LimitIsAnError() {
    const timespec now{};
    sigset_t limit;
    sigemptyset(&limit);
    sigaddset(&limit, SIGXFSZ);
    if (sigismember(&before_, SIGXFSZ) == 0) sigtimedwait(&limit, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  sigset_t before_{};
};

}  // namespace

FilePart::FilePart(int file, std::size_t offset, std::size_t size) : size_(size) {
  void* mapped = mmap(nullptr, size, PROT_READ, MAP_SHARED, file, static_cast<off_t>(offset));
  if (mapped == MAP_FAILED) RaiseSystemError();
  data_ = static_cast<const std::byte*>(mapped);
}

FilePart::~FilePart() { munmap(const_cast<std::byte*>(data_), size_); }

void FilePart::LetGo() const noexcept {
  madvise(const_cast<std::byte*>(data_), size_, MADV_DONTNEED);
}

SpillFile::SpillFile(const std::filesystem::path& folder) : file_(OpenUnnamed(folder)) {
  if (file_ < 0) RaiseSystemError();
}

SpillFile::~SpillFile() { close(file_); }

/// Written, not mapped: so a disk without room says so here, and not when a row is looked at.
std::shared_ptr<const FilePart>
SpillFile::Write(const std::vector<std::span<const std::byte>>& pieces) {
  const LimitIsAnError limitIsAnError;
  std::size_t offset = end_;
  for (const auto& piece : pieces) {
    WriteAll(piece, offset);
    offset += piece.size();
  }
  const std::size_t size = std::max<std::size_t>(offset - end_, 1);  // Nothing cannot be mapped.
  auto part = std::make_shared<const FilePart>(file_, end_, size);
  end_ = (offset + PageSize()) / PageSize() * PageSize();
  return part;
}

void SpillFile::WriteAll(std::span<const std::byte> bytes, std::size_t offset) const {
  while (!bytes.empty()) {
    const ssize_t written = pwrite(file_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) RaiseSystemError();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += static_cast<std::size_t>(written);
  }
}

std::filesystem::path SpillFolder() {
  const char* given = std::getenv("TMPDIR");
  if (given != nullptr && *given != '\0') return given;
  return "/var/tmp";
}

}  // namespace tessel
