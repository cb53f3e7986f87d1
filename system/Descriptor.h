#pragma once

#include <string>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace tessel {

/// Raises Error(file): `path` and the reason. `code` is an errno value, 0 when there is none.
[[noreturn]] void ThrowFileError(const std::string& path, const std::string& reason, int code);

/// Raises the failure that `code` (an errno value) stands for.
[[noreturn]] void ThrowSystemError(const std::string& path, int code);

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

/// Raises for a file of that mode that is a folder, or another kind of file that is none to read or
/// replace.
void RefuseUnlessRegular(const std::string& path, mode_t mode);

/// The folder of a path, "." where it names none.
[[nodiscard]] std::string FolderOf(const std::string& path);

}  // namespace tessel
