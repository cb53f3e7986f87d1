#include "tests/support/FakeConnection.h"

#include <algorithm>
#include <utility>

#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

ErrorInfo Cancelled() {
  return MemoryError("The operation was cancelled.", errorNumber::cancelled);
}

const ErrorInfo* Pointer(const std::optional<ErrorInfo>& failure) {
  return failure ? &*failure : nullptr;
}

EventStatus StatusOf(const std::optional<ErrorInfo>& failure) {
  return failure ? EventStatus::ErrorsOccurred : EventStatus::Ok;
}

bool IsBlank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

}  // namespace

FakeConnection::FakeConnection(EventQueue& queue, std::shared_ptr<MemoryLog> log,
                               FindServer findServer)
    : queue_(queue), log_(std::move(log)), findServer_(std::move(findServer)) {}

FakeConnection::~FakeConnection() {
  if (sessionOpen_) EndSession();
}

void FakeConnection::SetConnectionString(std::string connectionString) {
  if (State() != objectState::closed)
    throw Error(errorNumber::objectOpen, "MemoryServer", "The connection is open.");
  connectionString_ = std::move(connectionString);
}

// --- opening and closing
// -----------------------------------------------------------------------------

void FakeConnection::Open(const std::string& user, const std::string& password, int options) {
  if (State() != objectState::closed)
    throw Error(errorNumber::objectOpen, "MemoryServer", "The connection is open.");
  const bool async = (options & asyncConnect) != 0;
  log_->opened.push_back({connectionString_, user, password, async});
  server_ = &findServer_(connectionString_);
  if (server_->openRefused) throw Error(*server_->openRefused);
  const auto operation = std::make_shared<Operation>();
  operation->async = async;
  Begin(operation);
  RunOn(operation);
  if (!async && operation->failure) throw Error(*operation->failure);
}

void FakeConnection::StepConnecting(Operation& operation) {
  if (operation.cancelled) return EndOpen(operation);
  if (HoldsAt(operation, server_->holdConnecting)) return;
  if (server_->openFailure) {
    Fail(operation, *server_->openFailure);
  } else {
    sessionOpen_ = true;
    ++log_->openSessions;
    properties_ = server_->properties;
    catalog_ = server_->defaultDatabase;
  }
  EndOpen(operation);
}

void FakeConnection::EndOpen(Operation& operation) {
  if (operation.cancelled) Fail(operation, Cancelled());
  End(operation);
  if (operation.async)
    ConnectComplete.Raise(nullptr, Pointer(operation.failure), StatusOf(operation.failure));
}

void FakeConnection::Close() {
  if (State() == objectState::closed) return;
  if (server_->closeFailure) throw Error(*server_->closeFailure);
  Cancel();
  running_.reset();
  if (sessionOpen_) EndSession();
}

void FakeConnection::EndSession() {
  sessionOpen_ = false;
  --log_->openSessions;
  log_->closed.push_back(connectionString_);
  properties_.Clear();
  catalog_.clear();
  transaction_ = {};
  AnnounceTransaction();
}

void FakeConnection::NoteTransaction(UserTransaction state) {
  const UserTransaction before = std::exchange(transaction_.state, state);
  if (before == state) return;
  if (!IsUnderWay(before)) transaction_.since = server_->transactionTime;
  AnnounceTransaction();
}

void FakeConnection::AnnounceTransaction() {
  queue_.Post(weak_from_this(), [this] { TransactionChanged.Raise(nullptr); });
}

void FakeConnection::LoseSession() {
  if (sessionOpen_) EndSession();
}

int FakeConnection::State() const {
  return (sessionOpen_ ? objectState::open : 0) | (running_ != nullptr ? running_->stage : 0);
}

// --- operations
// --------------------------------------------------------------------------------------

void FakeConnection::RequireIdle() const {
  if (!sessionOpen_)
    throw Error(errorNumber::objectClosed, "MemoryServer", "The connection is closed.");
  if (running_ != nullptr)
    throw Error(errorNumber::application, "MemoryServer", "The connection is busy.");
}

void FakeConnection::Begin(const OperationPtr& operation) {
  errors_.clear();
  running_ = operation;
}

void FakeConnection::RunOn(const OperationPtr& operation) {
  if (operation->async) return PostStep(operation);
  while (!operation->ended) {
    Step(operation);
    if (operation->held) StopTest("An operation is held that the program waits for.");
  }
}

void FakeConnection::PostStep(const OperationPtr& operation) {
  queue_.Post(weak_from_this(), [this, operation] { Step(operation); });
}

void FakeConnection::Step(const OperationPtr& operation) {
  if (operation->ended) return;
  const std::weak_ptr<FakeConnection> alive = weak_from_this();
  switch (operation->stage) {
    case objectState::connecting: StepConnecting(*operation); break;
    case objectState::executing:
      if (operation->write) StepWriting(*operation);
      else StepExecuting(*operation);
      break;
    default: StepFetching(*operation); break;
  }
  if (operation->async && !operation->ended && !operation->held && !alive.expired())
    PostStep(operation);
}

bool FakeConnection::HoldsAt(Operation& operation, bool here) {
  operation.held = here && !std::exchange(operation.resumed, false);
  return operation.held;
}

void FakeConnection::Cancel() {
  if (running_ != nullptr) CancelOperation(running_.get());
}

void FakeConnection::CancelOperation(const void* operation) {
  if (running_.get() != operation) return;
  ++log_->cancels;
  running_->cancelled = true;
  if (std::exchange(running_->held, false)) PostStep(running_);
}

bool FakeConnection::IsHeld() const { return running_ != nullptr && running_->held; }

void FakeConnection::Resume() {
  if (!IsHeld()) StopTest("No operation of the connection is held.");
  running_->held = false;
  running_->resumed = true;
  PostStep(running_);
}

void FakeConnection::Fail(Operation& operation, const ErrorInfo& failure) {
  operation.failure = failure;
  if (running_.get() == &operation) errors_.push_back(failure);
}

void FakeConnection::End(Operation& operation) {
  operation.ended = true;
  if (running_.get() == &operation) running_.reset();
}

// --- commands
// ----------------------------------------------------------------------------------------

MemoryResult FakeConnection::AnswerFor(const FakeRecordset& recordset, int options) {
  if (const auto& request = recordset.RequestInPlace()) {
    try {
      return request(*server_);
    } catch (const Error& error) {
      MemoryResult failed;
      failed.failure = error.Info();
      return failed;
    }
  }
  const std::string& sql = recordset.Source();
  if (IsBlank(sql))
    throw Error(errorNumber::application, "MemoryServer", "The command text is empty.");
  log_->executed.push_back({connectionString_, sql, (options & openOption::asyncExecute) != 0});
  return server_->TakeAnswer(sql);
}

void FakeConnection::Execute(const std::shared_ptr<FakeRecordset>& recordset, int options) {
  RequireIdle();
  const auto operation = std::make_shared<Operation>();
  operation->stage = objectState::executing;
  operation->async = (options & openOption::asyncExecute) != 0;
  operation->recordset = recordset;
  operation->result = AnswerFor(*recordset, options);
  recordset->BeginExecute(operation.get());
  Begin(operation);
  RunOn(operation);
  if (!operation->async && operation->failure) throw Error(*operation->failure);
}

void FakeConnection::StepExecuting(Operation& operation) {
  const MemoryResult& result = operation.result;
  if (!operation.cancelled && HoldsAt(operation, result.holdExecuting)) return;
  const auto recordset = operation.recordset.lock();
  if (operation.cancelled) Fail(operation, Cancelled());
  else if (result.failure && !result.failAtRow) Fail(operation, *result.failure);
  if (operation.failure || result.fields.empty()) return EndCommand(operation);
  operation.stage = objectState::fetching;
  if (recordset == nullptr) return;
  recordset->BeginRows(&operation, result);
  ExecuteComplete.Raise(nullptr, result.recordsAffected, nullptr, EventStatus::Ok, recordset.get());
}

void FakeConnection::StepFetching(Operation& operation) {
  const MemoryResult& result = operation.result;
  const bool here = result.holdAtRow && operation.fetched == *result.holdAtRow;
  if (!operation.cancelled && HoldsAt(operation, here)) return;
  if (operation.cancelled) Fail(operation, Cancelled());
  else if (result.failAtRow && operation.fetched == *result.failAtRow)
    Fail(operation, *result.failure);
  if (operation.failure || operation.fetched == result.rows->size()) return EndCommand(operation);
  operation.fetched = NextBlockEnd(operation);
  const auto recordset = operation.recordset.lock();
  if (recordset == nullptr) return;
  recordset->AddRows(&operation, operation.fetched);
  if (operation.async)
    recordset->FetchProgress.Raise(nullptr, static_cast<std::int64_t>(operation.fetched), 0,
                                   EventStatus::Ok);
}

std::size_t FakeConnection::NextBlockEnd(const Operation& operation) const {
  const MemoryResult& result = operation.result;
  std::size_t end = std::min(operation.fetched + result.block, result.rows->size());
  for (const auto& stop : {result.holdAtRow, result.failAtRow})
    if (stop && *stop > operation.fetched) end = std::min(end, *stop);
  return end;
}

void FakeConnection::EndCommand(Operation& operation) {
  const MemoryResult& result = operation.result;
  if (running_.get() == &operation) {
    std::ranges::copy(result.notices, std::back_inserter(errors_));
    if (result.newCatalog && !operation.failure) catalog_ = *result.newCatalog;
    if (result.transaction) NoteTransaction(*result.transaction);
  }
  const bool hadRows = operation.stage == objectState::fetching;
  End(operation);
  const auto recordset = operation.recordset.lock();
  if (recordset == nullptr) return;
  recordset->EndRows(&operation, result);
  const std::optional<ErrorInfo> failure = operation.failure;
  if (!hadRows)
    ExecuteComplete.Raise(nullptr, failure ? -1 : result.recordsAffected, Pointer(failure),
                          StatusOf(failure), recordset.get());
  else if (operation.async)
    recordset->FetchComplete.Raise(nullptr, Pointer(failure), StatusOf(failure));
}

// --- changes
// -----------------------------------------------------------------------------------------

void FakeConnection::Write(const std::shared_ptr<FakeRecordset>& recordset, int options,
                           std::function<void()> write) {
  RequireIdle();
  const auto operation = std::make_shared<Operation>();
  operation->stage = objectState::executing;
  operation->async = (options & openOption::asyncExecute) != 0;
  operation->recordset = recordset;
  operation->write = std::move(write);
  ++log_->changes;
  recordset->BeginChange(operation.get());
  Begin(operation);
  RunOn(operation);
  if (!operation->async && operation->failure) throw Error(*operation->failure);
}

void FakeConnection::StepWriting(Operation& operation) {
  if (!operation.cancelled && HoldsAt(operation, server_->holdChanges)) return;
  const auto recordset = operation.recordset.lock();
  if (operation.cancelled) Fail(operation, Cancelled());
  else if (server_->changeFailure && server_->changesBeforeFailure-- <= 0)
    Fail(operation, *server_->changeFailure);
  if (recordset == nullptr) return End(operation);
  try {
    if (!operation.failure) operation.write();
  } catch (const Error& error) {
    Fail(operation, error.Info());
  }
  recordset->EndChange(&operation);
  End(operation);
  if (operation.async)
    recordset->ChangeComplete.Raise(nullptr, Pointer(operation.failure),
                                    StatusOf(operation.failure));
}

void FakeConnection::AnnounceChange(const std::shared_ptr<FakeRecordset>& recordset) {
  queue_.Post(recordset, [changed = recordset.get()] {
    changed->ChangeComplete.Raise(nullptr, nullptr, EventStatus::Ok);
  });
}

// --- catalogs and schema
// -----------------------------------------------------------------------------

void FakeConnection::SetDefaultDatabase(const std::string& name) {
  RequireIdle();
  errors_.clear();
  log_->catalogs.push_back(name);
  catalog_ = server_->FindCatalog(name);
}

std::shared_ptr<Recordset>
FakeConnection::OpenSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) {
  RequireIdle();
  errors_.clear();
  const auto recordset = std::make_shared<FakeRecordset>(weak_from_this());
  recordset->Fill(server_->SchemaRows(schema, restrictions));
  return recordset;
}

std::shared_ptr<Recordset>
FakeConnection::CreateSchemaRecordset(SchemaRowset schema,
                                      const std::vector<std::string>& restrictions) {
  auto recordset = std::make_shared<FakeRecordset>(weak_from_this());
  recordset->SetRequest([schema, restrictions](MemoryServer& server) {
    MemoryResult rows = server.SchemaRows(schema, restrictions);
    rows.holdExecuting = server.holdSchemas.contains(schema);
    return rows;
  });
  return recordset;
}

std::shared_ptr<Recordset> FakeConnection::CreateCatalogChange(const std::string& name) {
  auto recordset = std::make_shared<FakeRecordset>(weak_from_this());
  recordset->SetRequest([name, log = log_](MemoryServer& server) {
    log->catalogs.push_back(name);
    MemoryResult done;
    done.newCatalog = server.FindCatalog(name);
    done.holdExecuting = server.holdCatalogChanges;
    if (server.properties.Number("Catalog Change Ends Session", 0) != 0)
      done.transaction = UserTransaction::None;
    return done;
  });
  return recordset;
}

std::shared_ptr<Recordset> FakeConnection::CreateRecordset() {
  return std::make_shared<FakeRecordset>(weak_from_this());
}

}  // namespace tessel::test
