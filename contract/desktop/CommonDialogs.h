#pragma once

#include <string>

#include "contract/base/Color.h"

namespace tessel {

/// Flags of FileDialog, combined by OR, with their classic numbers. What they refuse is refused by
/// the dialog itself, in a message, and the user goes on choosing.
namespace fileDialogFlag {
inline constexpr int overwritePrompt = 0x2;   ///< To save: asks before an existing file is chosen.
inline constexpr int hideReadOnly = 0x4;      ///< There is no box to open a file read-only.
inline constexpr int noChangeDir = 0x8;       ///< The process's current folder stays.
inline constexpr int pathMustExist = 0x800;   ///< Refuses a name in a folder that is not there.
inline constexpr int fileMustExist = 0x1000;  ///< To open: refuses a file that is not there.
inline constexpr int noReadOnlyReturn = 0x8000;  ///< Refuses a file that cannot be written.
}  // namespace fileDialogFlag

/// The common dialog that asks for a file's name. Its settings stay between calls. It only asks: it
/// opens, makes and replaces no file. The window that gave it owns it. Paths are UTF-8.
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
  /// "Text|pattern;pattern|Text|pattern": the types offered, the first one chosen at first. "*.*"
  /// stands for every file. Empty: all files, without a choice.
  std::string filter;
  /// Appended to a name typed without an ending, without the dot; may be empty. A file that is
  /// there under the bare name is opened as it is.
  std::string defaultExtension;
  /// Bits of fileDialogFlag.
  int flags = 0;

  /// Shows the dialog modally; false when the user cancelled, and nothing is changed then. With
  /// true `fileName` and `fileTitle` are what was chosen. Once the session ends it does not show:
  /// false. Without fileDialogFlag::noChangeDir the process's current folder becomes the one chosen
  /// from.
  [[nodiscard]] virtual bool ShowOpen() = 0;
  [[nodiscard]] virtual bool ShowSave() = 0;
};

/// The common dialog that asks for a colour. The window that gave it owns it.
class ColorDialog {
 public:
  virtual ~ColorDialog() = default;

  /// Bits: 1 starts at `color`, 2 opens the whole dialog.
  int flags = 0;
  Color color = 0;  ///< Proposed and chosen; a system colour is proposed as what it looks like.
  /// Shows the dialog modally; false when the user cancelled, and `color` stays then. What is
  /// chosen is always a plain colour.
  [[nodiscard]] virtual bool ShowColor() = 0;
};

}  // namespace tessel
