#include "data/rows/pages/SpillFile.h"

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

SpillFile::~SpillFile() {
  if (file_ >= 0) close(file_);
}

std::size_t SpillFile::WholePages(std::size_t size) {
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (size + page - 1) / page * page;
}

/// The file is mapped anywhere first, which can fail, and moved from there: that is one step for
/// all threads that read the pages.
void SpillFile::TakePlaceOf(std::span<std::byte> pages) {
  const std::size_t offset = Write(pages);
  void* mapped =
      mmap(nullptr, pages.size(), PROT_READ, MAP_SHARED, file_, static_cast<off_t>(offset));
  if (mapped == MAP_FAILED) RaiseSystemError();
  if (mremap(mapped, pages.size(), pages.size(), MREMAP_MAYMOVE | MREMAP_FIXED, pages.data()) !=
      MAP_FAILED)
    return;
  const int reason = errno;
  munmap(mapped, pages.size());
  throw std::system_error(reason, std::generic_category());
}

/// Written, not mapped: so a disk without room says so here, and not when a row is looked at. What
/// was written of pages that did not go in whole gives its room back. Tells where they stand.
std::size_t SpillFile::Write(std::span<const std::byte> pages) {
  const std::lock_guard lock(mutex_);
  const LimitIsAnError limitIsAnError;
  if (file_ < 0) file_ = OpenUnnamed(folder_);
  if (file_ < 0) RaiseSystemError();
  try {
    WriteAll(pages, end_);
  } catch (...) {
    (void)!ftruncate(file_, static_cast<off_t>(end_));
    throw;
  }
  return std::exchange(end_, end_ + pages.size());
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
