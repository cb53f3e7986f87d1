#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <stdlib.h>

namespace tessel::test {

/// A new folder of its own for one test, removed with all it holds in the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tessel-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("No temporary folder: " + name);
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  /// The full path of a name inside the folder.
  [[nodiscard]] std::string File(const std::string& name) const { return (path_ / name).string(); }
  /// Makes a file, byte for byte, and returns its full path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(File(name), std::ios::binary) << content;
    return File(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tessel::test
