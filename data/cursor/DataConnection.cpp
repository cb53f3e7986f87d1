#include "data/cursor/DataConnection.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace tessel {

namespace {

bool IsBlank(const std::string& sql) {
  return sql.find_first_not_of(" \t\r\n\f\v") == std::string::npos;
}

const ErrorInfo* Pointer(const std::optional<ErrorInfo>& failure) {
  return failure ? &*failure : nullptr;
}

EventStatus StatusOf(const std::optional<ErrorInfo>& failure) {
  return failure ? EventStatus::ErrorsOccurred : EventStatus::Ok;
}

CallTask::Body CatalogChange(const std::string& name) {
  return [name](ProviderSession& session, Operation& operation) {
    session.SetCatalog(name, operation);
  };
}

/// Where no sink is given: keeps what a handler threw until everything is in order, then lets it
/// pass.
class LateFailure : public FailureSink {
 public:
  void HandlerFailed(std::exception_ptr failure) noexcept override {
    if (!failure_) failure_ = std::move(failure);
  }
  void Rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

}  // namespace

DataConnection::~DataConnection() {
  if (running_) running_->SetPoster(nullptr);
  DropHost();
  ReleaseRunning();
}

void DataConnection::SetConnectionString(std::string connectionString) {
  if (host_)
    throw Error(errorNumber::objectOpen, "Tessel",
                "The connection string cannot be changed while the connection is open.");
  connectionString_ = std::move(connectionString);
}

// --- opening and closing ---------------------------------------------------------------------

void DataConnection::Open(const std::string& user, const std::string& password, int options) {
  if (host_) throw Error(errorNumber::objectOpen, "Tessel", "The connection is open already.");
  errors_.clear();
  host_ = services_.startHost(services_.providers->CreateSession(connectionString_));
  givenUp_ = false;
  const auto task = std::make_shared<OpenTask>(Login{user, password});
  Begin(task, objectState::connecting);
  if ((options & asyncConnect) != 0)
    return SetNotices(*task, [task](DataConnection& self) { self.DeliverOpen(*task); });
  host_->WaitForEnd(*task);
  TaskNews news = task->TakeNews();
  FinishOpen(*task, news);
  if (news.failure) throw Error(*news.failure);
}

void DataConnection::DeliverOpen(OpenTask& task) {
  TaskNews news = task.TakeNews();
  if (!news.ended) return;
  FinishOpen(task, news);
  ConnectComplete.Raise(services_.failures, Pointer(news.failure), StatusOf(news.failure));
}

void DataConnection::FinishOpen(const OpenTask& task, TaskNews& news) {
  const bool wanted = running_.get() == &task;
  Finish(task, news);
  if (!wanted) {  // The connection was closed while it was being opened.
    if (!news.failure) news.failure = CancelledError().Info();
  } else if (news.failure) {
    DropHost();
  } else {
    sessionOpen_ = true;
    properties_ = task.SessionProperties();
  }
}

void DataConnection::Close() {
  DropHost();
  ReleaseRunning();
}

/// The recordset that ran is left with the rows it was given: whoever asks its state must not wait
/// for a notice that may never come.
void DataConnection::ReleaseRunning() {
  const std::shared_ptr<ClientRecordset> recordset = runningFor_.lock();
  if (recordset && running_) {
    recordset->EndRows(running_.get(), {});
    recordset->EndChange(running_.get());
  }
  const std::shared_ptr<ResultRows> rows = runningRows_.lock();
  if (rows && running_) rows->EndWriting(running_.get());
  running_.reset();
}

/// Ends the session. What ran still ends, and says so, but concerns the connection no more.
void DataConnection::DropHost() {
  if (!host_) return;
  std::exchange(host_, nullptr)->Stop(running_);
  sessionOpen_ = false;
  catalog_.clear();
  properties_.Clear();
  transaction_ = {};
  AnnounceTransaction();
}

int DataConnection::State() const {
  if (!host_) return objectState::closed;
  return (sessionOpen_ ? objectState::open : 0) | (running_ ? runningState_ : 0);
}

void DataConnection::Cancel() { CancelTask(running_); }

void DataConnection::CancelTask(const std::shared_ptr<Task>& task) {
  if (host_ && task && task == running_) host_->Cancel(task);
}

// --- tasks -----------------------------------------------------------------------------------

void DataConnection::RequireIdle() const {
  if (!host_ && givenUp_)
    throw Error(errorNumber::objectClosed, "Tessel",
                "The connection is closed: it was lost, or given up because the database did not "
                "react to a cancel. Connect again.");
  if (!host_) throw Error(errorNumber::objectClosed, "Tessel", "The connection is closed.");
  if (running_)
    throw Error(errorNumber::application, "Tessel", "The connection is busy with another command.");
}

void DataConnection::Begin(const std::shared_ptr<Task>& task, int stateBits) {
  errors_.clear();
  running_ = task;
  runningState_ = stateBits;
  host_->Run(task);
}

void DataConnection::SetNotices(Task& task, std::function<void(DataConnection&)> deliver) {
  const std::weak_ptr<DataConnection> weak = weak_from_this();
  EventQueue& queue = services_.queue;
  task.SetPoster([weak, &queue, deliver = std::move(deliver)] {
    queue.Post(weak, [weak, deliver] {
      if (const auto self = weak.lock()) deliver(*self);
    });
  });
}

/// Takes in what a task that has ended says of the connection.
void DataConnection::Finish(const Task& task, const TaskNews& news) {
  if (running_.get() != &task) return;
  std::ranges::copy(news.reports, std::back_inserter(errors_));
  if (!news.ended) return;
  running_.reset();
  if (news.catalog) catalog_ = *news.catalog;
  if (news.transaction) NoteTransaction(*news.transaction);
  if (!news.sessionLost) return;
  givenUp_ = true;
  DropHost();
}

void DataConnection::NoteTransaction(UserTransaction state) {
  const UserTransaction before = std::exchange(transaction_.state, state);
  if (before == state) return;
  if (!IsUnderWay(before)) transaction_.since = services_.now();
  AnnounceTransaction();
}

void DataConnection::AnnounceTransaction() {
  const std::weak_ptr<DataConnection> weak = weak_from_this();
  services_.queue.Post(weak, [weak, failures = services_.failures] {
    if (const auto self = weak.lock()) self->TransactionChanged.Raise(failures);
  });
}

void DataConnection::Call(CallTask::Body body) {
  RequireIdle();
  const auto task = std::make_shared<CallTask>(std::move(body));
  Begin(task, objectState::executing);
  host_->WaitForEnd(*task);
  const TaskNews news = task->TakeNews();
  Finish(*task, news);
  if (news.failure) throw Error(*news.failure);
}

void DataConnection::SetDefaultDatabase(const std::string& name) { Call(CatalogChange(name)); }

std::shared_ptr<Recordset>
DataConnection::OpenSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) {
  const auto rows = std::make_shared<SchemaRows>(schema, restrictions);
  Call([rows](ProviderSession& session, Operation& operation) {
    session.ReadSchema(*rows, operation);
    rows->Sink().CloseChunk();
  });
  const auto recordset = std::make_shared<ClientRecordset>(weak_from_this());
  recordset->Fill(rows->Fields(), rows->Sink().TakeChunks());
  return recordset;
}

std::shared_ptr<Recordset>
DataConnection::CreateSchemaRecordset(SchemaRowset schema,
                                      const std::vector<std::string>& restrictions) {
  auto recordset = std::make_shared<ClientRecordset>(weak_from_this());
  recordset->SetTask([request = SchemaRequest{schema, restrictions}] {
    return std::make_shared<SchemaTask>(request);
  });
  return recordset;
}

std::shared_ptr<Recordset> DataConnection::CreateCatalogChange(const std::string& name) {
  auto recordset = std::make_shared<ClientRecordset>(weak_from_this());
  recordset->SetTask([name] { return std::make_shared<CallTask>(CatalogChange(name)); });
  return recordset;
}

std::shared_ptr<Recordset> DataConnection::CreateRecordset() {
  return std::make_shared<ClientRecordset>(weak_from_this());
}

// --- commands --------------------------------------------------------------------------------

void DataConnection::Execute(const std::shared_ptr<ClientRecordset>& recordset,
                             const std::string& sql, int options) {
  RequireIdle();
  if (IsBlank(sql)) throw Error(errorNumber::application, "Tessel", "The command text is empty.");
  Run(recordset, std::make_shared<ExecuteTask>(sql, services_.rowMemory, services_.pace), options);
}

void DataConnection::Run(const std::shared_ptr<ClientRecordset>& recordset,
                         std::shared_ptr<Task> task, int options) {
  RequireIdle();
  const auto execution = std::make_shared<Execution>();
  execution->task = std::move(task);
  execution->recordset = runningFor_ = recordset;
  const auto deliver = [execution](DataConnection& self) { self.DeliverExecution(*execution); };
  recordset->BeginExecute(execution->task);
  Begin(execution->task, objectState::executing);
  execution->asyncFetch = (options & (openOption::asyncExecute | openOption::asyncFetch)) != 0;
  if ((options & openOption::asyncExecute) != 0) return SetNotices(*execution->task, deliver);

  const std::shared_ptr<SessionHost> host = host_;  // A handler may close the connection.
  host->WaitForResult(*execution->task);
  DeliverExecution(*execution);
  if (execution->asyncFetch && !execution->ended) return SetNotices(*execution->task, deliver);
  if (!execution->ended) {
    host->WaitForEnd(*execution->task);
    DeliverExecution(*execution);
  }
  if (execution->failure && !execution->asyncFetch) throw Error(*execution->failure);
}

/// Brings everything that is new to the recordset, then raises the events that are due. A handler
/// may run the event queue, but no more than one delivery has anything to tell of each step.
void DataConnection::DeliverExecution(Execution& execution) {
  const auto self = shared_from_this();
  LateFailure late;
  FailureSink& failures = services_.failures == nullptr ? late : *services_.failures;
  TaskNews news = execution.task->TakeNews();
  if (!news.ended) Finish(*execution.task, news);
  DeliverRows(execution, news, failures);
  if (news.ended) DeliverEnd(execution, news, failures);
  late.Rethrow();
}

void DataConnection::DeliverRows(Execution& execution, TaskNews& news, FailureSink& failures) {
  const auto recordset = execution.recordset.lock();
  if (recordset) {
    if (news.executed) recordset->BeginRows(execution.task.get(), std::move(news.fields));
    recordset->AddRows(execution.task.get(), std::move(news.chunks));
  }
  if (news.executed) {
    execution.hasRows = true;
    if (running_ == execution.task) runningState_ = objectState::fetching;
    RaiseExecuted(execution, news, failures);
  }
  if (recordset && news.progress && execution.asyncFetch && !news.ended)
    recordset->FetchProgress.Raise(&failures, news.rowsFetched, 0, EventStatus::Ok);
}

void DataConnection::DeliverEnd(Execution& execution, const TaskNews& news, FailureSink& failures) {
  RowOrigin origin{connectionString_, news.catalog.value_or(catalog_)};
  Finish(*execution.task, news);
  execution.ended = true;
  execution.failure = news.failure;
  const auto recordset = execution.recordset.lock();
  if (recordset)
    recordset->EndRows(execution.task.get(), {std::move(origin), news.key, news.fields});
  if (!execution.hasRows) {
    RaiseExecuted(execution, news, failures);
  } else if (recordset && execution.asyncFetch) {
    recordset->FetchComplete.Raise(&failures, Pointer(news.failure), StatusOf(news.failure));
  }
}

/// For a command whose recordset is gone nobody waits.
void DataConnection::RaiseExecuted(const Execution& execution, const TaskNews& news,
                                   FailureSink& failures) {
  const auto recordset = execution.recordset.lock();
  if (!recordset) return;
  const std::optional<ErrorInfo>& failure = execution.failure;
  ExecuteComplete.Raise(&failures, news.recordsAffected, Pointer(failure), StatusOf(failure),
                        recordset.get());
}

// --- changes ---------------------------------------------------------------------------------

void DataConnection::Write(const std::shared_ptr<ClientRecordset>& recordset, ChangedRow row,
                           RowChange change, int options) {
  RequireIdle();
  const Writing writing{std::make_shared<WriteTask>(std::move(change)), recordset, std::move(row)};
  runningFor_ = recordset;
  runningRows_ = writing.row.rows;
  recordset->BeginChange(writing.task);
  Begin(writing.task, objectState::executing);
  if ((options & openOption::asyncExecute) != 0)
    return SetNotices(*writing.task,
                      [writing](DataConnection& self) { self.DeliverChange(writing); });
  host_->WaitForEnd(*writing.task);
  const TaskNews news = writing.task->TakeNews();
  FinishChange(writing, news);
  if (news.failure) throw Error(*news.failure);
}

/// What was written is taken down even when the recordset is closed by now: clones show the row.
void DataConnection::FinishChange(const Writing& writing, const TaskNews& news) {
  Finish(*writing.task, news);
  const auto recordset = writing.recordset.lock();
  if (recordset) recordset->EndChange(writing.task.get());
  writing.row.rows->EndWriting(writing.task.get());
  if (!news.failure)
    writing.row.rows->Accept(writing.task->Kind(), writing.row.number, writing.task->TakeWritten());
}

void DataConnection::DeliverChange(const Writing& writing) {
  const auto self = shared_from_this();
  const TaskNews news = writing.task->TakeNews();
  if (!news.ended) return;
  FinishChange(writing, news);
  if (const auto recordset = writing.recordset.lock())
    recordset->ChangeComplete.Raise(services_.failures, Pointer(news.failure),
                                    StatusOf(news.failure));
}

void DataConnection::AnnounceChange(const std::shared_ptr<ClientRecordset>& recordset) {
  const std::weak_ptr<ClientRecordset> weak = recordset;
  services_.queue.Post(weak, [weak, failures = services_.failures] {
    if (const auto told = weak.lock())
      told->ChangeComplete.Raise(failures, nullptr, EventStatus::Ok);
  });
}

}  // namespace tessel
