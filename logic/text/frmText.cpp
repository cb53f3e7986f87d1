// The one window that shows or edits a longer text for a caller, and the two functions by which the
// rest of the program opens it. What it does with files and wrapping is the text document's.

#include "logic/text/frmText.h"

#include <memory>
#include <utility>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/text/TextCut.h"
#include "logic/program/FileDialogs.h"
#include "logic/text/SqlTarget.h"
#include "logic/text/TextDocument.h"
#include "logic/text/TextZoom.h"
#include "logic/text/find/FindLine.h"
#include "logic/text/indent/StructuredText.h"

namespace tessel {

namespace {

constexpr const char* ownFilter = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*";

/// The ending of the first file type of a filter; empty for none or any.
std::string ExtensionOf(const std::string& filter) {
  const std::size_t bar = filter.find('|');
  std::string pattern = bar == std::string::npos ? std::string() : filter.substr(bar + 1);
  CutAtFirst(pattern, "|");
  CutAtFirst(pattern, ";");
  const bool known = pattern.starts_with("*.") && pattern != "*.*";
  return known ? pattern.substr(2) : std::string();
}

/// The window of one ShowText call.
class frmText {
 public:
  frmText(const Global& global, SqlTarget& sqlWindow)
      : global_(global),
        sqlWindow_(sqlWindow),
        window_(global.TheDesktop().MakeWindow("frmText")),
        txtText_(window_->Find<EditorBox>("txtText")),
        cmdOK_(window_->Find<Button>("cmdOK")),
        cmdCancel_(window_->Find<Button>("cmdCancel")),
        cmdOpen_(window_->Find<Button>("cmdOpen")),
        cmdSave_(window_->Find<Button>("cmdSave")),
        cmdCopy_(window_->Find<Button>("cmdCopy")),
        cmdCopyToSQLWindow_(window_->Find<Button>("cmdCopyToSQLWindow")),
        chkWordWrap_(window_->Find<CheckBox>("chkWordWrap")),
        dlgCommon_(window_->FileDialogNamed("dlgCommon")),
        document_(global, txtText_),
        structured_(global, *window_, txtText_),
        find_(*window_, txtText_),
        zoom_(global, txtText_, "viewer zoom") {
    txtText_.Change = [this] { find_.NoteChange(); };
    window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
    cmdOK_.Click = [this] { cmdOK_Click(); };
    cmdCancel_.Click = [this] { cmdCancel_Click(); };
    cmdOpen_.Click = [this] { cmdOpen_Click(); };
    cmdSave_.Click = [this] { cmdSave_Click(); };
    cmdCopy_.Click = [this] { cmdCopy_Click(); };
    cmdCopyToSQLWindow_.Click = [this] { cmdCopyToSQLWindow_Click(); };
    chkWordWrap_.Click = [this] { chkWordWrap_Click(); };
    dlgCommon_.filter = ownFilter;
    document_.WriteInstead([this] { return structured_.Text(); });
  }

  bool Show(std::string& text, const TextViewOptions& options) {
    Prepare(options);
    if (options.structured) structured_.Show(text);
    else txtText_.SetText(text);
    window_->ShowModal(nullptr);
    if (accepted_) text = structured_.Text();
    window_->Unload();
    return accepted_;
  }

  void View(std::string text, const TextViewOptions& options) {
    Prepare(options);
    txtText_.SetText(std::exchange(text, {}));
    window_->ShowModal(nullptr);
    window_->Unload();
  }

 private:
  void Prepare(const TextViewOptions& options) {
    window_->SetHelpContext(options.helpContext);
    txtText_.SetLocked(!options.editable);
    cmdOpen_.SetVisible(options.editable);
    cmdOK_.SetVisible(options.editable);
    cmdCancel_.SetVisible(options.editable);
    chkWordWrap_.SetValue(options.wordWrap);
    document_.SetWordWrap(options.wordWrap);
    if (!options.title.empty()) window_->SetCaption(options.title);
    if (!options.filter.empty()) dlgCommon_.filter = options.filter + "|" + dlgCommon_.filter;
    dlgCommon_.defaultExtension = ExtensionOf(options.filter);
    accepted_ = false;
    const Rect at = window_->Bounds();
    window_->SetBounds({at.left, at.top, options.width, options.height});
  }

  void cmdOK_Click() {
    accepted_ = true;
    window_->Hide();
  }
  void cmdCancel_Click() { window_->Unload(); }

  void cmdOpen_Click() {
    if (ShowOpenFileDialog(dlgCommon_, global_.TheFiles(), false))
      document_.Open(dlgCommon_.fileName);
  }
  void cmdSave_Click() {
    if (ShowSaveFileDialog(dlgCommon_, global_.TheFiles(), false))
      document_.Save(dlgCommon_.fileName);
  }
  void cmdCopy_Click() { global_.TheDesktop().TheClipboard().SetText(structured_.Text()); }
  void cmdCopyToSQLWindow_Click() { sqlWindow_.InsertText(structured_.Text()); }

  void chkWordWrap_Click() {
    document_.SetWordWrap(chkWordWrap_.Value());
    if (window_->Visible()) txtText_.SetFocus();
  }

  void Form_KeyDown(KeyEvent& event) {
    using namespace shiftState;
    event.handled = find_.TakeKey(event) || zoom_.TakeKey(event) || structured_.TakeKey(event);
    if (event.handled) return;
    if (event.keyCode == 'C' && event.shift == (ctrl | alt)) event.handled = cmdCopy_.Press();
    else if (event.keyCode == 'C' && event.shift == (ctrl | shift))
      event.handled = cmdCopyToSQLWindow_.Press();
    else if (event.keyCode == key::escape && event.shift == none) event.handled = window_->Unload();
    else if (event.shift == ctrl) HandleControlKey(event);
  }

  void HandleControlKey(KeyEvent& event) {
    if (event.keyCode == 'O') event.handled = cmdOpen_.Press();
    else if (event.keyCode == 'S') event.handled = cmdSave_.Press();
    else if (event.keyCode == key::enter) event.handled = cmdOK_.Press();
    else if (event.keyCode == key::tab) event.handled = LeaveText();
    else if (event.keyCode == 'F' || event.keyCode == 'H') {
      find_.Open(event.keyCode == 'H');
      event.handled = true;
    } else if (event.keyCode == 'W' && chkWordWrap_.Visible()) {
      chkWordWrap_.SetValue(!chkWordWrap_.Value());
      event.handled = true;
    }
  }

  /// Tab itself goes into the text.
  bool LeaveText() {
    if (!txtText_.HasFocus()) return false;
    chkWordWrap_.SetFocus();
    return true;
  }

  const Global& global_;
  SqlTarget& sqlWindow_;
  std::unique_ptr<Window> window_;
  EditorBox& txtText_;
  Button& cmdOK_;
  Button& cmdCancel_;
  Button& cmdOpen_;
  Button& cmdSave_;
  Button& cmdCopy_;
  Button& cmdCopyToSQLWindow_;
  CheckBox& chkWordWrap_;
  FileDialog& dlgCommon_;
  TextDocument document_;
  StructuredText structured_;
  FindLine find_;
  TextZoom zoom_;
  bool accepted_ = false;
};

}  // namespace

bool ShowText(const Global& global, SqlTarget& sqlWindow, std::string& text,
              const TextViewOptions& options) {
  return frmText(global, sqlWindow).Show(text, options);
}

void ViewText(const Global& global, SqlTarget& sqlWindow, std::string text,
              const TextViewOptions& options) {
  TextViewOptions readOnly = options;
  readOnly.editable = false;
  frmText(global, sqlWindow).View(std::move(text), readOnly);
}

}  // namespace tessel
