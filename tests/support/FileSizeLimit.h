#pragma once

#include <csignal>

#include <sys/resource.h>

namespace tessel::test {

/// Files of this process may not grow beyond `bytes`, as if the disk were full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldAction_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit lower{bytes, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &lower);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, oldAction_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_{};
  void (*oldAction_)(int);
};

}  // namespace tessel::test
