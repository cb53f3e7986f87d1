#include "tests/support/FakeFiles.h"

#include "contract/base/Error.h"

namespace tessel::test {

namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw Error(errorNumber::file, "Tessel", path + ": " + reason);
}

class FakeLock final : public FileLock {
 public:
  FakeLock(std::shared_ptr<std::set<std::string>> locked, std::string path)
      : locked_(std::move(locked)), path_(std::move(path)) {}
  FakeLock(const FakeLock&) = delete;
  FakeLock& operator=(const FakeLock&) = delete;
  ~FakeLock() override { locked_->erase(path_); }

 private:
  std::shared_ptr<std::set<std::string>> locked_;
  std::string path_;
};

class FakeReader final : public FileReader {
 public:
  explicit FakeReader(std::string content) : content_(std::move(content)) {}

  [[nodiscard]] std::uint64_t Size() const override { return content_.size(); }
  [[nodiscard]] std::size_t Read(std::span<char> buffer) override {
    const std::size_t length = content_.copy(buffer.data(), buffer.size(), at_);
    at_ += length;
    return length;
  }

 private:
  std::string content_;
  std::size_t at_ = 0;
};

/// Gathers the pieces, and replaces the file whole in the end.
class FakeReplacement final : public FileReplacement {
 public:
  FakeReplacement(FakeFiles& files, std::string path, std::size_t room)
      : files_(files), path_(std::move(path)), room_(room) {}

  void Write(std::string_view bytes) override {
    if (content_.size() + bytes.size() > room_) Fail(path_, "No space left on device");
    content_ += bytes;
  }
  void PutInPlace() override { files_.ReplaceWhole(path_, content_, false); }

 private:
  FakeFiles& files_;
  std::string path_;
  std::size_t room_;
  std::string content_;
};

}  // namespace

bool FakeFiles::FileExists(const std::string& path) const {
  if (real_ != nullptr) return real_->FileExists(path);
  const std::string name = path.substr(path.rfind(pathSeparator) + 1);
  return !name.starts_with('.') && contents_.contains(path);
}

std::uint64_t FakeFiles::Size(const std::string& path) const {
  FailIfTold(path, readFailure_);
  return real_ != nullptr ? real_->Size(path) : ReadWhole(path).size();
}

std::string FakeFiles::ReadWhole(const std::string& path) const {
  FailIfTold(path, readFailure_);
  if (real_ != nullptr) return real_->ReadWhole(path);
  const auto found = contents_.find(path);
  if (found == contents_.end()) Fail(path, "No such file or directory");
  return found->second;
}

std::unique_ptr<FileReader> FakeFiles::OpenToRead(const std::string& path) {
  FailIfTold(path, readFailure_);
  if (real_ != nullptr) return real_->OpenToRead(path);
  return std::make_unique<FakeReader>(ReadWhole(path));
}

std::unique_ptr<FileReplacement> FakeFiles::StartReplacing(const std::string& path) {
  FailIfTold(path, writeFailure_);
  return std::make_unique<FakeReplacement>(*this, path, room_);
}

void FakeFiles::ReplaceWhole(const std::string& path, std::string_view content, bool ownerOnly) {
  ++writes_;
  FailIfTold(path, writeFailure_);
  if (ownerOnly) ownerOnly_.insert(path);
  if (real_ != nullptr) return real_->ReplaceWhole(path, content, ownerOnly);
  contents_[path] = content;
}

void FakeFiles::Remove(const std::string& path) {
  FailIfTold(path, std::nullopt);
  if (real_ != nullptr) return real_->Remove(path);
  contents_.erase(path);
}

std::unique_ptr<FileLock> FakeFiles::Lock(const std::string& path, int milliseconds) {
  FailIfTold(path, std::nullopt);
  if (real_ != nullptr) return real_->Lock(path, milliseconds);
  if (!locked_->insert(path).second) return nullptr;
  return std::make_unique<FakeLock>(locked_, path);
}

std::string FakeFiles::CurrentFolder() const {
  return real_ != nullptr ? real_->CurrentFolder() : currentFolder_;
}

void FakeFiles::FailIfTold(const std::string& path, const std::optional<std::string>& all) const {
  if (all) Fail(path, *all);
  const auto found = fileFailures_.find(path);
  if (found != fileFailures_.end()) Fail(path, found->second);
}

}  // namespace tessel::test
