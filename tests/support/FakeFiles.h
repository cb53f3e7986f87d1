#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "contract/base/Files.h"

namespace tessel::test {

/// Files in memory, or those of another Files, with a switch for each failure.
class FakeFiles final : public Files {
 public:
  /// Keeps the files in memory. Any folder counts as being there.
  FakeFiles() = default;
  /// Forwards to `real`, which outlives it.
  explicit FakeFiles(Files& real) : real_(&real) {}

  [[nodiscard]] bool FileExists(const std::string& path) const override;
  [[nodiscard]] std::uint64_t Size(const std::string& path) const override;
  [[nodiscard]] std::string ReadWhole(const std::string& path) const override;
  [[nodiscard]] std::unique_ptr<FileReader> OpenToRead(const std::string& path) override;
  void ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) override;
  [[nodiscard]] std::unique_ptr<FileReplacement> StartReplacing(const std::string& path) override;
  void Remove(const std::string& path) override;
  /// Of files in memory the lock is refused at once while another one holds it.
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& path, int milliseconds) override;
  [[nodiscard]] std::string CurrentFolder() const override;

  /// From now on every write fails for this reason; nothing: none does.
  void FailWrites(std::optional<std::string> reason = "No space left on device") {
    writeFailure_ = std::move(reason);
  }
  void FailReads(std::optional<std::string> reason = "Input/output error") {
    readFailure_ = std::move(reason);
  }
  /// From now on this one file can be neither read nor written.
  void FailFile(const std::string& path, std::string reason) {
    fileFailures_[path] = std::move(reason);
  }

  /// From now on a file that is written in pieces takes no more than `bytes`: the disk is full.
  void FailBeyond(std::size_t bytes) { room_ = bytes; }

  /// Of files in memory.
  void Put(const std::string& path, std::string content) { contents_[path] = std::move(content); }
  void Erase(const std::string& path) { contents_.erase(path); }
  void SetCurrentFolder(std::string folder) { currentFolder_ = std::move(folder); }
  /// Whether the file was last written for its owner only.
  [[nodiscard]] bool IsOwnerOnly(const std::string& path) const {
    return ownerOnly_.contains(path);
  }
  /// Writes so far, also those that failed.
  [[nodiscard]] int WriteCount() const { return writes_; }

 private:
  void FailIfTold(const std::string& path, const std::optional<std::string>& all) const;

  Files* real_ = nullptr;
  std::map<std::string, std::string> contents_;
  std::set<std::string> ownerOnly_;
  std::shared_ptr<std::set<std::string>> locked_ = std::make_shared<std::set<std::string>>();
  std::string currentFolder_ = "/home/me";
  std::optional<std::string> writeFailure_;
  std::optional<std::string> readFailure_;
  std::map<std::string, std::string> fileFailures_;
  std::size_t room_ = SIZE_MAX;
  int writes_ = 0;
};

}  // namespace tessel::test
