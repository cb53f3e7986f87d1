#include "logic/together/AllConnections.h"

#include <algorithm>
#include <utility>

#include "logic/program/dlgAsync.h"
#include "logic/results/frmRecords.h"
#include "logic/together/dlgCompare.h"
#include "logic/together/dlgRunAll.h"
#include "logic/together/frmRows.h"

namespace tessel {

namespace {

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

/// "2 only in prod, 1 only in staging, 3 changed, 994 equal", and what else there is to know.
std::string DifferencesStatus(const RowComparison& comparison, const std::string& a,
                              const std::string& b) {
  const CompareCounts& counts = comparison.Counts();
  std::string text = std::to_string(counts.onlyInA) + " only in " + a + ", " +
                     std::to_string(counts.onlyInB) + " only in " + b + ", " +
                     std::to_string(counts.changed) + " changed, " + std::to_string(counts.equal) +
                     " equal";
  if (counts.keysNotUnique != 0)
    text += "; " + std::to_string(counts.keysNotUnique) + " key(s) not unique";
  if (!comparison.OnlyInA().empty())
    text += "; not compared, only in " + a + ": " + Joined(comparison.OnlyInA());
  if (!comparison.OnlyInB().empty())
    text += "; not compared, only in " + b + ": " + Joined(comparison.OnlyInB());
  return text;
}

}  // namespace

AllConnections::AllConnections(const Global& global, dlgAsync& async, Window& frame,
                               RecordsHost& host, std::function<Windows()> windows)
    : global_(global),
      async_(async),
      frame_(frame),
      host_(host),
      windows_(std::move(windows)),
      help_(global) {}

AllConnections::~AllConnections() = default;

AllConnections::Windows AllConnections::TakingPart() const {
  Windows windows = windows_();
  std::erase_if(windows, [](const frmRecords* window) { return !window->TakesPart(); });
  return windows;
}

// --- running -------------------------------------------------------------------------------------

bool AllConnections::RunAtOnce(const std::string& taggedSQL, bool preview) {
  const Windows windows = TakingPart();
  if (!dlgRunAll(global_, async_, frame_).Run(windows, taggedSQL, preview)) return false;
  NoteRun(taggedSQL, windows, windows.size());
  return true;
}

void AllConnections::NoteRun(const std::string& taggedSQL, const Windows& windows,
                             std::size_t ran) {
  if (windows.size() < 2) return;
  taggedSQL_ = taggedSQL;
  lines_.clear();
  for (const frmRecords* window : windows) {
    const bool hasRun = lines_.size() < ran;
    lines_.push_back(
        {window->WindowID(), window->Caption(), hasRun ? window->LastRun() : RunReport()});
  }
}

frmRecords* AllConnections::WindowOf(const RunLine& line) const {
  const Windows windows = windows_();
  const auto found = std::ranges::find(windows, line.windowID, &frmRecords::WindowID);
  return found == windows.end() ? nullptr : *found;
}

// --- the summary ---------------------------------------------------------------------------------

void AllConnections::ShowSummary() {
  if (lines_.empty())
    return help_.Show("No SQL has been executed on two or more connections yet.",
                      MessageIcon::Information);
  if (summary_ == nullptr) {
    summary_ = &AddRowsWindow();
    summary_->OfferGoTo([this](Bookmark line) { GoTo(line); });
  }
  const auto failed = [](const RunLine& line) { return line.report.state == RunState::Failed; };
  summary_->OfferAgain([this] { RunAgainWhereItFailed(); }, std::ranges::any_of(lines_, failed));
  summary_->ShowRows("Run Summary", SummaryRows(global_.Data(), lines_), SummaryStatus(lines_));
}

/// The others keep what they came to. Windows that were closed meanwhile stay as they are.
void AllConnections::RunAgainWhereItFailed() {
  Windows failed;
  for (const RunLine& line : lines_)
    if (frmRecords* window = WindowOf(line); line.report.state == RunState::Failed && window)
      failed.push_back(window);
  if (failed.empty() || !dlgRunAll(global_, async_, frame_).Run(failed, taggedSQL_, false)) return;
  for (RunLine& line : lines_)
    if (const frmRecords* window = WindowOf(line); std::ranges::count(failed, window) != 0)
      line.report = window->LastRun();
  ShowSummary();
}

void AllConnections::GoTo(Bookmark line) {
  frmRecords* window = WindowOf(lines_.at(static_cast<std::size_t>(line - 1)));
  if (window == nullptr)
    return help_.Show("The window of this connection is closed.", MessageIcon::Information);
  window->TheWindow().Activate();
  window->FocusRecords();
}

// --- the statements of one run -------------------------------------------------------------------

void AllConnections::ShowStatements(frmRecords& of) {
  const std::shared_ptr<const StatementList> list = of.Statements();
  if (list == nullptr) return;
  if (statements_ == nullptr) statements_ = &AddRowsWindow();
  statementsOf_ = &of;
  statements_->OfferGoTo([list, &of](Bookmark row) {
    const std::shared_ptr<Recordset> rows = list->RowsOf(row);
    if (rows == nullptr || !of.ShowResult(rows)) return;
    of.TheWindow().Activate();
    of.FocusRecords();
  });
  statements_->ShowRows("Statements of " + of.Caption(), list->Rows(global_.Data()),
                        list->Status());
}

void AllConnections::ForgetStatements(const frmRecords& of) {
  if (statements_ != nullptr && statementsOf_ == &of) statements_->TheWindow().Unload();
}

// --- merged rows and differences -----------------------------------------------------------------

std::vector<NamedRows> AllConnections::RowsOnShow() const {
  std::vector<NamedRows> results;
  for (frmRecords* window : TakingPart())
    if (std::shared_ptr<Recordset> rows = window->RowsOnShow())
      results.push_back({window->Caption(), std::move(rows)});
  return results;
}

void AllConnections::ShowMergedRows() {
  const std::vector<NamedRows> parts = RowsOnShow();
  if (parts.empty())
    return help_.Show("No connection that takes part shows any records.", MessageIcon::Information);
  const std::shared_ptr<Recordset> rows = global_.Data().MergeRows(parts);
  if (merged_ == nullptr) {
    merged_ = &AddRowsWindow();
    merged_->OfferTags([this] { TakeTagsFrom(*merged_); });
  }
  merged_->ShowRows("Merged Rows", rows,
                    std::to_string(rows->RecordCount()) + " record(s) of " +
                        std::to_string(parts.size()) + " connection(s)");
}

void AllConnections::ShowDifferences() {
  const std::vector<NamedRows> results = RowsOnShow();
  if (results.size() < 2)
    return help_.Show("Records are compared when two or more connections that take part show some.",
                      MessageIcon::Information);
  const std::optional<CompareChoice> choice = dlgCompare(global_).Go(frame_, results);
  if (!choice) return;
  for (std::size_t b = 0; b < results.size(); ++b)
    if (b != choice->a && choice->b.value_or(b) == b)
      ShowDifferencesOf(results[choice->a], results[b], *choice);
}

void AllConnections::ShowDifferencesOf(const NamedRows& a, const NamedRows& b,
                                       const CompareChoice& choice) {
  const std::shared_ptr<RowComparison> comparison =
      global_.Data().CompareRows({a, b, choice.keys, choice.booleansAreNumbers});
  if (!Compare(*comparison)) return;
  frmRows& window = AddRowsWindow();
  window.OfferTags([this, &window] { TakeTagsFrom(window); });
  window.ShowRows("Differences: " + a.name + " / " + b.name, comparison->Rows(),
                  DifferencesStatus(*comparison, a.name, b.name));
  window.Rows().SetMarkedCells([comparison](Bookmark row, int column) {
    return comparison->IsChanged(row, static_cast<std::size_t>(column));
  });
}

/// False when the user cancelled it.
bool AllConnections::Compare(RowComparison& comparison) {
  constexpr std::int64_t rowsAtOnce = 4096;
  async_.InitProgress("Comparing records...", static_cast<double>(comparison.Total()), nullptr,
                      "records");
  const UnloadAtEnd unload(async_);
  while (comparison.Done() < comparison.Total()) {
    const std::int64_t before = comparison.Done();
    comparison.Step(rowsAtOnce);
    (void)async_.DoProgress(static_cast<double>(comparison.Done() - before));
    if (!async_.Yield()) return false;
  }
  return true;
}

/// One window at a time gives values to tags.
void AllConnections::TakeTagsFrom(const frmRows& chosen) {
  for (const auto& window : rowsWindows_)
    if (window.get() != &chosen) window->ClearTagsChosen();
}

// --- windows of rows -----------------------------------------------------------------------------

frmRows& AllConnections::AddRowsWindow() {
  auto window = std::make_unique<frmRows>(global_, async_, host_);
  frmRows* added = window.get();
  window->onUnloaded = [this, added] { Forget(added); };
  rowsWindows_.push_back(std::move(window));
  return *added;
}

/// A window cannot be destroyed from inside its own handler: it goes from the top of the event
/// loop.
void AllConnections::Forget(frmRows* closed) {
  if (closed == summary_) summary_ = nullptr;
  if (closed == statements_) statements_ = nullptr;
  if (closed == merged_) merged_ = nullptr;
  global_.TheDesktop().Defer([this, closed, alive = std::weak_ptr<const void>(alive_)] {
    if (alive.expired()) return;
    std::erase_if(rowsWindows_, [closed](const auto& window) { return window.get() == closed; });
  });
}

std::vector<Window*> AllConnections::RowsWindows() const {
  std::vector<Window*> windows;
  for (const auto& window : rowsWindows_)
    if (window->TheWindow().Loaded()) windows.push_back(&window->TheWindow());
  return windows;
}

DataGrid* AllConnections::RowsForTags() const {
  for (const auto& window : rowsWindows_)
    if (window->TheWindow().Loaded() && window->TagsChosen()) return &window->Rows();
  return nullptr;
}

}  // namespace tessel
