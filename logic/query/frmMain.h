#pragma once

#include <memory>
#include <optional>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/program/Help.h"
#include "logic/query/QueryHost.h"
#include "logic/query/RecoveryLine.h"
#include "logic/query/completion/CompletionList.h"
#include "logic/text/SqlTarget.h"
#include "logic/text/TextDocument.h"

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
  void FocusText() { txtQuery_.SetFocus(); }
  [[nodiscard]] CheckBox& WordWrapBox() { return chkWordWrap_; }
  /// The window's own mark of the connection connected last: the ground of its text.
  void ShowConnectionColor(Color color) { txtQuery_.SetBackColor(color); }

 private:
  void txtQuery_Change();
  void chkWordWrap_Click();
  void cmdExecute_Click();
  void Form_KeyDown(KeyEvent& event);
  [[nodiscard]] bool ToolHasFocus() const;
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
  RichTextBox& txtQuery_;
  CheckBox& chkWordWrap_;
  FileDialog& dlgCommon_;
  TextDocument document_;
  CompletionList completion_;
  bool dirty_ = false;
  bool fileGone_ = false;  ///< The file of this text is no longer there, which has been said.
  std::string path_;
  std::string title_;
  bool sessionEnds_ = false;
  RecoveryLine recovery_;
};

}  // namespace tessel
