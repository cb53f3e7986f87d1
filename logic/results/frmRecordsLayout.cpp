// Where the controls of a records window stand, and which keys it takes.

#include <algorithm>

#include "logic/results/frmRecords.h"

namespace tessel {

namespace {

constexpr int margin = 60;
constexpr int minimumHeight = 2400;
constexpr int minimumWidth = 1800;
constexpr int statusTop = 420;
constexpr int warningTop = 750;
constexpr int gridTop = 840;
constexpr int gridTopWithWarning = 960;

void SetTopAndWidth(Control& control, int top, int width) {
  Rect bounds = control.Bounds();
  bounds.top = top;
  bounds.width = width;
  control.SetBounds(bounds);
}

}  // namespace

void frmRecords::ShowRow() {
  rowTools_.NoteRows();
  ShowRowText();
}

/// While cells are selected what they come to stands in the place of the row's number.
void frmRecords::ShowRowText() {
  std::string text = rowTools_.SumText();
  if (!dataGrid_.Visible()) text.clear();
  else if (text.empty()) text = RowText(dataGrid_);
  if (topRow_.ShowRow(text)) Form_Resize();
}

void frmRecords::OfferTakingPart(bool offer) {
  if (chkTakesPart_.Visible() == offer) return;
  chkTakesPart_.SetVisible(offer);
  ShowMarks();
  Form_Resize();
}

void frmRecords::Form_Resize() {
  if (window_->Minimized()) return;
  const Rect bounds = window_->Bounds();
  if (bounds.width < minimumWidth || bounds.height < minimumHeight)
    return window_->SetBounds({bounds.left, bounds.top, std::max(bounds.width, minimumWidth),
                               std::max(bounds.height, minimumHeight)});
  const int width = window_->ScaleWidth();
  lowered_ = topRow_.Place(width);
  SetTopAndWidth(txtStatus_, statusTop + lowered_, width - 2 * margin);
  SetTopAndWidth(lblWarning_, warningTop + lowered_, width - 2 * margin);
  PlaceGrid(width, window_->ScaleHeight());
}

/// The grid fills what is left below the status line, and below the warning and the lines of its
/// tools when they show.
void frmRecords::PlaceGrid(int width, int height) {
  const int below = lowered_ + (lblWarning_.Visible() ? gridTopWithWarning : gridTop);
  const int top = rowTools_.Place(margin, below, width - 2 * margin);
  dataGrid_.SetBounds(
      side_.Place({margin, top, width - 2 * margin, std::max(height - margin - top, 0)}));
}

void frmRecords::Form_KeyDown(KeyEvent& event) {
  event.handled = side_.TakeKey(event) || rowTools_.TakeKey(event.keyCode, event.shift) ||
                  HandleKey(event.keyCode, event.shift);
}

/// The window has had the key before.
void frmRecords::DataGrid_KeyDown(KeyEvent& event) {
  event.handled = editing_.HandleGridKey(event.keyCode, event.shift);
}

void frmRecords::DataGrid_KeyUp(KeyEvent& event) {
  if (event.keyCode == key::contextMenu && event.shift == shiftState::none)
    event.handled = blobs_.PopupAtCell();
}

bool frmRecords::HandleKey(int keyCode, int shift) {
  if (side_.TakeCommand(keyCode, shift)) return true;
  if (host_.HandleFrameKey(keyCode, shift) || history_.HandleKey(keyCode, shift)) return true;
  switch (shift) {
    case shiftState::none: return HandlePlainKey(keyCode);
    case shiftState::ctrl: return HandleControlKey(keyCode);
    case shiftState::ctrl | shiftState::alt: return HandleControlAltKey(keyCode);
    case shiftState::ctrl | shiftState::shift: return HandleControlShiftKey(keyCode);
    default: return false;
  }
}

/// Esc leaves the boxes and buttons above the rows.
bool frmRecords::HandlePlainKey(int keyCode) {
  if (keyCode == key::f6) host_.FocusQueryWindow();
  else if (keyCode == key::escape && topRow_.HasFocus()) FocusRecords();
  else return false;
  return true;
}

bool frmRecords::HandleControlKey(int keyCode) {
  switch (keyCode) {
    case 'L': chkLock_.SetValue(!chkLock_.Value()); return true;
    case 'S': return cmdAccept_.Press();
    case 'R': return cmdReject_.Press();
    case key::pageDown: return results_.Step(1);
    case key::pageUp: return results_.Step(-1);
    default: return false;
  }
}

bool frmRecords::HandleControlShiftKey(int keyCode) {
  switch (keyCode) {
    case 'E':
      if (!dataGrid_.Visible()) return false;
      export_.Run();
      return true;
    case 'G':
      if (RowsOnShow() == nullptr) return false;
      host_.ShowChart(*this);
      return true;
    case 'I': host_.ImportRecords(*this); return true;
    case 'T': return FlipTakesPart();
    default: return false;
  }
}

bool frmRecords::HandleControlAltKey(int keyCode) {
  switch (keyCode) {
    case 'C': cmdReconnect_Click(); return true;
    case 'D':
      if (!cboCatalog_.Visible() || !cboCatalog_.TabStop()) return false;
      cboCatalog_.SetFocus();
      return true;
    case 'E': return cmdCnErrors_.Press();
    case 'P': ShowProperties(); return true;
    case 'S': return cmdStatements_.Press();
    case 'T': return FlipTakesPart();
    case 'W': return editing_.ShowWarning();
    default: return false;
  }
}

bool frmRecords::FlipTakesPart() {
  if (!chkTakesPart_.Visible()) return false;
  chkTakesPart_.SetValue(!chkTakesPart_.Value());
  return true;
}

}  // namespace tessel
