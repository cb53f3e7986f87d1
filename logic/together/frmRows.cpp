#include "logic/together/frmRows.h"

#include <utility>

#include "contract/base/Keys.h"
#include "logic/results/FrameCommands.h"
#include "logic/results/commands/KeyMenu.h"

namespace tessel {

frmRows::frmRows(const Global& global, dlgAsync& async, RecordsHost& host)
    : host_(host),
      window_(global.TheDesktop().MakeWindow("frmRows")),
      lblStatus_(window_->Find<Label>("lblStatus")),
      chkTags_(window_->Find<CheckBox>("chkTags")),
      cmdAgain_(window_->Find<Button>("cmdAgain")),
      cmdGoTo_(window_->Find<Button>("cmdGoTo")),
      dataGrid_(window_->Find<DataGrid>("DataGrid")),
      rowTools_(*window_, global.TheDesktop().TheClock(), ToolsHost()),
      conversion_(global, *window_, async, host),
      export_(
          global, *window_, async, [this](const std::string& text) { lblStatus_.SetCaption(text); },
          nullptr) {
  window_->KeyDown = [this](KeyEvent& event) { Form_KeyDown(event); };
  window_->Unloaded = [this] { Form_Unload(); };
  window_->Menu("mnuRowsSelect").Click = [this] { dataGrid_.SelectRow(); };
  WireArranging();
  WireFrameCommands(*window_, host);
  WireZoomReset(*window_, dataGrid_);
}

frmRows::~frmRows() {
  onUnloaded = nullptr;
  Form_Unload();
}

// --- finding, sorting and filtering --------------------------------------------------------------

/// The rows are never changed, and the form places its lines itself.
RowTools::Host frmRows::ToolsHost() {
  const auto tell = [this](const std::string& text, bool isCount) {
    const RowArrangement& now = dataGrid_.DataSource()->Arrangement();
    arranging_ = isCount && now.sort.empty() && now.conditions.empty() ? "" : text;
    ShowStatus();
  };
  return {[] { return true; }, tell, [this] { ShowStatus(); }, [] {}};
}

void frmRows::WireArranging() {
  WireArrangingMenu(*window_,
                    [this](int keyCode, int shift) { return rowTools_.TakeKey(keyCode, shift); });
  dataGrid_.RowsChange = [this] { rowTools_.NoteRows(); };
}

/// The line about the rows, then what the selected cells come to or how the rows are arranged.
void frmRows::ShowStatus() {
  const std::string& more = rowTools_.SumText().empty() ? arranging_ : rowTools_.SumText();
  lblStatus_.SetCaption(about_ + (about_.empty() || more.empty() ? "" : ". ") + more);
}

void frmRows::Form_Unload() {
  if (std::exchange(unloaded_, true)) return;
  dataGrid_.SetDataSource(nullptr);
  rowTools_.ShowRecordset();
  if (onUnloaded) onUnloaded();
}

void frmRows::ShowRows(const std::string& caption, std::shared_ptr<Recordset> rows,
                       const std::string& status) {
  window_->SetCaption(caption);
  about_ = status;
  arranging_.clear();
  dataGrid_.SetDataSource(std::move(rows));
  rowTools_.ShowRecordset();
  ShowStatus();
  window_->Show();
  dataGrid_.SetFocus();
}

void frmRows::OfferGoTo(std::function<void(Bookmark)> goTo) {
  goTo_ = std::move(goTo);
  cmdGoTo_.SetVisible(true);
  cmdGoTo_.Click = [this] { GoTo(); };
  dataGrid_.DblClick = [this] { GoTo(); };
}

void frmRows::OfferAgain(std::function<void()> again, bool possible) {
  cmdAgain_.SetVisible(true);
  cmdAgain_.SetEnabled(possible);
  cmdAgain_.Click = std::move(again);
}

void frmRows::OfferTags(std::function<void()> chosen) {
  chkTags_.SetVisible(true);
  chkTags_.Click = [this, chosen = std::move(chosen)] {
    if (chkTags_.Value()) chosen();
  };
}

void frmRows::Form_KeyDown(KeyEvent& event) {
  event.handled = event.handled || HandleKey(event.keyCode, event.shift);
}

/// Esc goes back to the SQL and leaves the window as it is. Enter on a row does what a double click
/// does, where that does anything.
bool frmRows::HandleKey(int keyCode, int shift) {
  if (host_.HandleFrameKey(keyCode, shift) || rowTools_.TakeKey(keyCode, shift)) return true;
  if (keyCode == 'E' && shift == (shiftState::ctrl | shiftState::shift)) {
    export_.Run();
    return true;
  }
  if (shift != shiftState::none) return false;
  if (keyCode == key::f6 || (keyCode == key::escape && HasFocus())) {
    host_.FocusQueryWindow();
    return true;
  }
  if (keyCode != key::enter || !goTo_ || !dataGrid_.HasFocus()) return false;
  GoTo();
  return true;
}

bool frmRows::HasFocus() const {
  return dataGrid_.HasFocus() || chkTags_.HasFocus() || cmdAgain_.HasFocus() || cmdGoTo_.HasFocus();
}

void frmRows::GoTo() {
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  if (rows == nullptr || rows->Bof() || rows->Eof()) return;
  goTo_(rows->CurrentBookmark());
}

}  // namespace tessel
