// One SQL in several records windows at once: all are made ready, then all start, then one window
// waits for them, then each records window shows what came of its own.

#include "logic/together/dlgRunAll.h"

#include <algorithm>
#include <utility>

#include "contract/base/Keys.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/frmRecords.h"

namespace tessel {

namespace {

constexpr int tickMilliseconds = 500;
constexpr int cancelColumn = 4;
constexpr int columnWidths[] = {2700, 2100, 1200, 1050};

bool IsRunning(const std::shared_ptr<QueryOperation>& operation) {
  return operation != nullptr && !operation->HasEnded();
}

/// What the list says of an operation that goes on or has ended.
std::string StateOf(const QueryOperation& operation, bool cancelled) {
  if (cancelled) return operation.HasEnded() ? "Cancelled" : "Cancelling...";
  if (!operation.HasEnded())
    return operation.Phase() == OperationPhase::Fetching ? "Fetching records..." : "Executing...";
  return operation.Failure() ? "Failed" : "Done";
}

}  // namespace

dlgRunAll::dlgRunAll(const Global& global, dlgAsync& async, Window& frame)
    : global_(global),
      async_(async),
      frame_(frame),
      window_(global.TheDesktop().MakeWindow("dlgRunAll")),
      list_(window_->Find<ListView>("lsvRuns")) {
  WireWindow();
}

dlgRunAll::~dlgRunAll() {
  window_->Unloaded = nullptr;
  for (const Line& line : lines_) {
    if (line.operation == nullptr) continue;
    line.operation->Progress = nullptr;
    line.operation->Ended = nullptr;
  }
}

void dlgRunAll::WireWindow() {
  for (int column = 0; column < cancelColumn; ++column)
    list_.SetColumnWidth(column, columnWidths[column]);
  list_.KeyDown = [this](KeyEvent& event) { lsvRuns_KeyDown(event); };
  list_.CellClick = [this](int row, int column, const MouseEvent&) {
    if (column == cancelColumn) Cancel(lines_[static_cast<std::size_t>(row)]);
  };
  window_->Find<Button>("cmdCancelOne").Click = [this] { CancelSelected(); };
  window_->Find<Button>("cmdCancel").Click = [this] { CancelRest(); };
  window_->Activated = [this] {
    if (AllEnded()) window_->Hide();
  };
  window_->QueryUnload = [this](bool& refuse, UnloadReason reason) {
    refuse = reason == UnloadReason::ControlBox;  // Closing the window is asking to cancel.
    if (refuse) CancelRest();
  };
  window_->Unloaded = [this] { CancelRest(); };  // Only the program's end leaves any to cancel.
  Timer& timer = window_->TimerNamed("tmrTimer");
  timer.SetInterval(tickMilliseconds);
  timer.Tick = [this] { ShowProgress(); };
}

bool dlgRunAll::Run(const std::vector<frmRecords*>& windows, const std::string& taggedSQL,
                    bool preview) {
  if (!Prepare(windows, taggedSQL, preview)) return false;
  start_ = global_.TheDesktop().TheClock().Milliseconds();
  for (Line& line : lines_)
    if (line.window->WorksAsynchronously()) Start(line);
  WaitForAll();
  TellOfAll();
  ConcludeAll();
  RunTheOthers();
  return true;
}

bool dlgRunAll::Prepare(const std::vector<frmRecords*>& windows, const std::string& taggedSQL,
                        bool preview) {
  for (frmRecords* window : windows) {
    std::optional<PreparedQuery> query = window->Prepare(taggedSQL, preview, newQuery);
    if (!query) return false;
    lines_.push_back({window, *std::move(query)});
  }
  return true;
}

// --- running -------------------------------------------------------------------------------------

void dlgRunAll::Start(Line& line) {
  line.operation = line.window->Start(line.query);
  if (line.operation == nullptr) return;
  line.operation->Progress = [this] { ShowProgress(); };
  line.operation->Ended = [this, &line] { LineEnded(line); };
}

/// The program's end may close the window before the operations have ended.
void dlgRunAll::WaitForAll() {
  ShowLines();
  window_->TimerNamed("tmrTimer").SetEnabled(true);
  if (!AllEnded()) window_->ShowModal(&frame_);
  while (!AllEnded()) async_.Yield();
  window_->TimerNamed("tmrTimer").SetEnabled(false);
  window_->Unloaded = nullptr;
  window_->Unload();
}

void dlgRunAll::LineEnded(Line& line) {
  line.elapsed = line.window->Elapsed();
  ShowProgress();
  if (AllEnded()) window_->Hide();
}

bool dlgRunAll::AllEnded() const {
  return std::ranges::none_of(lines_, [](const Line& line) { return IsRunning(line.operation); });
}

/// Whoever cancels what is left is there to see it.
void dlgRunAll::TellOfAll() const {
  if (restCancelled_) return;
  const auto failed = std::ranges::count_if(lines_, [](const Line& line) {
    return line.operation != nullptr && line.operation->Failure().has_value();
  });
  EndedWork end{"Tessel",
                "Executing on all connections...",
                global_.TheDesktop().TheClock().Milliseconds() - start_,
                false,
                {}};
  end.outcome = failed == 0 ? "none has failed"
                            : std::to_string(failed) + " of " + std::to_string(lines_.size()) +
                                  " have failed";
  TellOfEnd(global_.TheDesktop(), end);
}

void dlgRunAll::ConcludeAll() {
  for (const Line& line : lines_)
    if (line.operation != nullptr) line.window->Conclude(line.query, line.elapsed, line.cancelled);
}

/// A provider that cannot work while others do blocks the program meanwhile.
void dlgRunAll::RunTheOthers() {
  for (const Line& line : lines_)
    if (!restCancelled_ && !line.window->WorksAsynchronously()) line.window->Execute(line.query);
}

// --- cancelling ----------------------------------------------------------------------------------

void dlgRunAll::Cancel(Line& line) {
  if (!IsRunning(line.operation)) return;
  line.cancelled = true;
  line.operation->Cancel();
  ShowProgress();
}

void dlgRunAll::CancelSelected() {
  const int selected = list_.SelectedIndex();
  if (selected >= 0) Cancel(lines_[static_cast<std::size_t>(selected)]);
  list_.SetFocus();
}

void dlgRunAll::CancelRest() {
  restCancelled_ = true;
  for (Line& line : lines_) Cancel(line);
}

void dlgRunAll::lsvRuns_KeyDown(KeyEvent& event) {
  if (event.shift != shiftState::none) return;
  if (event.keyCode != key::del && event.keyCode != key::enter) return;
  event.handled = true;
  CancelSelected();
}

// --- the list ------------------------------------------------------------------------------------

void dlgRunAll::ShowLines() {
  for (const Line& line : lines_) {
    ListRow row;
    row.text = line.window->Caption();
    list_.Insert(list_.Count(), std::move(row));
  }
  if (!lines_.empty()) list_.SetSelectedIndex(0);
  ShowProgress();
}

/// Only the lines that changed are put anew: the list does not flicker.
void dlgRunAll::ShowProgress() {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    std::vector<std::string> cells = CellsOf(lines_[i]);
    ListRow row = list_.Row(static_cast<int>(i));
    if (row.subItems == cells) continue;
    row.subItems = std::move(cells);
    list_.SetRow(static_cast<int>(i), std::move(row));
  }
  const auto ended = std::ranges::count_if(
      lines_, [](const Line& line) { return line.operation && line.operation->HasEnded(); });
  window_->Find<Label>("lblMessage")
      .SetCaption(std::to_string(ended) + " of " + std::to_string(lines_.size()) +
                  " connections have ended.");
  window_->Find<Label>("lblTimer")
      .SetCaption(FormatElapsed(global_.TheDesktop().TheClock().Milliseconds() - start_));
}

std::vector<std::string> dlgRunAll::CellsOf(const Line& line) {
  if (line.operation == nullptr)
    return {line.window->WorksAsynchronously() ? "Failed" : "Waiting", "", "", ""};
  const QueryOperation& operation = *line.operation;
  const bool runs = !operation.HasEnded();
  return {StateOf(operation, line.cancelled),
          operation.FirstRows() == nullptr ? "" : std::to_string(operation.Rows()),
          FormatElapsed(runs ? line.window->Elapsed() : line.elapsed),
          runs && !line.cancelled ? "Cancel" : ""};
}

}  // namespace tessel
