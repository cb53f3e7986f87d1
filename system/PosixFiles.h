#pragma once

#include "contract/base/Files.h"

namespace tessel {

/// The files of a POSIX system. It keeps nothing between calls, so any thread may use it.
class PosixFiles final : public Files {
 public:
  [[nodiscard]] bool FileExists(const std::string& path) const override;
  [[nodiscard]] std::uint64_t Size(const std::string& path) const override;
  [[nodiscard]] std::string ReadWhole(const std::string& path) const override;
  [[nodiscard]] std::unique_ptr<FileReader> OpenToRead(const std::string& path) override;
  void ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) override;
  [[nodiscard]] std::unique_ptr<FileReplacement> StartReplacing(const std::string& path) override;
  void Remove(const std::string& path) override;
  /// A hidden file beside `path` stands for the lock; it goes when the lock is given back.
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& path, int milliseconds) override;
  [[nodiscard]] std::string CurrentFolder() const override;
};

}  // namespace tessel
