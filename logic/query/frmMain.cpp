// The query window's commands: new, open, save and save as with their questions, running the text,
// and its caption. The completion and the copy for recovery are parts that it owns and wires here.

#include "logic/query/frmMain.h"

#include <algorithm>

#include "contract/sql/SqlStatements.h"
#include "contract/text/TextCut.h"
#include "logic/program/FileDialogs.h"
#include "logic/text/LineEnds.h"

namespace tessel {

namespace {

/// How often it is looked whether the text's file is still there.
constexpr int fileMilliseconds = 2000;

constexpr const char* toolNames[] = {"cmdNew",         "cmdOpen",         "cmdSave",
                                     "cmdExecute",     "chkWordWrap",     "cmdTakeBack",
                                     "cmdDiscardCopy", "cmdCloseRecovery"};

/// The name of a file without its folder.
std::string TitleOf(std::string path) {
  KeepAfterLast(path, std::string_view(&pathSeparator, 1));
  return path;
}

}  // namespace

frmMain::frmMain(const Global& global, QueryHost& host, Vocabulary& vocabulary)
    : global_(global),
      host_(host),
      help_(global),
      window_(global.TheDesktop().MakeWindow("frmMain")),
      txtQuery_(window_->Find<EditorBox>("txtQuery")),
      labPlace_(window_->Find<Label>("labPlace")),
      chkWordWrap_(window_->Find<CheckBox>("chkWordWrap")),
      lblHint_(window_->Find<Label>("lblHint")),
      dlgCommon_(window_->FileDialogNamed("dlgCommon")),
      document_(global, txtQuery_),
      completion_(*window_, vocabulary),
      edit_(global.TheDesktop(), txtQuery_),
      find_(*window_, txtQuery_),
      zoom_(global, txtQuery_, "editor zoom"),
      recovery_(global, *window_, static_cast<RecoveryHost&>(*this)) {
  window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
  window_->QueryUnload = [this](bool& refuse, UnloadReason reason) {
    Form_QueryUnload(refuse, reason);
  };
  window_->Unloaded = [this] { Form_Unload(); };
  txtQuery_.Change = [this] { txtQuery_Change(); };
  txtQuery_.CaretMoved = [this] { txtQuery_CaretMoved(); };
  window_->Find<Button>("cmdNew").Click = [this] { cmdNew_Click(); };
  window_->Find<Button>("cmdOpen").Click = [this] { cmdOpen_Click(); };
  window_->Find<Button>("cmdSave").Click = [this] { cmdSave_Click(); };
  window_->Find<Button>("cmdExecute").Click = [this] { cmdExecute_Click(); };
  chkWordWrap_.Click = [this] { chkWordWrap_Click(); };
  dlgCommon_.defaultExtension = "sql";
  dlgCommon_.filter = "Query Files (*.sql, *.txt)|*.sql;*.txt|All Files (*.*)|*.*";
  document_.SetWordWrap(chkWordWrap_.Value());
  SetDocument("", "");
  txtQuery_CaretMoved();
  Timer& timer = window_->TimerNamed("tmrFile");
  timer.SetInterval(fileMilliseconds);
  timer.Tick = [this] { LookAfterFile(); };
  timer.SetEnabled(true);
}

/// A file that has vanished leaves the text as all that there is of it: it is unsaved from then on.
void frmMain::LookAfterFile() {
  const bool gone = !path_.empty() && !global_.TheFiles().FileExists(path_);
  if (!gone || fileGone_) {
    fileGone_ = gone;
    return;
  }
  fileGone_ = true;
  MarkChanged();
  recovery_.NoteChange();
  recovery_.Tell(title_ + " is no longer there: the text in this window is not in any file.");
}

bool frmMain::CancelQueryFileUnload() {
  LookAfterFile();
  if (!dirty_) return false;
  const std::string what = title_.empty() ? " SQL" : ": " + title_;
  switch (help_.HelpMsgBoxQuestion("Save changes to" + what + "?", MessageButtons::YesNoCancel,
                                   MessageIcon::Exclamation)) {
    case MessageResult::Yes: return !SaveChanges();
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

void frmMain::OpenFile(const std::string& path) {
  txtQuery_.SetFocus();
  if (CancelQueryFileUnload() || !document_.Open(path)) return;
  SetDocument(path, TitleOf(path));
}

void frmMain::cmdSave_Click() { static_cast<void>(SaveChanges()); }

/// False when the text is not in its file: also when the file was read again instead.
bool frmMain::SaveChanges() {
  if (path_.empty()) {
    cmdSaveAs_Click();
    return !dirty_;
  }
  const MessageResult answer = AskAboutFile();
  if (answer == MessageResult::Yes && document_.Save(path_)) MarkSaved();
  if (answer == MessageResult::No && document_.Reload()) MarkSaved();
  return answer == MessageResult::Yes && !dirty_;
}

/// Yes when the file may be written. What another program has done to it is overwritten only when
/// the user says so; No stands for reading it again.
MessageResult frmMain::AskAboutFile() const {
  Message question;
  question.icon = MessageIcon::Exclamation;
  switch (document_.CompareWithFile()) {
    case FileState::Same: return MessageResult::Yes;
    case FileState::Gone:
      question.text = title_ + " is no longer there. Write it anew?";
      question.buttons = MessageButtons::OkCancel;
      question.captions = {"&Write", "&Cancel"};
      return help_.Ask(question, helpContext::question) == MessageResult::Ok
                 ? MessageResult::Yes
                 : MessageResult::Cancel;
    case FileState::Changed: break;
  }
  question.text = title_ + " has been changed by another program since it was read here.";
  question.buttons = MessageButtons::YesNoCancel;
  question.captions = {"&Overwrite", "&Reload", "&Cancel"};
  question.defaultAnswer = MessageResult::Cancel;
  return help_.Ask(question, helpContext::question);
}

void frmMain::cmdSaveAs_Click() {
  dlgCommon_.fileName = path_;
  if (!ShowSaveFileDialog(dlgCommon_, global_.TheFiles(), true)) return;
  if (document_.Save(dlgCommon_.fileName)) SetDocument(dlgCommon_.fileName, dlgCommon_.fileTitle);
}

void frmMain::InsertText(std::string_view text) {
  const std::size_t at = txtQuery_.SelStart() + txtQuery_.SelLength();
  const std::string inserted = WithLineEndsOf(txtQuery_.Text(), text);
  txtQuery_.Select(at, 0);
  txtQuery_.SetSelText(inserted);
  txtQuery_.Select(at, inserted.size());
}

void frmMain::SetDocument(const std::string& path, const std::string& title) {
  path_ = path;
  title_ = title;
  fileGone_ = false;
  MarkSaved();
}

void frmMain::UpdateCaption() {
  window_->SetCaption("SQL [" + (title_.empty() ? "untitled" : title_) + (dirty_ ? " *" : "") +
                      "]");
}

void frmMain::MarkSaved() {
  dirty_ = false;
  recovery_.NoteSaved();
  UpdateCaption();
}

void frmMain::txtQuery_Change() {
  find_.NoteChange();
  recovery_.NoteChange();
  MarkChanged();
}

void frmMain::txtQuery_CaretMoved() {
  const TextSpot spot = txtQuery_.CaretSpot();
  labPlace_.SetCaption("Ln " + std::to_string(spot.line) + ", Col " + std::to_string(spot.column));
}

void frmMain::MarkChanged() {
  if (dirty_) return;
  dirty_ = true;
  UpdateCaption();
}

void frmMain::ShowHint(std::string_view text) {
  lblHint_.SetCaption(text);
  lblHint_.SetVisible(!text.empty());
}

void frmMain::chkWordWrap_Click() {
  document_.SetWordWrap(chkWordWrap_.Value());
  if (window_->Visible()) txtQuery_.SetFocus();
}

void frmMain::cmdExecute_Click() {
  host_.DoSQL(global_.TheDesktop().IsKeyDown(key::shift));
  txtQuery_.SetFocus();
}

void frmMain::Form_KeyDown(KeyEvent& event) {
  event.handled = TakeEditorKey(event) || host_.HandleFrameKey(event.keyCode, event.shift);
  if (event.handled || event.shift != shiftState::none) return;
  event.handled = true;
  if (event.keyCode == key::f6) host_.FocusFirstRecordsWindow();
  else if (event.keyCode == key::f7) host_.FocusBrowser();
  else if (event.keyCode == key::escape && ToolHasFocus()) txtQuery_.SetFocus();
  else event.handled = false;
}

/// Whether one of the buttons has the keyboard.
bool frmMain::ToolHasFocus() const {
  return std::ranges::any_of(
      toolNames, [this](const char* name) { return window_->Find<Control>(name).HasFocus(); });
}

bool frmMain::TakeEditorKey(const KeyEvent& event) {
  if (find_.TakeKey(event) || zoom_.TakeKey(event)) return true;
  if (event.keyCode == key::f4 && event.shift == shiftState::none) return GoToFailure();
  if (event.keyCode != 'H' || event.shift != shiftState::ctrl) return false;
  find_.Open(true);
  return true;
}

/// The window is never closed on its own; with the frame it goes unless the save question is
/// cancelled.
void frmMain::Form_QueryUnload(bool& refuse, UnloadReason reason) {
  refuse = reason == UnloadReason::ControlBox || CancelQueryFileUnload();
}

// --- the statement at the caret, and what failed -------------------------------------------------

bool frmMain::SelectStatement(SqlDialect dialect) {
  const std::size_t caret = txtQuery_.SelStart() + txtQuery_.SelLength();
  const auto statement = StatementAt(txtQuery_.Text(), caret, dialect, ClientWords::Yes);
  if (!statement) return false;
  txtQuery_.Select(statement->begin, statement->end - statement->begin);
  return true;
}

void frmMain::ShowFailure(const TextRange& inSelection) {
  const std::size_t start = txtQuery_.SelStart();
  txtQuery_.MarkError({start + inSelection.begin, start + inSelection.end});
}

bool frmMain::GoToFailure() {
  const std::optional<TextRange> failed = txtQuery_.MarkedError();
  if (!failed) return false;
  txtQuery_.Select(failed->begin, 0);
  txtQuery_.SetFocus();
  return true;
}

// --- unsaved text that survives the program ------------------------------------------------------

std::optional<UnsavedText> frmMain::Unsaved() const {
  if (!dirty_) return std::nullopt;
  const std::size_t caret = txtQuery_.SelStart() + txtQuery_.SelLength();
  return UnsavedText{txtQuery_.Text(), caret, document_.Origin()};
}

bool frmMain::TakeBack(const UnsavedText& unsaved) {
  if (CancelQueryFileUnload()) return false;
  txtQuery_.SetText(unsaved.text);
  SetDocument(unsaved.origin.path, TitleOf(unsaved.origin.path));
  document_.SetOrigin(unsaved.origin);
  MarkChanged();
  txtQuery_.Select(unsaved.caret, 0);
  txtQuery_.SetFocus();
  return true;
}

void frmMain::EndSession() {
  recovery_.KeepNow();
  sessionEnds_ = true;
}

/// An ordinary end has asked about the text.
void frmMain::Form_Unload() {
  if (!sessionEnds_) recovery_.NoteSaved();
}

}  // namespace tessel
