#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include "contract/system/FileStreams.h"
#include "system/Descriptor.h"

namespace tessel {

/// The path behind all symbolic links, whether there is a file of that name yet or not.
[[nodiscard]] std::string FollowLinks(const std::string& path);

/// A new file beside the one that it will replace; it is removed again unless it is put in its
/// place. Permissions of the old file are kept, owner and group where the system allows it.
class ReplacingFile final : public FileReplacement {
 public:
  /// `path` is the name that failures show. With `ownerOnly` nobody but the owner may read what is
  /// written.
  ReplacingFile(const std::string& path, bool ownerOnly);
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  ~ReplacingFile() override;

  void Write(std::string_view bytes) override;
  void PutInPlace() override;

  /// Raises unless the disk has room for so many bytes of the new file, to which nothing was
  /// written so far. They are given back when the file is opened by its name.
  void CheckRoom(std::uint64_t bytes);
  /// Where the new file is, for who writes it by its name. The file of that name must stay.
  [[nodiscard]] const std::string& Name() const { return name_; }

 private:
  [[nodiscard]] Descriptor Create(mode_t mode);
  void TakeOver();
  void Check(bool succeeded) const;

  std::string path_;
  std::string place_;
  std::optional<struct stat> old_;
  bool ownerOnly_;
  std::string name_;
  Descriptor file_;
  bool inPlace_ = false;
};

}  // namespace tessel
