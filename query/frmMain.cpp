#include "query/frmMain.h"

#include "query/Misc.h"

namespace tessel {

frmMain::frmMain(const Global& global, QueryHost& host, Vocabulary& vocabulary)
    : global_(global),
      host_(host),
      help_(global),
      window_(global.TheDesktop().MakeWindow("frmMain")),
      txtQuery_(window_->Find<RichTextBox>("txtQuery")),
      chkWordWrap_(window_->Find<CheckBox>("chkWordWrap")),
      dlgCommon_(window_->FileDialogNamed("dlgCommon")),
      document_(global, txtQuery_),
      completion_(*window_, vocabulary) {
  window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
  window_->QueryUnload = [this](bool& refuse, UnloadReason reason) {
    Form_QueryUnload(refuse, reason);
  };
  txtQuery_.Change = [this] { txtQuery_Change(); };
  window_->Find<Button>("cmdNew").Click = [this] { cmdNew_Click(); };
  window_->Find<Button>("cmdOpen").Click = [this] { cmdOpen_Click(); };
  window_->Find<Button>("cmdSave").Click = [this] { cmdSave_Click(); };
  window_->Find<Button>("cmdExecute").Click = [this] { cmdExecute_Click(); };
  chkWordWrap_.Click = [this] { chkWordWrap_Click(); };
  dlgCommon_.defaultExtension = "sql";
  dlgCommon_.filter = "Query Files (*.sql, *.txt)|*.sql;*.txt|All Files (*.*)|*.*";
  document_.SetWordWrap(chkWordWrap_.Value());
  SetDocument("", "");
}

bool frmMain::CancelQueryFileUnload() {
  if (!dirty_) return false;
  const std::string what = title_.empty() ? " SQL" : ": " + title_;
  switch (help_.HelpMsgBoxQuestion("Save changes to" + what + "?", MessageButtons::YesNoCancel,
                                   MessageIcon::Exclamation)) {
    case MessageResult::Yes: cmdSave_Click(); return dirty_;
    case MessageResult::No: return false;
    default: return true;
  }
}

void frmMain::cmdNew_Click() {
  if (CancelQueryFileUnload()) return;
  txtQuery_.SetText("");
  document_.Forget();
  SetDocument("", "");
}

void frmMain::cmdOpen_Click() {
  txtQuery_.SetFocus();
  if (CancelQueryFileUnload()) return;
  dlgCommon_.fileName = path_;
  if (!ShowOpenFileDialog(dlgCommon_, global_.TheFiles(), true)) return;
  if (document_.Open(dlgCommon_.fileName)) SetDocument(dlgCommon_.fileName, dlgCommon_.fileTitle);
}

void frmMain::cmdSave_Click() {
  if (path_.empty()) return cmdSaveAs_Click();
  if (document_.Save(path_)) MarkSaved();
}

void frmMain::cmdSaveAs_Click() {
  dlgCommon_.fileName = path_;
  if (!ShowSaveFileDialog(dlgCommon_, global_.TheFiles(), true)) return;
  if (document_.Save(dlgCommon_.fileName)) SetDocument(dlgCommon_.fileName, dlgCommon_.fileTitle);
}

void frmMain::InsertText(std::string_view text) {
  const std::size_t at = txtQuery_.SelStart() + txtQuery_.SelLength();
  txtQuery_.Select(at, 0);
  txtQuery_.SetSelText(text);
  txtQuery_.Select(at, text.size());
}

void frmMain::SetDocument(const std::string& path, const std::string& title) {
  path_ = path;
  title_ = title;
  MarkSaved();
}

void frmMain::UpdateCaption() {
  window_->SetCaption("SQL [" + (title_.empty() ? "untitled" : title_) + (dirty_ ? " *" : "") +
                      "]");
}

void frmMain::MarkSaved() {
  dirty_ = false;
  UpdateCaption();
}

void frmMain::txtQuery_Change() {
  if (dirty_) return;
  dirty_ = true;
  UpdateCaption();
}

void frmMain::chkWordWrap_Click() {
  document_.SetWordWrap(chkWordWrap_.Value());
  if (window_->Visible()) txtQuery_.SetFocus();
}

void frmMain::cmdExecute_Click() {
  host_.DoSQL(IsKeyDown(global_.TheDesktop(), key::shift));
  txtQuery_.SetFocus();
}

void frmMain::Form_KeyDown(KeyEvent& event) {
  if (event.shift != shiftState::none) return;
  if (event.keyCode == key::f6) host_.FocusFirstRecordsWindow();
  else if (event.keyCode == key::f7) host_.FocusBrowser();
  else return;
  event.handled = true;
}

/// The window is never closed on its own; with the frame it goes unless the save question is
/// cancelled.
void frmMain::Form_QueryUnload(bool& refuse, UnloadReason reason) {
  refuse = reason == UnloadReason::ControlBox || CancelQueryFileUnload();
}

}  // namespace tessel
