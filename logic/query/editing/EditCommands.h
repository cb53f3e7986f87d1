#pragma once

#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/EditorBox.h"

namespace tessel {

/// The commands of the Edit menu that change the text of the query window. A command that cannot be
/// carried out does nothing.
class EditCommands {
 public:
  /// Both outlive it.
  EditCommands(Desktop& desktop, EditorBox& box) : desktop_(desktop), box_(box) {}

  [[nodiscard]] bool CanUndo() const { return box_.CanUndo(); }
  [[nodiscard]] bool CanRedo() const { return box_.CanRedo(); }
  [[nodiscard]] bool HasSelection() const { return box_.SelLength() > 0; }
  [[nodiscard]] bool CanPaste() const { return !desktop_.TheClipboard().Text().empty(); }

  void Undo() { box_.Undo(); }
  void Redo() { box_.Redo(); }
  void Cut();
  void Copy();
  /// With the line ends that the text has.
  void Paste();
  void Delete();
  void SelectAll();
  /// Makes comments of the selected lines, or SQL again.
  void Comment();

 private:
  Desktop& desktop_;
  EditorBox& box_;
};

}  // namespace tessel
