#include "logic/results/arrange/GridArranging.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr int betweenSlices = 1;  ///< Milliseconds.
constexpr std::int64_t tellAfter = 300;

/// What becomes of the keys when the user asks for a column.
std::vector<SortKey> NextSort(const std::vector<SortKey>& now, std::size_t field, bool further) {
  std::vector<SortKey> keys = now;
  const auto key = std::ranges::find(keys, field, &SortKey::field);
  const bool had = key != keys.end();
  if (!had) keys.push_back({field, false});
  else if (key->descending) keys.erase(key);
  else key->descending = true;
  if (!further) std::erase_if(keys, [&](const SortKey& other) { return other.field != field; });
  return keys;
}

}  // namespace

std::string SortText(const Recordset& rows) {
  std::string text;
  for (const SortKey& key : rows.Arrangement().sort)
    text += (text.empty() ? "Sorted by " : ", ") + rows.Fields()[key.field].name +
            (key.descending ? " descending" : "");
  return text.empty() ? text : text + ".";
}

std::string CountText(const Recordset& rows) {
  const std::string all = std::to_string(rows.FullCount()) + " record(s).";
  const bool hides = !rows.Arrangement().conditions.empty();
  return hides ? std::to_string(rows.RecordCount()) + " of " + all : all;
}

GridArranging::GridArranging(DataGrid& grid, Timer& timer, const Clock& clock, ArrangingHost host)
    : grid_(grid), timer_(timer), clock_(clock), host_(std::move(host)) {
  timer_.Tick = [this] { RunSlice(); };
  grid_.SortClick = [this](int column, bool further) { SortBy(column, further); };
}

// --- what is wanted ------------------------------------------------------------------------------

/// What is under way counts as if it were done.
RowArrangement GridArranging::Wanted() const {
  return Works() ? wanted_ : grid_.DataSource()->Arrangement();
}

void GridArranging::SortBy(int column, bool further) {
  if (grid_.DataSource() == nullptr || column < 0) return;
  RowArrangement wanted = Wanted();
  wanted.sort = NextSort(wanted.sort, static_cast<std::size_t>(column), further);
  Arrange(std::move(wanted), betweenSlices);
}

void GridArranging::SortByNothing() {
  if (grid_.DataSource() == nullptr) return;
  RowArrangement wanted = Wanted();
  wanted.sort.clear();
  Arrange(std::move(wanted), betweenSlices);
}

void GridArranging::Filter(std::vector<RowCondition> conditions, int pause) {
  if (grid_.DataSource() == nullptr) return;
  RowArrangement wanted = Wanted();
  wanted.conditions = std::move(conditions);
  Arrange(std::move(wanted), std::max(pause, betweenSlices));
}

void GridArranging::Arrange(RowArrangement wanted, int pause) {
  Drop();
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  wanted.textOrder = TextOrder::Desktop;
  try {
    grid_.EndEdit();
    if (rows->Editing() != EditMode::None && !host_.saveChange()) return;
    if (grid_.DataSource() != rows) return;
    wanted_ = wanted;
    sorts_ = wanted.sort != rows->Arrangement().sort;
    work_ = rows->StartArrange(std::move(wanted));
  } catch (const Error& error) {
    return host_.tell(error.Description());
  }
  told_ = clock_.Milliseconds();
  timer_.SetInterval(pause);
  timer_.SetEnabled(true);
}

// --- in slices -----------------------------------------------------------------------------------

void GridArranging::RunSlice() {
  if (work_ == nullptr) return timer_.SetEnabled(false);
  timer_.SetInterval(betweenSlices);
  try {
    work_->Step();
  } catch (const Error& error) {
    Drop();
    return host_.tell(error.Description());
  }
  if (!work_->HasEnded()) return TellProgress();
  Drop();
  if (!grid_.SelCells().IsEmpty()) grid_.SelectCells({});
  grid_.Refresh();
  host_.arranged();
}

void GridArranging::TellProgress() {
  const std::int64_t now = clock_.Milliseconds();
  if (now - told_ < tellAfter) return;
  told_ = now;
  const char* what = sorts_ ? "Sorting... " : "Filtering... ";
  host_.tell(what + std::to_string(work_->Percent()) + " % (Esc stops)");
}

void GridArranging::Drop() {
  timer_.SetEnabled(false);
  work_.reset();
}

void GridArranging::Forget() { Drop(); }

/// Rows would stay hidden by a filter that is no longer to be seen.
bool GridArranging::ShowsAllAgain() const {
  return wanted_.conditions.empty() && !grid_.DataSource()->Arrangement().conditions.empty();
}

bool GridArranging::Stop() {
  if (!Works() || ShowsAllAgain()) return false;
  Drop();
  host_.tell("Stopped.");
  return true;
}

}  // namespace tessel
