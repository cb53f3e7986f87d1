// The one place where the program waits for a database: every connect and every query passes here.
// The progress window comes up when it takes longer, its button cancels, and what failed is raised
// again for the caller when all is over.

#include "logic/program/dlgAsync.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "contract/desktop/Button.h"
#include "contract/desktop/Progress.h"

namespace tessel {

namespace {

constexpr int tickMilliseconds = 500;
constexpr std::int64_t noExecution = -2;
constexpr const char* programName = "Tessel";

bool HasSettled(int state) { return state == objectState::closed || state == objectState::open; }

}  // namespace

bool AllowsAsynchronousWork(const Connection& connection) {
  const auto model =
      connection.ProviderProperties().Number("Data Source Object Threading Model", 0);
  return (model & 1) != 0;
}

std::string FormatElapsed(std::int64_t milliseconds) {
  const std::int64_t seconds = milliseconds / 1000;
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text;
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

void dlgAsync::NameConnection(const std::shared_ptr<Connection>& connection, std::string name) {
  std::erase_if(names_, [&](const Name& named) {
    return named.connection.expired() || named.connection.lock() == connection;
  });
  names_.push_back({connection, std::move(name)});
}

void dlgAsync::WorkFor(const Connection* connection) {
  const auto named = std::ranges::find_if(
      names_, [&](const Name& name) { return name.connection.lock().get() == connection; });
  title_ = connection == nullptr || named == names_.end() ? std::string() : named->text;
}

void dlgAsync::Reset() {
  Load();
  window_->SetCaption(title_.empty() ? programName : title_);
  window_->Find<Label>("lblMessage").SetCaption("");
  bar_->SetVisible(false);
  bar_->SetValue(0);
  window_->Find<Button>("cmdCancel").SetEnabled(true);
  cancelled_ = false;
  done_ = false;
  Release();
  storedError_.reset();
  recordsAffected_ = noExecution;
  start_ = desktop_.TheClock().Milliseconds();
  clockRuns_ = true;
  ShowElapsed();
  window_->TimerNamed("tmrTimer").SetEnabled(true);
}

void dlgAsync::ShowElapsed() {
  if (!clockRuns_) return;
  const std::int64_t elapsed = desktop_.TheClock().Milliseconds() - start_;
  window_->Find<Label>("lblTimer").SetCaption(FormatElapsed(elapsed));
}

void dlgAsync::InitProcess(const std::string& message) {
  Reset();
  window_->Find<Label>("lblMessage").SetCaption("\n" + message);
  window_->ShowAboveSoon(frame_);
}

void dlgAsync::InitProgress(const std::string& message, double maximum) {
  Reset();
  window_->Find<Label>("lblMessage").SetCaption(message);
  progressStep_ = static_cast<std::uint32_t>(std::min(std::ceil(maximum / 32), 16.0));
  bar_->SetMax(maximum);
  bar_->SetVisible(true);
  window_->ShowAboveSoon(frame_);
}

bool dlgAsync::Yield() {
  frame_.SetEnabled(false);
  desktop_.ProcessPending();
  frame_.SetEnabled(true);
  return !cancelled_;
}

/// Called for every record that is converted. The low 32 bits tell whether this is a step, which is
/// at most 16, and are divided several times as fast as all 64.
bool dlgAsync::DoProgress(double increment) {
  const double value = bar_->Value();
  const auto units = static_cast<std::uint32_t>(static_cast<std::int64_t>(value + 0.5));
  if (units % progressStep_ == 0) Yield();
  bar_->SetValue(value + increment);
  return !cancelled_;
}

std::shared_ptr<Recordset> dlgAsync::ReadRows(Connection& connection, const std::string& sql) {
  std::shared_ptr<Recordset> rows = connection.CreateRecordset();
  rows->SetSource(sql);
  rows->SetCursorType(CursorType::Static);
  rows->SetLockType(LockType::ReadOnly);
  return Read(connection, std::move(rows));
}

std::shared_ptr<Recordset> dlgAsync::ReadSchema(Connection& connection, SchemaRowset schema,
                                                const std::vector<std::string>& restrictions) {
  return Read(connection, connection.CreateSchemaRecordset(schema, restrictions));
}

bool dlgAsync::UseCatalog(Connection& connection, const std::string& name) {
  std::int64_t recordsAffected = 0;
  return DoQuery(connection.CreateCatalogChange(name), recordsAffected,
                 AllowsAsynchronousWork(connection));
}

std::shared_ptr<Recordset> dlgAsync::Read(Connection& connection, std::shared_ptr<Recordset> rows) {
  std::int64_t recordsAffected = 0;
  if (DoQuery(rows, recordsAffected, AllowsAsynchronousWork(connection))) return rows;
  rows->Close();
  return nullptr;
}

bool dlgAsync::ForEach(const std::string& message, std::int64_t count,
                       const std::function<void(std::int64_t)>& step, std::int64_t atOnce) {
  if (count < atOnce) {
    for (std::int64_t i = 0; i < count; ++i) step(i);
    return true;
  }
  InitProgress(message, static_cast<double>(count));
  bool goesOn = true;
  try {
    std::int64_t taken = 0;
    for (std::int64_t i = 0; i < count && goesOn; ++i) {
      step(i);
      if (++taken < atOnce) continue;
      goesOn = DoProgress(static_cast<double>(taken));
      taken = 0;
    }
  } catch (...) {
    Unload();
    throw;
  }
  Unload();
  return goesOn;
}

bool dlgAsync::DoConnect(const std::shared_ptr<Connection>& connection, const std::string& user,
                         const std::string& password) {
  std::exception_ptr pending;
  try {
    WorkFor(connection.get());
    Reset();
    connection_ = connection;
    connection->ConnectComplete = [this](const ErrorInfo* error, EventStatus status) {
      Complete(error, status);
    };
    window_->Find<Label>("lblMessage").SetCaption("\nConnecting...");
    connection->Open(user, password, asyncConnect);
    WaitModally();
    while (!HasSettled(connection->State())) Yield();
  } catch (const Error&) {
    pending = std::current_exception();
  }
  return Finish(pending);
}

bool dlgAsync::DoQuery(const std::shared_ptr<Recordset>& recordset, std::int64_t& recordsAffected,
                       bool async) {
  std::exception_ptr pending;
  try {
    WorkFor(recordset->ActiveConnection().get());
    Reset();
    Hold(recordset);
    connection_->ExecuteComplete = [this](std::int64_t affected, const ErrorInfo* error,
                                          EventStatus status, Recordset*) {
      mCn_ExecuteComplete(affected, error, status);
    };
    recordset->FetchProgress = [this](std::int64_t progress, std::int64_t, EventStatus) {
      mRs_FetchProgress(progress);
    };
    recordset->FetchComplete = [this](const ErrorInfo* error, EventStatus status) {
      Complete(error, status);
    };
    window_->Find<Label>("lblMessage").SetCaption("\nExecuting...");
    if (async) {
      recordset->Open(openOption::text | openOption::asyncExecute | openOption::asyncFetch);
      WaitModally();
      while (!HasSettled(recordset->State())) Yield();
    } else {
      WaitBlocked([&] { recordset->Open(openOption::text); });
    }
  } catch (const Error&) {
    pending = std::current_exception();
  }
  recordsAffected = recordsAffected_;
  return Finish(pending);
}

bool dlgAsync::DoUpdate(const std::shared_ptr<Recordset>& recordset, bool async) {
  return DoChange(recordset, "Saving the record...", async,
                  [&](int options) { recordset->Update(options); });
}

bool dlgAsync::DoDelete(const std::shared_ptr<Recordset>& recordset, bool async) {
  return DoChange(recordset, "Deleting the record...", async,
                  [&](int options) { recordset->Delete(options); });
}

bool dlgAsync::DoChange(const std::shared_ptr<Recordset>& recordset, const std::string& message,
                        bool async, const std::function<void(int options)>& change) {
  std::exception_ptr pending;
  try {
    WorkFor(recordset->ActiveConnection().get());
    Reset();
    Hold(recordset);
    recordset->ChangeComplete = [this](const ErrorInfo* error, EventStatus status) {
      Complete(error, status);
    };
    window_->Find<Label>("lblMessage").SetCaption("\n" + message);
    if (async) {
      change(openOption::asyncExecute);
      WaitModally();
      while (!HasSettled(recordset->State())) Yield();
    } else {
      WaitBlocked([&] { change(0); });
    }
  } catch (const Error&) {
    pending = std::current_exception();
  }
  return Finish(pending);
}

void dlgAsync::Hold(const std::shared_ptr<Recordset>& recordset) {
  connection_ = recordset->ActiveConnection();
  recordset_ = recordset;
}

/// Shows the window until the operation is done; it may have ended already.
void dlgAsync::WaitModally() {
  if (!done_) window_->ShowModal(&frame_);
}

/// The clock cannot tick while the provider blocks: a word stands in its place.
void dlgAsync::WaitBlocked(const std::function<void()>& operation) {
  clockRuns_ = false;
  window_->Find<Label>("lblTimer").SetCaption("wait...");
  window_->Find<Button>("cmdCancel").SetEnabled(false);
  window_->ShowAbove(frame_);
  Yield();
  operation();
}

void dlgAsync::Complete(const ErrorInfo* error, EventStatus status) {
  if (status == EventStatus::ErrorsOccurred && error != nullptr && !storedError_)
    storedError_ = *error;
  done_ = true;
  window_->Hide();
}

void dlgAsync::mCn_ExecuteComplete(std::int64_t recordsAffected, const ErrorInfo* error,
                                   EventStatus status) {
  recordsAffected_ = recordsAffected;
  const bool rowsFollow = recordset_ != nullptr && (recordset_->State() & objectState::open) != 0;
  if (status == EventStatus::ErrorsOccurred || !rowsFollow) Complete(error, status);
}

void dlgAsync::mRs_FetchProgress(std::int64_t progress) {
  if (cancelled_) return;
  window_->Find<Label>("lblMessage").SetCaption("Fetching records...\n" + std::to_string(progress));
}

void dlgAsync::Form_Activate() {
  if (done_) window_->Hide();
}

void dlgAsync::cmdCancel_Click() {
  if (cancelled_) return;
  cancelled_ = true;
  window_->Find<Label>("lblMessage").SetCaption("\nCancelling...");
  try {
    if (recordset_ != nullptr) recordset_->Cancel();
    else if (connection_ != nullptr) connection_->Cancel();
  } catch (const Error&) {
    // The operation ends through its own completion, whatever the cancel reports.
  }
}

bool dlgAsync::Finish(std::exception_ptr pending) {
  const std::optional<ErrorInfo> storedError = std::exchange(storedError_, std::nullopt);
  const bool cancelled = cancelled_;
  Unload();
  if (cancelled) return false;
  if (pending) std::rethrow_exception(pending);
  if (storedError) throw Error(*storedError);
  return true;
}

/// Lets go of the objects of the operation; their events no longer reach this window.
void dlgAsync::Release() {
  if (recordset_ != nullptr) {
    recordset_->FetchProgress = nullptr;
    recordset_->FetchComplete = nullptr;
    recordset_->ChangeComplete = nullptr;
  }
  if (connection_ != nullptr) {
    connection_->ConnectComplete = nullptr;
    connection_->ExecuteComplete = nullptr;
  }
  recordset_.reset();
  connection_.reset();
}

void dlgAsync::Unload() {
  if (window_ == nullptr) return;
  window_->TimerNamed("tmrTimer").SetEnabled(false);
  storedError_.reset();
  title_.clear();
  Release();
  window_->Unload();
}

}  // namespace tessel
