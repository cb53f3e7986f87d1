// The find line of the rows: its buttons and keys, the slices in which cells are looked for, and
// which of them the user goes to.

#include "logic/results/cells/GridFind.h"

#include <algorithm>
#include <array>
#include <utility>

#include "logic/text/find/FoundText.h"

namespace tessel {

namespace {

constexpr int betweenSlices = 1;  ///< Milliseconds.
constexpr std::size_t longestProposal = 200;

}  // namespace

GridFind::GridFind(Window& window, DataGrid& grid)
    : grid_(grid),
      timer_(window.TimerNamed("tmrFindRows")),
      fraFindRows_(window.Find<PictureBox>("fraFindRows")),
      txtFindRows_(window.Find<TextBox>("txtFindRows")),
      chkFindRowsCase_(window.Find<CheckBox>("chkFindRowsCase")),
      chkFindRowsRegex_(window.Find<CheckBox>("chkFindRowsRegex")),
      cmdFindRowsNext_(window.Find<Button>("cmdFindRowsNext")),
      cmdFindRowsPrevious_(window.Find<Button>("cmdFindRowsPrevious")),
      cmdCloseFindRows_(window.Find<Button>("cmdCloseFindRows")),
      labFoundRows_(window.Find<Label>("labFoundRows")) {
  timer_.SetInterval(betweenSlices);
  timer_.Tick = [this] { RunSlice(); };
  cmdFindRowsNext_.Click = [this] { FindNext(); };
  cmdFindRowsPrevious_.Click = [this] { FindPrevious(); };
  cmdCloseFindRows_.Click = [this] { Close(); };
  txtFindRows_.Change = [this] { Forget(); };
  chkFindRowsCase_.Click = [this] { Forget(); };
  chkFindRowsRegex_.Click = [this] { Forget(); };
}

// --- the line ------------------------------------------------------------------------------------

void GridFind::Open(bool propose) {
  const std::string cell = propose && !HasFocus() ? grid_.CellText() : std::string();
  const bool isShort = cell.size() <= longestProposal && cell.find('\n') == std::string::npos;
  if (txtFindRows_.Text().empty() && isShort) txtFindRows_.SetText(cell);
  if (!fraFindRows_.Visible()) {
    fraFindRows_.SetVisible(true);
    if (moved) moved();
  }
  txtFindRows_.SetFocus();
  txtFindRows_.Select(0, txtFindRows_.Text().size());
}

void GridFind::Close() {
  if (!fraFindRows_.Visible()) return;
  const bool hadFocus = HasFocus();
  Forget();
  fraFindRows_.SetVisible(false);
  if (moved) moved();
  if (hadFocus && grid_.Visible()) grid_.SetFocus();
}

bool GridFind::HasFocus() const {
  const std::array<const Control*, 6> controls = {&txtFindRows_,         &chkFindRowsCase_,
                                                  &chkFindRowsRegex_,    &cmdFindRowsNext_,
                                                  &cmdFindRowsPrevious_, &cmdCloseFindRows_};
  return std::ranges::any_of(controls, [](const Control* control) { return control->HasFocus(); });
}

bool GridFind::TakeKey(int keyCode, int shift) {
  const bool shifted = shift == shiftState::shift;
  if (!IsOpen() || (!shifted && shift != shiftState::none)) return false;
  const bool enters = keyCode == key::enter && txtFindRows_.HasFocus();
  if (keyCode == key::f3 || enters) {
    Find(shifted ? Way::Previous : Way::Next);
    return true;
  }
  if (keyCode != key::escape || shifted || (work_ == nullptr && !HasFocus())) return false;
  if (work_ != nullptr) Stop();
  else Close();
  return true;
}

// --- looking for cells ---------------------------------------------------------------------------

void GridFind::Find(Way way) {
  if (!grid_.Visible() || grid_.DataSource() == nullptr) return;
  if (txtFindRows_.Text().empty()) return Open(false);
  if (hits_ == nullptr && !Begin()) return;
  waiting_ = way;
  if (work_ == nullptr) Settle();
}

/// False when the text is wrong, which has been said then.
bool GridFind::Begin() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  columns_ = rows->Fields().size();
  from_ = static_cast<std::int64_t>(CurrentCell().value_or(0) / std::max<std::size_t>(columns_, 1));
  auto hits = std::make_shared<CellHits>(static_cast<std::size_t>(rows->RecordCount()) * columns_);
  CellSearch search{.from = from_};
  search.found = [hits = hits.get(), columns = columns_](std::int64_t row, std::size_t field) {
    hits->Add(static_cast<std::size_t>(row) * columns + field);
  };
  try {
    search.test = MakeTextTest(txtFindRows_.Text(),
                               {false, chkFindRowsCase_.Value(), chkFindRowsRegex_.Value()});
    work_ = rows->StartSearch(std::move(search));
  } catch (const Error& error) {
    labFoundRows_.SetCaption(error.Description());
    return false;
  }
  hits_ = std::move(hits);
  MarkHits();
  timer_.SetEnabled(true);
  return true;
}

/// The grid paints anew what it is told the marks of.
void GridFind::MarkHits() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr) return;
  grid_.SetMarkedCells(
      [hits = hits_, rows = std::weak_ptr(rows), columns = columns_](Bookmark row, int column) {
        const std::shared_ptr<Recordset> source = rows.lock();
        const auto position = source == nullptr ? std::nullopt : source->PositionOf(row);
        return position && hits->Has(static_cast<std::size_t>(*position) * columns +
                                     static_cast<std::size_t>(column));
      });
}

void GridFind::RunSlice() {
  if (work_ == nullptr) return timer_.SetEnabled(false);
  work_->Step();
  if (work_->HasEnded()) {
    timer_.SetEnabled(false);
    work_.reset();
    MarkHits();
  }
  Settle();
}

/// Goes to the cell that is waited for, as soon as it is sure which one that is.
void GridFind::Settle() {
  bool cameRound = false;
  const std::optional<std::size_t> cell = waiting_ ? Target(*waiting_, cameRound) : std::nullopt;
  if (cell) {
    waiting_.reset();
    return GoTo(*cell, cameRound);
  }
  if (work_ == nullptr) waiting_.reset();
  Tell();
}

/// While the search goes on only what stands behind the current cell is known to be the next one.
std::optional<std::size_t> GridFind::Target(Way way, bool& cameRound) const {
  const std::size_t current = CurrentCell().value_or(0);
  if (way == Way::Next) {
    const bool isBehindStart = static_cast<std::int64_t>(current / columns_) >= from_;
    if (work_ == nullptr || isBehindStart)
      if (const auto next = hits_->FirstFrom(current + 1)) return next;
    cameRound = true;
    return work_ == nullptr ? hits_->FirstFrom(0) : std::nullopt;
  }
  if (work_ != nullptr) return std::nullopt;
  if (const auto previous = hits_->LastBefore(current)) return previous;
  cameRound = true;
  return hits_->LastBefore(static_cast<std::size_t>(-1));
}

void GridFind::GoTo(std::size_t cell, bool cameRound) {
  const auto hits = hits_;
  grid_.GoToCell(static_cast<std::int64_t>(cell / columns_), static_cast<int>(cell % columns_));
  if (hits_ == hits) Tell(cameRound ? ", went round" : "");
}

std::optional<std::size_t> GridFind::CurrentCell() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (grid_.OnNewRow() || rows->Bof() || rows->Eof() || grid_.CurrentColumn() < 0)
    return std::nullopt;
  const auto position = rows->PositionOf(rows->CurrentBookmark());
  if (!position) return std::nullopt;
  return static_cast<std::size_t>(*position) * rows->Fields().size() +
         static_cast<std::size_t>(grid_.CurrentColumn());
}

/// "3 of 128", with what is found so far while the search goes on.
void GridFind::Tell(const std::string& more) {
  if (hits_ == nullptr) return;
  const std::string count = std::to_string(hits_->Count());
  if (work_ != nullptr)
    return labFoundRows_.SetCaption("Searching... " + std::to_string(work_->Percent()) + " %, " +
                                    count + " so far (Esc stops)");
  if (hits_->Count() == 0) return labFoundRows_.SetCaption("Not found.");
  const auto current = CurrentCell();
  const std::string place = current && hits_->Has(*current)
                                ? std::to_string(hits_->CountBefore(*current) + 1) + " of "
                                : "";
  labFoundRows_.SetCaption(place + count + (place.empty() ? " found" : "") + more);
}

void GridFind::Stop() {
  Forget();
  labFoundRows_.SetCaption("Stopped.");
}

void GridFind::Forget() {
  timer_.SetEnabled(false);
  work_.reset();
  waiting_.reset();
  if (hits_ != nullptr && grid_.DataSource() != nullptr) grid_.SetMarkedCells(nullptr);
  hits_.reset();
  labFoundRows_.SetCaption("");
}

}  // namespace tessel
