#include "data/cursor/DataConnection.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "data/cursor/DataLoad.h"
#include "data/providers/ConnectionMode.h"

namespace tessel {

namespace {

bool IsBlank(const std::string& sql) {
  return sql.find_first_not_of(" \t\r\n\f\v") == std::string::npos;
}

/// The bit of Connection::State that stands for a phase.
int StateOf(OperationPhase phase) {
  switch (phase) {
    case OperationPhase::Connecting: return objectState::connecting;
    case OperationPhase::Fetching: return objectState::fetching;
    default: return objectState::executing;
  }
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
  if (const auto operation = operation_.lock()) operation->EndUnheard();
}

void DataConnection::SetConnectionString(std::string connectionString) {
  if (host_)
    throw Error(errorNumber::objectOpen, "Tessel",
                "The connection string cannot be changed while the connection is open.");
  connectionString_ = std::move(connectionString);
}

// --- opening and closing ---------------------------------------------------------------------

std::shared_ptr<Operation> DataConnection::StartOpen(const std::string& user,
                                                     const std::string& password) {
  if (host_) throw Error(errorNumber::objectOpen, "Tessel", "The connection is open already.");
  errors_.clear();
  host_ = services_.startHost(services_.providers->CreateSession(connectionString_));
  givenUp_ = false;
  const auto task = std::make_shared<OpenTask>(Login{user, password});
  return Start(task, OperationPhase::Connecting,
               [this, task](Delivery& delivery) { FinishOpen(*task, delivery); });
}

void DataConnection::FinishOpen(const OpenTask& task, Delivery& delivery) {
  std::optional<TaskEnd>& end = delivery.news.end;
  if (!end) return;
  if (!delivery.isCurrent) {  // The connection was closed while it was being opened.
    if (!end->failure) end->failure = CancelledError().Info();
  } else if (end->failure) {
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

/// Recordsets are left with the rows they were given: whoever asks their state must not wait for a
/// notice that may never come.
void DataConnection::ReleaseRunning() {
  if (!running_) return;
  if (const auto operation = operation_.lock()) operation->LeaveRows();
  if (const auto recordset = writesFor_.lock()) recordset->EndChange(running_.get());
  if (const auto rows = writesTo_.lock()) rows->EndWriting(running_.get());
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
  return (sessionOpen_ ? objectState::open : 0) | (running_ ? StateOf(runningPhase_) : 0);
}

/// Without a session the task has ended, or was abandoned.
void DataConnection::WaitFor(Task& task) {
  if (host_) host_->WaitForEnd(task);
  else task.WaitForEnd();
}

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

/// The task is given to the worker. Its news are delivered through the event queue, or by
/// DataOperation::Wait.
std::shared_ptr<DataOperation> DataConnection::Start(std::shared_ptr<Task> task,
                                                     OperationPhase phase, Take take,
                                                     RowSettings settings) {
  errors_.clear();
  const std::weak_ptr<DataConnection> weak = weak_from_this();
  auto operation = std::make_shared<DataOperation>(
      std::shared_ptr<CursorHost>(shared_from_this(), this), task, phase, std::move(settings));
  running_ = task;
  runningPhase_ = phase;
  operation_ = operation;
  auto deliver = [weak, task, told = operation_, take = std::move(take)] {
    if (const auto self = weak.lock()) self->Deliver(task, told, take);
  };
  operation->SetDelivery(deliver);
  host_->Run(task);
  task->SetPoster([weak, &queue = services_.queue, deliver = std::move(deliver)] {
    queue.Post(weak, deliver);
  });
  return operation;
}

/// Brings everything that is new to the connection and to the operation, then raises the event that
/// is due. A handler may run the event queue, but no more than one delivery has anything to tell of
/// each step.
void DataConnection::Deliver(const std::shared_ptr<Task>& task,
                             const std::weak_ptr<DataOperation>& told, const Take& take) {
  const auto self = shared_from_this();
  TaskNews news = task->TakeNews();
  RowOrigin origin = Origin();
  if (news.end && news.end->catalog) origin.catalog = *news.end->catalog;
  Delivery delivery{std::move(news), std::move(origin), running_ == task};
  Finish(*task, delivery.news);
  if (take) take(delivery);
  const auto operation = told.lock();
  if (!operation) return;
  LateFailure late;
  FailureSink& failures = services_.failures == nullptr ? late : *services_.failures;
  operation->Take(delivery.news, delivery.origin);
  operation->Announce(delivery.news, failures);
  late.Rethrow();
}

/// Takes in what a task that has ended says of the connection.
void DataConnection::Finish(const Task& task, const TaskNews& news) {
  if (running_.get() != &task) return;
  if (news.executed) runningPhase_ = OperationPhase::Fetching;
  std::ranges::copy(news.reports, std::back_inserter(errors_));
  if (!news.end) return;
  running_.reset();
  if (news.end->catalog) catalog_ = *news.end->catalog;
  if (news.end->transaction) NoteTransaction(*news.end->transaction);
  if (!news.end->sessionLost) return;
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

std::shared_ptr<Operation> DataConnection::StartUseCatalog(const std::string& name) {
  RequireIdle();
  return Start(std::make_shared<CatalogTask>(name), OperationPhase::Executing);
}

std::shared_ptr<QueryOperation>
DataConnection::StartSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) {
  RequireIdle();
  return Start(std::make_shared<SchemaTask>(SchemaRequest{schema, restrictions}),
               OperationPhase::Executing);
}

std::shared_ptr<QueryOperation> DataConnection::StartQuery(const std::string& sql, LockType lock) {
  RequireIdle();
  if (IsBlank(sql)) throw Error(errorNumber::application, "Tessel", "The command text is empty.");
  return Start(std::make_shared<ExecuteTask>(sql, services_.rowBudget, services_.pace),
               OperationPhase::Executing, {}, {sql, lock});
}

/// The operation that is told of the task is held by the one that is given away.
std::shared_ptr<LoadOperation> DataConnection::StartLoad(LoadRequest request) {
  RequireIdle();
  if (request.columns.empty())
    throw Error(errorNumber::application, "Tessel", "There is no column to load.");
  if (IsReadOnlyMode(properties_))
    throw Error(errorNumber::readOnly, "Tessel",
                "This connection was opened with Mode=ReadOnly: nothing can be written on it.");
  const auto task = std::make_shared<LoadTask>(std::move(request));
  return DataLoad::Of(Start(task, OperationPhase::Writing), task);
}

// --- changes ---------------------------------------------------------------------------------

/// What was written is taken down even when the recordset is closed by then: clones show the row.
std::shared_ptr<Operation>
DataConnection::StartWrite(const std::shared_ptr<ClientRecordset>& recordset, ChangedRow row,
                           RowChange change) {
  RequireIdle();
  const auto task = std::make_shared<WriteTask>(std::move(change));
  const std::weak_ptr<ClientRecordset> cursor = writesFor_ = recordset;
  writesTo_ = row.rows;
  recordset->BeginChange(task);
  return Start(task, OperationPhase::Writing, [task, row, cursor](Delivery& delivery) {
    const std::optional<TaskEnd>& end = delivery.news.end;
    if (!end) return;
    if (const auto told = cursor.lock()) told->EndChange(task.get());
    row.rows->EndWriting(task.get());
    if (!end->failure) row.rows->Accept(task->Kind(), row.number, task->TakeWritten());
  });
}

}  // namespace tessel
