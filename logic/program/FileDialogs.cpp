#include "logic/program/FileDialogs.h"

namespace tessel {

namespace {

/// Sets the folder in which a file dialog opens: that of its file name when it has one, else the
/// current folder.
void PrepareFileDialog(FileDialog& dialog, const Files& files) {
  const bool hasFolder = dialog.fileName.find(pathSeparator) != std::string::npos;
  dialog.initialFolder = hasFolder ? std::string() : files.CurrentFolder();
}

}  // namespace

bool ShowOpenFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir) {
  PrepareFileDialog(dialog, files);
  dialog.flags = fileDialogFlag::fileMustExist | fileDialogFlag::hideReadOnly;
  if (!allowChangeDir) dialog.flags |= fileDialogFlag::noChangeDir;
  return dialog.ShowOpen();
}

bool ShowSaveFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir) {
  PrepareFileDialog(dialog, files);
  dialog.flags = fileDialogFlag::noReadOnlyReturn | fileDialogFlag::pathMustExist |
                 fileDialogFlag::hideReadOnly | fileDialogFlag::overwritePrompt;
  if (!allowChangeDir) dialog.flags |= fileDialogFlag::noChangeDir;
  return dialog.ShowSave();
}

}  // namespace tessel
