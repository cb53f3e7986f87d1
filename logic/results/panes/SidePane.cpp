#include "logic/results/panes/SidePane.h"

#include <algorithm>
#include <utility>

#include "contract/base/Keys.h"
#include "contract/desktop/controls/Button.h"

namespace tessel {

namespace {

constexpr const char* widthSetting = "side width";
constexpr int ordinaryWidth = 5400;
constexpr int narrowest = 1800;
constexpr int edge = 120;
/// Of the grid, as long as there is room.
constexpr int narrowestGrid = 2400;

}  // namespace

SidePane::SidePane(const Global& global, SqlTarget& sqlWindow, Window& window, PaneOwner owner)
    : owner_(std::move(owner)),
      settings_(global),
      grid_(window.Find<DataGrid>("DataGrid")),
      fraSide_(window.Find<PictureBox>("fraSide")),
      fraValue_(window.Find<PictureBox>("fraValue")),
      record_(global, sqlWindow, window, owner_),
      value_(global, window),
      width_(settings_.Number(widthSetting, ordinaryWidth)) {
  window.Find<Button>("cmdCloseRecord").Click = [this] { ShowRecord(false); };
  window.Find<Button>("cmdCloseValue").Click = [this] { ShowValuePane(false); };
  WireEdge();
}

// --- where it stands -----------------------------------------------------------------------------

Rect SidePane::Place(const Rect& room) {
  room_ = room;
  const bool shown = grid_.Visible() && (record_.Shown() || ValueShown());
  fraSide_.SetVisible(shown);
  if (!shown) return room;
  const int most = std::max(room.width - narrowestGrid, room.width / 2);
  const int width = std::clamp(width_, std::min(narrowest, most), most);
  fraSide_.SetBounds({room.left + room.width - width, room.top, width, room.height});
  return {room.left, room.top, room.width - width, room.height};
}

void SidePane::WireEdge() {
  fraSide_.MouseDown = [this](const MouseEvent& event) {
    dragging_ = event.button == MouseButton::Left && event.x < edge;
  };
  fraSide_.MouseMove = [this](const MouseEvent& event) { fraSide_MouseMove(event); };
  fraSide_.MouseUp = [this](const MouseEvent&) {
    if (std::exchange(dragging_, false)) settings_.SetNumber(widthSetting, width_);
  };
}

void SidePane::fraSide_MouseMove(const MouseEvent& event) {
  const bool isEdge = dragging_ || event.x < edge;
  fraSide_.SetMousePointer(isEdge ? MousePointer::SizeWestEast : MousePointer::Default);
  dragging_ = dragging_ && event.button == MouseButton::Left;
  if (!dragging_) return;
  width_ = std::clamp(fraSide_.Bounds().width - event.x, narrowest,
                      std::max(room_.width - narrowestGrid, narrowest));
  owner_.placed();
}

// --- what it shows -------------------------------------------------------------------------------

void SidePane::ShowRecord(bool shown) {
  record_.Show(shown);
  ShowParts();
  if (shown) record_.SetFocus();
}

void SidePane::ShowValuePane(bool shown) {
  fraValue_.SetVisible(shown);
  if (!shown) value_.Clear();
  ShowParts();
  if (shown) value_.SetFocus();
}

void SidePane::ShowParts() {
  owner_.placed();
  Follow(row_);
  if (!record_.Shown() && !ValueShown()) owner_.focusRecords();
}

void SidePane::Follow(const std::string& row) {
  row_ = row;
  record_.Follow(row);
  FollowValue();
}

void SidePane::FollowValue() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const bool open = rows != nullptr && (rows->State() & objectState::open) != 0;
  if (!ValueShown() || !open || grid_.CurrentColumn() < 0) return value_.Clear();
  value_.Show(CurrentCell());
}

LookedAt SidePane::CurrentCell() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const auto column = static_cast<std::size_t>(grid_.CurrentColumn());
  const bool record = !grid_.OnNewRow() && !rows->Bof() && !rows->Eof();
  const std::string row = record ? std::to_string(rows->CurrentBookmark()) : "new";
  const auto address = reinterpret_cast<std::uintptr_t>(rows.get());
  return {[this] { return CurrentValue(); }, rows->Fields().at(column).name,
          std::to_string(address) + " " + row + " " + std::to_string(column)};
}

/// Null on a row that is not begun yet.
ValueView SidePane::CurrentValue() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr || grid_.CurrentColumn() < 0) return {};
  const bool empty = grid_.OnNewRow() && rows->Editing() != EditMode::Add;
  if (empty || rows->Bof() || rows->Eof()) return {};
  return rows->FieldValue(static_cast<std::size_t>(grid_.CurrentColumn()));
}

// --- keys ----------------------------------------------------------------------------------------

bool SidePane::HasFocus() const { return record_.HasFocus() || value_.HasFocus(); }

/// The key of a part that is shown gives it the keyboard; from there it closes the part.
bool SidePane::TakeCommand(int keyCode, int shift) {
  using namespace shiftState;
  if (shift == alt && record_.Shown() && (keyCode == key::pageDown || keyCode == key::pageUp)) {
    record_.Step(keyCode == key::pageDown ? 1 : -1);
    return true;
  }
  if (shift != (ctrl | shiftState::shift) || !grid_.Visible()) return false;
  if (keyCode == 'R') ShowRecord(!record_.Shown() || !record_.HasFocus());
  else if (keyCode == 'V') ShowValuePane(!ValueShown() || !value_.HasFocus());
  else return false;
  return true;
}

bool SidePane::TakeKey(const KeyEvent& event) {
  if (record_.TakeKey(event) || value_.TakeKey(event)) return true;
  if (!HasFocus() || event.keyCode != key::escape || event.shift != shiftState::none) return false;
  owner_.focusRecords();
  return true;
}

}  // namespace tessel
