#include "logic/app/EditMenu.h"

#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

void WireEditMenu(Window& frame, frmMain& query) {
  const auto change = [&](const char* item, void (EditCommands::*command)()) {
    frame.Menu(item).Click = [&query, command] {
      (query.Edit().*command)();
      query.FocusText();
    };
  };
  change("mnuEditUndo", &EditCommands::Undo);
  change("mnuEditRedo", &EditCommands::Redo);
  change("mnuEditCut", &EditCommands::Cut);
  change("mnuEditCopy", &EditCommands::Copy);
  change("mnuEditPaste", &EditCommands::Paste);
  change("mnuEditDelete", &EditCommands::Delete);
  change("mnuEditSelectAll", &EditCommands::SelectAll);
  change("mnuEditComment", &EditCommands::Comment);
  frame.Menu("mnuEditFind").Click = [&query] { query.Find().Open(false); };
  frame.Menu("mnuEditReplace").Click = [&query] { query.Find().Open(true); };
  frame.Menu("mnuEditFindNext").Click = [&query] { query.Find().FindNext(); };
  frame.Menu("mnuEditFindPrevious").Click = [&query] { query.Find().FindPrevious(); };
  frame.Menu("mnuEditGoToError").Click = [&query] { static_cast<void>(query.GoToFailure()); };
  frame.Menu("mnuEditZoomIn").Click = [&query] { query.Zoom().Larger(); };
  frame.Menu("mnuEditZoomOut").Click = [&query] { query.Zoom().Smaller(); };
  frame.Menu("mnuEditZoomReset").Click = [&query] { query.Zoom().Reset(); };
}

void ShowEditMenu(Window& frame, frmMain& query) {
  const EditCommands& edit = query.Edit();
  frame.Menu("mnuEditUndo").SetEnabled(edit.CanUndo());
  frame.Menu("mnuEditRedo").SetEnabled(edit.CanRedo());
  for (const char* item : {"mnuEditCut", "mnuEditCopy", "mnuEditDelete"})
    frame.Menu(item).SetEnabled(edit.HasSelection());
  frame.Menu("mnuEditPaste").SetEnabled(edit.CanPaste());
  frame.Menu("mnuEditGoToError").SetEnabled(query.HasFailure());
}

}  // namespace tessel
