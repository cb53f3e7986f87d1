// The one place where the program waits for a database: every connect and every query passes here.
// The progress window comes up when it takes longer, its button cancels, and what failed is raised
// again for the caller when all is over.

#include "logic/program/dlgAsync.h"

#include <algorithm>
#include <cmath>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"

namespace tessel {

namespace {

constexpr int tickMilliseconds = 500;
constexpr std::int64_t betweenCounts = 100;  ///< Milliseconds: nobody reads faster.
constexpr const char* programName = "Tessel";

/// The low 32 bits of whole units tell whether a step is reached, which is at most 16, and are
/// divided several times as fast as all 64.
std::uint32_t WholeUnits(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(value + 0.5));
}

}  // namespace

bool AllowsAsynchronousWork(const Connection& connection) {
  const auto model =
      connection.ProviderProperties().Number("Data Source Object Threading Model", 0);
  return (model & 1) != 0;
}

void dlgAsync::Load() {
  if (window_ != nullptr && window_->Loaded()) return;
  window_ = desktop_.MakeWindow("dlgAsync");
  bar_ = &window_->Find<ProgressBar>("prgProgress");
  window_->Find<Button>("cmdCancel").Click = [this] { cmdCancel_Click(); };
  window_->Activated = [this] { Form_Activate(); };
  window_->QueryUnload = [this](bool& refuse, UnloadReason reason) {
    refuse = reason == UnloadReason::ControlBox;  // Closing the window is asking to cancel.
    if (refuse && window_->Find<Button>("cmdCancel").Enabled()) cmdCancel_Click();
  };
  Timer& timer = window_->TimerNamed("tmrTimer");
  timer.SetInterval(tickMilliseconds);
  timer.Tick = [this] { ShowElapsed(); };
}

void dlgAsync::NameConnection(const std::shared_ptr<Connection>& connection, std::string name,
                              std::optional<Color> mark) {
  std::erase_if(names_, [&](const Name& named) {
    return named.connection.expired() || named.connection.lock() == connection;
  });
  names_.push_back({connection, std::move(name), mark});
}

const dlgAsync::Name* dlgAsync::NameOf(const Connection* connection) const {
  const auto named = std::ranges::find_if(
      names_, [&](const Name& name) { return name.connection.lock().get() == connection; });
  return connection == nullptr || named == names_.end() ? nullptr : &*named;
}

void dlgAsync::Reset(const Connection* connection) {
  Load();
  const Name* name = NameOf(connection);
  window_->SetCaption(name == nullptr ? programName : name->text);
  window_->SetMark(name == nullptr ? std::nullopt : name->mark);
  window_->Find<Label>("lblMessage").SetCaption("");
  bar_->SetVisible(false);
  bar_->SetValue(0);
  window_->Find<Label>("lblDone").SetCaption("");
  window_->Find<Button>("cmdCancel").SetEnabled(true);
  cancelled_ = false;
  recordsAffected_ = -1;
  tellsRate_ = false;
  Release();
  start_ = desktop_.TheClock().Milliseconds();
  clockRuns_ = true;
  ShowElapsed();
  window_->TimerNamed("tmrTimer").SetEnabled(true);
}

void dlgAsync::ShowElapsed() {
  if (clockRuns_) window_->Find<Label>("lblTimer").SetCaption(FormatElapsed(Elapsed()));
}

std::int64_t dlgAsync::Elapsed() const { return desktop_.TheClock().Milliseconds() - start_; }

void dlgAsync::InitProcess(const std::string& message, const Connection* connection) {
  Reset(connection);
  work_ = message;
  window_->Find<Label>("lblMessage").SetCaption("\n" + message);
  window_->ShowAboveSoon(frame_);
}

void dlgAsync::InitProgress(const std::string& message, double maximum,
                            const Connection* connection, std::string units) {
  Reset(connection);
  work_ = message;
  units_ = std::move(units);
  window_->Find<Label>("lblMessage").SetCaption(message);
  progressStep_ = static_cast<std::uint32_t>(std::min(std::ceil(maximum / 32), 16.0));
  servedStep_ = UINT32_MAX;
  bar_->SetMax(maximum);
  bar_->SetVisible(true);
  ShowDone();
  window_->ShowAboveSoon(frame_);
}

/// "1234 of 10000 records, 12 %", and with the rate ", 617 a second" once a second has passed.
void dlgAsync::ShowDone() {
  shownDone_ = Elapsed();
  const std::string units = units_.empty() ? "" : " " + units_;
  const auto percent = static_cast<std::int64_t>(bar_->Value() * 100 / bar_->Max());
  window_->Find<Label>("lblDone").SetCaption(
      std::to_string(static_cast<std::int64_t>(bar_->Value())) + " of " +
      std::to_string(static_cast<std::int64_t>(bar_->Max())) + units + ", " +
      std::to_string(percent) + " %" + RateSoFar());
}

std::string dlgAsync::RateSoFar() const {
  constexpr std::int64_t second = 1000;
  if (!tellsRate_ || Elapsed() < second) return {};
  const double rate = bar_->Value() * second / static_cast<double>(Elapsed());
  return ", " + std::to_string(static_cast<std::int64_t>(rate)) + " a second";
}

bool dlgAsync::Yield() {
  frame_.SetEnabled(false);
  desktop_.ProcessPending();
  frame_.SetEnabled(true);
  return !cancelled_;
}

bool dlgAsync::DoProgress(double increment) {
  const double value = bar_->Value();
  if (const std::uint32_t step = WholeUnits(value) / progressStep_; step != servedStep_) {
    servedStep_ = step;
    if (Elapsed() - shownDone_ >= betweenCounts) ShowDone();
    Yield();
  }
  bar_->SetValue(value + increment);
  return !cancelled_;
}

std::shared_ptr<Recordset> dlgAsync::ReadRows(Connection& connection, const std::string& sql) {
  return Read(connection.StartQuery(sql, LockType::ReadOnly));
}

std::shared_ptr<Recordset> dlgAsync::ReadSchema(Connection& connection, SchemaRowset schema,
                                                const std::vector<std::string>& restrictions) {
  return Read(connection.StartSchema(schema, restrictions));
}

std::shared_ptr<Recordset> dlgAsync::Read(const std::shared_ptr<QueryOperation>& query) {
  const bool async = AllowsAsynchronousWork(*query->ActiveConnection());
  return Run(query, "Executing...", async) ? query->FirstRows() : nullptr;
}

/// For a million records the bar need not be asked a million times: between two steps of it nothing
/// is served, and what it shows is seen only then.
dlgAsync dlgAsync::ForLoop() const {
  dlgAsync loop(desktop_, frame_);
  loop.names_ = names_;
  return loop;
}

bool dlgAsync::ForEach(const std::string& message, const Connection* connection, std::int64_t count,
                       const std::function<void(std::int64_t)>& step, std::int64_t atOnce,
                       const std::string& units) {
  if (count < atOnce) {
    for (std::int64_t i = 0; i < count; ++i) step(i);
    return true;
  }
  InitProgress(message, static_cast<double>(count), connection, units);
  const UnloadAtEnd unload(*this);
  bool goesOn = true;
  std::int64_t taken = 0;
  std::int64_t due = atOnce;
  for (std::int64_t i = 0; i < count && goesOn; ++i) {
    step(i);
    if (++taken < due) continue;
    goesOn = DoProgress(static_cast<double>(taken));
    taken = 0;
    const std::uint32_t behindStep = WholeUnits(bar_->Value()) % progressStep_;
    due = std::max<std::int64_t>(atOnce, behindStep == 0 ? 1 : progressStep_ - behindStep);
  }
  return goesOn;
}

bool dlgAsync::DoConnect(const std::shared_ptr<Connection>& connection, const std::string& user,
                         const std::string& password) {
  return Run(connection->StartOpen(user, password), "Connecting...", true);
}

bool dlgAsync::DoQuery(const std::shared_ptr<QueryOperation>& query, std::int64_t& recordsAffected,
                       bool async) {
  WaitFor({query}, "Executing...", async);
  recordsAffected = query->RecordsAffected();
  recordsAffected_ = recordsAffected;
  return Conclude();
}

bool dlgAsync::Run(std::shared_ptr<Operation> operation, const std::string& message, bool async) {
  return RunAll({std::move(operation)}, message, async);
}

bool dlgAsync::RunAll(Operations operations, const std::string& message, bool async) {
  WaitFor(std::move(operations), message, async);
  return Conclude();
}

/// The window may be closed by the program's end before the operations have ended.
void dlgAsync::WaitFor(Operations operations, const std::string& message, bool async) {
  Reset(operations.front()->ActiveConnection().get());
  work_ = message;
  operations_ = std::move(operations);
  for (const auto& operation : operations_) {
    operation->Progress = [this] { OperationProgress(); };
    operation->Ended = [this] { OperationEnded(); };
  }
  window_->Find<Label>("lblMessage").SetCaption("\n" + message);
  if (async) WaitModally();
  else WaitBlocked();
  while (!AllEnded()) Yield();
}

void dlgAsync::WaitModally() {
  if (!AllEnded()) window_->ShowModal(&frame_);
}

/// The clock cannot tick while the provider blocks: a word stands in its place.
void dlgAsync::WaitBlocked() {
  clockRuns_ = false;
  window_->Find<Label>("lblTimer").SetCaption("wait...");
  window_->Find<Button>("cmdCancel").SetEnabled(false);
  window_->ShowAbove(frame_);
  Yield();
  for (const auto& operation : operations_) operation->Wait();
}

bool dlgAsync::AllEnded() const {
  return std::ranges::all_of(operations_,
                             [](const auto& operation) { return operation->HasEnded(); });
}

void dlgAsync::OperationEnded() {
  if (AllEnded()) window_->Hide();
}

void dlgAsync::OperationProgress() {
  if (cancelled_) return;
  std::int64_t rows = 0;
  for (const auto& operation : operations_) rows += operation->Rows();
  if (rows == 0) return;
  window_->Find<Label>("lblMessage").SetCaption("Fetching records...\n" + std::to_string(rows));
}

void dlgAsync::Form_Activate() {
  if (!operations_.empty() && AllEnded()) window_->Hide();
}

void dlgAsync::cmdCancel_Click() {
  if (cancelled_) return;
  cancelled_ = true;
  window_->Find<Label>("lblMessage").SetCaption("\nCancelling...");
  for (const auto& operation : operations_) operation->Cancel();
}

bool dlgAsync::Conclude() {
  const Operations ended = operations_;
  const bool cancelled = cancelled_;
  const EndedWork end = EndOf(ended);
  Unload();
  if (cancelled) return false;
  TellOfEnd(desktop_, end);
  for (const auto& operation : ended)
    if (operation->Failure()) throw Error(*operation->Failure());
  return true;
}

EndedWork dlgAsync::EndOf(const Operations& ended) const {
  EndedWork end{window_->Caption(), work_, Elapsed(), false, {}};
  std::int64_t rows = 0;
  for (const auto& operation : ended) rows += operation->Rows();
  if (rows > 0) end.outcome = RecordsText(rows);
  else if (recordsAffected_ >= 0) end.outcome = RecordsText(recordsAffected_);
  for (const auto& operation : ended) {
    if (end.failed || !operation->Failure()) continue;
    end.failed = true;
    end.outcome = PublicPart(operation->Failure()->description);
  }
  return end;
}

void dlgAsync::EndLoop(bool failed) {
  if (window_ == nullptr || !window_->Loaded()) return;
  EndedWork end = EndOf({});
  end.failed = failed;
  Unload();
  if (!cancelled_) TellOfEnd(desktop_, end);
}

/// Lets go of what was waited for; its events no longer reach this window.
void dlgAsync::Release() {
  for (const auto& operation : operations_) {
    operation->Progress = nullptr;
    operation->Ended = nullptr;
  }
  operations_.clear();
}

void dlgAsync::Unload() {
  if (window_ == nullptr) return;
  window_->TimerNamed("tmrTimer").SetEnabled(false);
  Release();
  window_->Unload();
}

}  // namespace tessel
