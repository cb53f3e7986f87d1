#include "logic/results/runs/QueryHistory.h"

#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

namespace {

constexpr int menuItems = 8;
constexpr Color allFromFields = 0x00FF00;
constexpr Color partlyFromFields = 0x00FFFF;
constexpr Color notFromFields = 0xFFFF00;

Color TagColor(int tagKind) {
  if (tagKind == 1) return allFromFields;
  return (tagKind & 1) != 0 ? partlyFromFields : notFromFields;
}

}  // namespace

QueryHistory::QueryHistory(const Desktop& desktop, Window& window, QueryRunner& runner)
    : desktop_(desktop),
      window_(window),
      runner_(runner),
      cmdRequery_(window.Find<Button>("cmdRequery")),
      cmdRequeryTags_(window.Find<Button>("cmdRequeryTags")),
      cmdHistoryBack_(window.Find<Button>("cmdHistoryBack")),
      cmdHistoryForward_(window.Find<Button>("cmdHistoryForward")),
      cmdHistoryForwardTags_(window.Find<Button>("cmdHistoryForwardTags")),
      cmdProperties_(window.Find<Button>("cmdProperties")) {
  cmdRequery_.Click = [this] { GoHistory(0, false); };
  cmdRequeryTags_.Click = [this] { GoHistory(0, true); };
  cmdHistoryBack_.Click = [this] { GoHistory(-1, false); };
  cmdHistoryForward_.Click = [this] { GoHistory(1, false); };
  cmdHistoryForwardTags_.Click = [this] { GoHistory(1, true); };
  cmdProperties_.Click = [this] { runner_.ShowSQL(ring_.At(ring_.Position()).sql); };
  for (const bool forward : {false, true}) {
    Button& button = forward ? cmdHistoryForward_ : cmdHistoryBack_;
    button.MouseUp = [this, &button, forward](const MouseEvent& event) {
      if (event.button == MouseButton::Right) ShowMenuOf(button, forward);
    };
    button.KeyUp = [this, &button, forward](KeyEvent& event) {
      if (event.keyCode == key::contextMenu) event.handled = ShowMenuOf(button, forward);
    };
  }
  for (int item = 0; item < menuItems; ++item) {
    MenuItem& entry = window.Menu("mnuHistorical_" + std::to_string(item));
    entry.Click = [this, &entry] { GoHistory(entry.Tag(), false); };
    mnuHistorical_.push_back(&entry);
  }
}

void QueryHistory::Record(const HistoryEntry& entry, int position) {
  if (ring_.Has(position)) ring_.RecordRerun(position, entry.sql, entry.recordCount);
  else ring_.RecordNew(entry);
  cmdProperties_.SetEnabled(true);
  cmdRequery_.SetEnabled(true);
  UpdateHistoryButtons();
}

void QueryHistory::GoHistory(int offset, bool resubstituteTags) {
  const int position = ring_.Position() + offset;
  if (!ring_.Has(position)) return;
  const HistoryEntry entry = ring_.At(position);
  const bool confirmFirst = desktop_.IsKeyDown(key::shift);
  if (resubstituteTags) runner_.RunTagged(entry, confirmFirst, position);
  else runner_.RunAgain(entry, confirmFirst, position);
  runner_.FocusRecords();
}

// --- buttons -------------------------------------------------------------------------------------

void QueryHistory::UpdateHistoryButtons() {
  UpdateRequeryTags();
  const int position = ring_.Position();
  cmdHistoryBack_.SetEnabled(ring_.Has(position - 1));
  SetTip(cmdHistoryBack_, "Back to ", position - 1);
  cmdHistoryForward_.SetEnabled(ring_.Has(position + 1));
  SetTip(cmdHistoryForward_, "Forward to ", position + 1);
  UpdateForwardTags();
}

void QueryHistory::UpdateRequeryTags() {
  const int tagKind = cmdRequery_.Enabled() ? ring_.At(ring_.Position()).tagKind : 0;
  cmdRequeryTags_.SetVisible(tagKind != 0);
  if (tagKind != 0) cmdRequeryTags_.SetBackColor(TagColor(tagKind));
}

void QueryHistory::UpdateForwardTags() {
  const int next = ring_.Position() + 1;
  const bool shown = ring_.Has(next) && (ring_.At(next).tagKind & 1) != 0;
  cmdHistoryForwardTags_.SetVisible(shown);
  if (!shown) return;
  const HistoryEntry& entry = ring_.At(next);
  cmdHistoryForwardTags_.SetToolTip("Forward (resubstitute tags) to: " +
                                    ShortenForTip(entry.taggedSQL));
  cmdHistoryForwardTags_.SetBackColor(TagColor(entry.tagKind));
}

void QueryHistory::SetTip(Button& button, const char* direction, int position) {
  if (!ring_.Has(position)) return;
  const HistoryEntry& entry = ring_.At(position);
  button.SetToolTip(direction + std::to_string(entry.recordCount) +
                    " record(s) of: " + ShortenForTip(entry.sql));
}

// --- menu ----------------------------------------------------------------------------------------

void QueryHistory::ShowHistoryMenu(bool forward) {
  const int step = forward ? 1 : -1;
  for (int item = 0; item < menuItems; ++item)
    FillMenuItem(static_cast<std::size_t>(item), ring_.Position() + step * (item + 1),
                 step * (item + 1));
  window_.PopupMenu(window_.Menu("menuHistory"), &cmdHistoryBack_, 0,
                    cmdHistoryBack_.Bounds().height);
}

void QueryHistory::FillMenuItem(std::size_t item, int position, int step) {
  MenuItem& entry = *mnuHistorical_[item];
  entry.SetVisible(ring_.Has(position));
  if (!ring_.Has(position)) return;
  const std::string count = "   [" + std::to_string(ring_.At(position).recordCount) + "]";
  entry.SetCaption(PlainCaption(ShortenForTip(ring_.At(position).sql)) + count);
  entry.SetTag(step);
}

bool QueryHistory::ShowMenuOf(Button& button, bool forward) {
  if (!button.Enabled()) return false;
  ShowHistoryMenu(forward);
  return true;
}

bool QueryHistory::HandleKey(int keyCode, int shift) {
  if (shift == shiftState::ctrl && keyCode == 'Q') return cmdProperties_.Press();
  if (shift == shiftState::alt && keyCode == key::up) return ShowMenuOf(cmdHistoryBack_, false);
  if (shift == shiftState::alt && keyCode == key::down) return ShowMenuOf(cmdHistoryForward_, true);
  return HandleRunningKey(keyCode, shift & ~shiftState::shift);
}

/// Takes the keys that run a query; with Shift they show it first.
bool QueryHistory::HandleRunningKey(int keyCode, int shift) {
  using namespace shiftState;
  if (shift == none && keyCode == key::f5) return cmdRequery_.Press();
  if (shift == ctrl && keyCode == key::f5) return cmdRequeryTags_.Press();
  if (shift == alt && keyCode == key::left) return cmdHistoryBack_.Press();
  if (shift == alt && keyCode == key::right) return cmdHistoryForward_.Press();
  const bool tags =
      shift == (ctrl | alt) ? keyCode == key::right : shift == alt && keyCode == key::end;
  if (tags) return cmdHistoryForwardTags_.Press();
  return false;
}

}  // namespace tessel
