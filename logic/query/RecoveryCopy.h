#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "logic/program/Global.h"
#include "logic/text/TextDocument.h"

namespace tessel {

/// A text that is saved nowhere, with what is needed to go on with it.
struct UnsavedText {
  std::string text;
  std::size_t caret = 0;  ///< Byte offset into the text.
  TextOrigin origin;  ///< The file that it belongs to, if any, as that was read or written last.
};

/// The bytes of a recovery copy: a line of numbers, the path of the file, the text.
[[nodiscard]] std::string PackUnsaved(const UnsavedText& unsaved);
/// Nothing when the bytes are not a whole copy.
[[nodiscard]] std::optional<UnsavedText> UnpackUnsaved(std::string_view bytes);

/// The copies of unsaved text that running programs keep beside their executable, each in a file of
/// its own that it has locked, and those that programs which ended without order left there.
class RecoveryCopy {
 public:
  explicit RecoveryCopy(const Global& global) : global_(global) {}

  /// Looks for what was left. Copies of running programs, those that cannot be read and damaged
  /// ones are passed over; what is found stays locked, so that no other program finds it too.
  void FindLeft();
  [[nodiscard]] std::size_t LeftCount() const { return left_.size(); }
  /// The first of those that were left.
  [[nodiscard]] const UnsavedText& FirstLeft() const { return left_.front().unsaved; }
  /// Removes the first one's file for good. Raises Error when it cannot be removed.
  void RemoveFirstLeft();

  /// Writes this program's copy, readable by its owner only, in place of the one before. Raises
  /// Error with the reason when it cannot be written; the one before then stays.
  void Keep(const UnsavedText& unsaved);
  /// Removes this program's copy, if there is one; a failure leaves it.
  void Discard();

 private:
  struct Left {
    std::string path;
    std::unique_ptr<FileLock> lock;
    UnsavedText unsaved;
  };

  [[nodiscard]] std::string PathOf(int number) const;
  [[nodiscard]] std::optional<Left> TakeLeft(int number) const;
  void TakePlace();

  const Global& global_;
  std::vector<Left> left_;
  std::string path_;  ///< Of this program's copy.
  std::unique_ptr<FileLock> lock_;
  bool kept_ = false;
};

}  // namespace tessel
