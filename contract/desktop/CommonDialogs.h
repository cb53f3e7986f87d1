#pragma once

#include <string>

#include "contract/base/Color.h"

namespace tessel {

/// Flags of FileDialog, combined by OR.
namespace fileDialogFlag {
inline constexpr int overwritePrompt = 0x2;
inline constexpr int hideReadOnly = 0x4;
inline constexpr int noChangeDir = 0x8;
inline constexpr int pathMustExist = 0x800;
inline constexpr int fileMustExist = 0x1000;
inline constexpr int noReadOnlyReturn = 0x8000;
}  // namespace fileDialogFlag

/// The common dialog that asks for a file's name. Its settings stay between calls.
class FileDialog {
 public:
  virtual ~FileDialog() = default;

  /// Full path chosen, or proposed before the dialog is shown; may be empty.
  std::string fileName;
  /// The chosen file's name without its folder.
  std::string fileTitle;
  /// Folder in which it opens at first; all dialogs of one form and name then reopen where they
  /// were used last. Empty: where `fileName` lies.
  std::string initialFolder;
  /// "Text|pattern;pattern|Text|pattern": the types offered, the first one chosen at first.
  std::string filter;
  /// Appended to a name typed without an ending, without the dot; may be empty. A file that is
  /// there under the bare name is opened as it is.
  std::string defaultExtension;
  int flags = 0;

  /// Shows the dialog modally; false when the user cancelled, and nothing is changed then.
  /// Without fileDialogFlag::noChangeDir the process's current folder becomes the one chosen from.
  [[nodiscard]] virtual bool ShowOpen() = 0;
  [[nodiscard]] virtual bool ShowSave() = 0;
};

/// The common dialog that asks for a colour.
class ColorDialog {
 public:
  virtual ~ColorDialog() = default;

  /// Bits: 1 starts at `color`, 2 opens the whole dialog.
  int flags = 0;
  Color color = 0;  ///< Proposed and chosen; a system colour is proposed as what it looks like.
  /// Shows the dialog modally; false when the user cancelled.
  [[nodiscard]] virtual bool ShowColor() = 0;
};

}  // namespace tessel
