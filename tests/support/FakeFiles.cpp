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
