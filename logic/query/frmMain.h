#pragma once

#include <memory>
#include <optional>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "contract/sql/SqlDialect.h"
#include "logic/program/Help.h"
#include "logic/query/QueryHost.h"
#include "logic/query/RecoveryLine.h"
#include "logic/query/completion/CompletionList.h"
#include "logic/query/editing/EditCommands.h"
#include "logic/text/SqlTarget.h"
#include "logic/text/TextDocument.h"
#include "logic/text/TextZoom.h"
#include "logic/text/find/FindLine.h"

namespace tessel {

/// The one query window: a document of SQL text, the file it came from, and whether it has changed.
class frmMain : public SqlTarget, private RecoveryHost {
 public:
  frmMain(const Global& global, QueryHost& host, Vocabulary& vocabulary);

  /// Asks whether changed text may be discarded, saving it when wanted. True when the caller must
  /// not go on.
  [[nodiscard]] bool CancelQueryFileUnload();
  void cmdNew_Click();
  void cmdOpen_Click();
  void cmdSave_Click();
  void cmdSaveAs_Click();
  /// Opens a file without the dialog, with the same question.
  void OpenFile(const std::string& path);
  void InsertText(std::string_view text) override;
  /// Stores both, clears the changed mark and refreshes the caption.
  void SetDocument(const std::string& path, const std::string& title);
  void UpdateCaption();
  /// Writes the whole text; false on failure, without a message.
  bool SaveToFile(const std::string& path) { return document_.Write(path); }

  /// The system ends the program: unsaved text is copied now and offered at the next start.
  void EndSession();

  [[nodiscard]] Window& TheWindow() { return *window_; }
  [[nodiscard]] std::string SelectedText() const { return txtQuery_.SelText(); }
  /// Selects the statement that the caret is in, read by the rules of that dialect; a word of a
  /// client, such as DELIMITER, is part of none. False when there is none.
  bool SelectStatement(SqlDialect dialect);
  /// Marks what failed: a place in the text that is selected. It is marked until it is changed or
  /// SQL runs again.
  void ShowFailure(const TextRange& inSelection);
  void ForgetFailure() { txtQuery_.ClearError(); }
  [[nodiscard]] bool HasFailure() const { return txtQuery_.MarkedError().has_value(); }
  /// Puts the caret to what is marked; false when nothing is.
  bool GoToFailure();

  // For the frame's Edit menu.
  [[nodiscard]] EditorBox& Editor() { return txtQuery_; }
  [[nodiscard]] EditCommands& Edit() { return edit_; }
  [[nodiscard]] FindLine& Find() { return find_; }
  [[nodiscard]] TextZoom& Zoom() { return zoom_; }
  void FocusText() { txtQuery_.SetFocus(); }
  /// Says in the window's own row what to do next; nothing for an empty text.
  void ShowHint(std::string_view text);
  [[nodiscard]] CheckBox& WordWrapBox() { return chkWordWrap_; }
  /// The window's own mark of the connection connected last: the ground of its text.
  void ShowConnectionColor(Color color) { txtQuery_.SetBackColor(color); }

 private:
  void txtQuery_Change();
  void txtQuery_CaretMoved();
  void chkWordWrap_Click();
  void cmdExecute_Click();
  void Form_KeyDown(KeyEvent& event);
  [[nodiscard]] bool ToolHasFocus() const;
  [[nodiscard]] bool TakeEditorKey(const KeyEvent& event);
  void Form_QueryUnload(bool& refuse, UnloadReason reason);
  void Form_Unload();
  void MarkSaved();
  void MarkChanged();
  void LookAfterFile();
  [[nodiscard]] bool SaveChanges();
  [[nodiscard]] MessageResult AskAboutFile() const;

  // RecoveryHost
  [[nodiscard]] std::optional<UnsavedText> Unsaved() const override;
  bool TakeBack(const UnsavedText& unsaved) override;

  const Global& global_;
  QueryHost& host_;
  Help help_;
  std::unique_ptr<Window> window_;
  EditorBox& txtQuery_;
  Label& labPlace_;
  CheckBox& chkWordWrap_;
  Label& lblHint_;
  FileDialog& dlgCommon_;
  TextDocument document_;
  CompletionList completion_;
  EditCommands edit_;
  FindLine find_;
  TextZoom zoom_;
  bool dirty_ = false;
  bool fileGone_ = false;  ///< The file of this text is no longer there, which has been said.
  std::string path_;
  std::string title_;
  bool sessionEnds_ = false;
  RecoveryLine recovery_;
};

}  // namespace tessel
