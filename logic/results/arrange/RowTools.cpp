#include "logic/results/arrange/RowTools.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr int betweenLines = 60;
constexpr int widthStep = 300;

void PlaceLine(PictureBox& line, int left, int& top, int width) {
  if (!line.Visible()) return;
  const int height = line.Bounds().height;
  line.SetBounds({left, top, width, height});
  top += height + betweenLines;
}

}  // namespace

RowTools::RowTools(Window& window, const Clock& clock, Host host)
    : host_(std::move(host)),
      grid_(window.Find<DataGrid>("DataGrid")),
      fraFindRows_(window.Find<PictureBox>("fraFindRows")),
      fraFilterRows_(window.Find<PictureBox>("fraFilterRows")),
      arranging_(grid_, window.TimerNamed("tmrArrange"), clock,
                 {host_.saveChange, [this](const std::string& text) { host_.tell(text, false); },
                  [this] { Arranged(); }}),
      filter_(window, grid_, arranging_),
      find_(window, grid_),
      sums_(grid_, window.TimerNamed("tmrSums"), [this] { host_.rowTextChanged(); }) {
  filter_.moved = [this] { host_.place(); };
  find_.moved = [this] { host_.place(); };
  grid_.SelectionChange = [this] { sums_.Look(); };
  window.Menu("mnuRowsSortNot").Click = [this] { arranging_.SortByNothing(); };
  window.Menu("mnuColumnFit").Click = [this] {
    if (grid_.CurrentColumn() >= 0) grid_.SetColumnWidth(grid_.CurrentColumn(), 0);
  };
}

void RowTools::ShowRecordset() {
  arranging_.Forget();
  if (grid_.DataSource() == nullptr) find_.Close();
  else find_.Forget();
  filter_.ShowRecordset();
  sums_.Look();
}

/// What was found is of the rows before.
void RowTools::NoteRows() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr || (rows->State() & objectState::open) == 0) return;
  const bool changing = rows->Editing() != EditMode::None;
  const bool otherRows = std::exchange(rows_, rows->RecordCount()) != rows->RecordCount();
  const bool otherChange = std::exchange(changing_, changing) != changing;
  if (!otherRows && !otherChange) return;
  find_.Forget();
  filter_.ShowCount();
  sums_.Look();
}

void RowTools::Arranged() {
  const Recordset& rows = *grid_.DataSource();
  find_.Forget();
  filter_.ShowCount();
  const std::string sorted = SortText(rows);
  host_.tell(CountText(rows) + (sorted.empty() ? "" : " " + sorted), true);
}

// --- keys ----------------------------------------------------------------------------------------

bool RowTools::TakeKey(int keyCode, int shift) {
  if (find_.TakeKey(keyCode, shift) || filter_.TakeKey(keyCode, shift)) return true;
  if (keyCode == key::escape && shift == shiftState::none) return arranging_.Stop();
  if (!grid_.Visible()) return false;
  if (keyCode == 'F' && shift == shiftState::ctrl) {
    find_.Open(grid_.HasFocus());
    return true;
  }
  return shift == (shiftState::ctrl | shiftState::shift) && TakeControlShiftKey(keyCode);
}

bool RowTools::TakeControlShiftKey(int keyCode) {
  switch (keyCode) {
    case 'F': filter_.Open(); return true;
    case 'S': arranging_.SortBy(grid_.CurrentColumn(), false); return true;
    case 'A': arranging_.SortBy(grid_.CurrentColumn(), true); return true;
    case 'W': Widen(widthStep); return true;
    case 'N': Widen(-widthStep); return true;
    default: return false;
  }
}

/// The current column, by so many twips.
void RowTools::Widen(int by) {
  const int column = grid_.CurrentColumn();
  if (column >= 0) grid_.SetColumnWidth(column, std::max(grid_.ColumnWidth(column) + by, 1));
}

// --- the lines -----------------------------------------------------------------------------------

int RowTools::Place(int left, int top, int width) {
  PlaceLine(fraFindRows_, left, top, width);
  PlaceLine(fraFilterRows_, left, top, width);
  return top;
}

}  // namespace tessel
