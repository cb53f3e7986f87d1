#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/EventQueue.h"
#include "contract/data/Connection.h"
#include "data/cursor/ClientRecordset.h"
#include "data/providers/Provider.h"
#include "data/rows/RowMemory.h"
#include "data/work/RowWriter.h"
#include "data/work/SessionHost.h"
#include "data/work/Task.h"

namespace tessel {

/// What every connection uses. `queue` and `failures` outlive the connections.
struct ConnectionServices {
  EventQueue& queue;
  FailureSink* failures = nullptr;  ///< May be null: what a handler throws then passes through.
  std::shared_ptr<const ProviderRegistry> providers;
  HostStarter startHost;                         ///< Where their tasks run.
  RowMemory rowMemory = RowMemory::OfMachine();  ///< Of each result.
  FetchPace pace = {};                           ///< Of each result.
  /// The time at which a transaction is first seen.
  std::function<std::chrono::system_clock::time_point()> now = &std::chrono::system_clock::now;
};

/// A row that is being changed, among those it belongs to.
struct ChangedRow {
  std::shared_ptr<ResultRows> rows;
  std::int64_t number = 0;
};

/// The connection of this data layer. UI thread.
///
/// Its worker tells what happened through the task that runs; the state that the UI thread sees
/// changes when that is delivered: by a notice of the event queue, or at once where the UI thread
/// waits. Events are raised last, when all state is in order: a handler may do anything, even drop
/// the connection.
///
/// After a cancel to which the driver does not react within the session's patience, or when the
/// server is gone, the connection closes by itself.
class DataConnection : public Connection, public std::enable_shared_from_this<DataConnection> {
 public:
  explicit DataConnection(ConnectionServices services) : services_(std::move(services)) {}
  ~DataConnection() override;

  [[nodiscard]] const std::string& ConnectionString() const override { return connectionString_; }
  void SetConnectionString(std::string connectionString) override;
  void SetCursorLocation(int /*location*/) override {}

  void Open(const std::string& user, const std::string& password, int options) override;
  void Close() override;
  [[nodiscard]] int State() const override;
  void Cancel() override;

  [[nodiscard]] const std::vector<ErrorInfo>& Errors() const override { return errors_; }
  void ClearErrors() override { errors_.clear(); }
  [[nodiscard]] const Properties& ProviderProperties() const override { return properties_; }

  [[nodiscard]] std::string DefaultDatabase() const override { return catalog_; }
  void SetDefaultDatabase(const std::string& name) override;
  [[nodiscard]] TransactionState Transaction() const override { return transaction_; }
  [[nodiscard]] std::shared_ptr<Recordset>
  OpenSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) override;
  [[nodiscard]] std::shared_ptr<Recordset>
  CreateSchemaRecordset(SchemaRowset schema, const std::vector<std::string>& restrictions) override;
  [[nodiscard]] std::shared_ptr<Recordset> CreateCatalogChange(const std::string& name) override;
  [[nodiscard]] std::shared_ptr<Recordset> CreateRecordset() override;

  // --- for its recordsets ----------------------------------------------------------------------
  /// Where rows that were read now would come from.
  [[nodiscard]] RowOrigin Origin() const { return {connectionString_, catalog_}; }
  /// Runs `sql` for `recordset`, whose rows it becomes. Raises what Recordset::Open says.
  void Execute(const std::shared_ptr<ClientRecordset>& recordset, const std::string& sql,
               int options);
  /// Runs what a recordset opens with in place of a command, in the same way.
  void Run(const std::shared_ptr<ClientRecordset>& recordset, std::shared_ptr<Task> task,
           int options);
  /// Writes `change` of `row` for `recordset`. Raises what Recordset::Update says.
  void Write(const std::shared_ptr<ClientRecordset>& recordset, ChangedRow row, RowChange change,
             int options);
  /// Announces the end of a change that was nothing to write.
  void AnnounceChange(const std::shared_ptr<ClientRecordset>& recordset);
  /// Asks `task` to stop, if it is the one that runs.
  void CancelTask(const std::shared_ptr<Task>& task);

 private:
  /// A command from its start to the delivery of its end, as the UI thread sees it.
  struct Execution {
    std::shared_ptr<Task> task;
    std::weak_ptr<ClientRecordset> recordset;
    bool asyncFetch = false;
    bool hasRows = false;  ///< ExecuteComplete was raised for a result with columns.
    bool ended = false;
    std::optional<ErrorInfo> failure;  ///< After `ended`.
  };

  /// A change from its start to the delivery of its end.
  struct Writing {
    std::shared_ptr<WriteTask> task;
    std::weak_ptr<ClientRecordset> recordset;
    ChangedRow row;
  };

  void RequireIdle() const;
  void Begin(const std::shared_ptr<Task>& task, int stateBits);
  void SetNotices(Task& task, std::function<void(DataConnection&)> deliver);
  void Call(CallTask::Body body);
  void DropHost();
  void ReleaseRunning();

  void DeliverOpen(OpenTask& task);
  void FinishOpen(const OpenTask& task, TaskNews& news);
  void DeliverExecution(Execution& execution);
  void DeliverRows(Execution& execution, TaskNews& news, FailureSink& failures);
  void DeliverEnd(Execution& execution, const TaskNews& news, FailureSink& failures);
  void RaiseExecuted(const Execution& execution, const TaskNews& news, FailureSink& failures);
  void DeliverChange(const Writing& writing);
  void FinishChange(const Writing& writing, const TaskNews& news);
  void Finish(const Task& task, const TaskNews& news);
  void NoteTransaction(UserTransaction state);
  void AnnounceTransaction();

  ConnectionServices services_;
  std::string connectionString_;
  std::vector<ErrorInfo> errors_;
  Properties properties_;
  std::string catalog_;
  TransactionState transaction_;

  std::shared_ptr<SessionHost> host_;  ///< From Open to Close, else null.
  std::shared_ptr<Task> running_;      ///< Until its end is delivered.
  int runningState_ = 0;               ///< The state bits of what runs.
  std::weak_ptr<ClientRecordset> runningFor_;
  std::weak_ptr<ResultRows> runningRows_;  ///< Of which one is being written.
  bool sessionOpen_ = false;
  bool givenUp_ = false;  ///< The connection closed by itself.
};

}  // namespace tessel
