#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/EventQueue.h"
#include "contract/data/Connection.h"
#include "data/cursor/DataOperation.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/cursor/rows/CursorHost.h"
#include "data/providers/Provider.h"
#include "data/rows/RowMemory.h"
#include "data/tasks/RowWriter.h"
#include "data/tasks/SessionHost.h"
#include "data/tasks/Task.h"

namespace tessel {

/// What every connection uses. `queue` and `failures` outlive the connections.
struct ConnectionServices {
  EventQueue& queue;
  FailureSink* failures = nullptr;  ///< May be null: what a handler throws then passes through.
  std::shared_ptr<const ProviderRegistry> providers;
  HostStarter startHost;  ///< Where their tasks run.
  /// Of all results together.
  std::shared_ptr<RowBudget> rowBudget = std::make_shared<RowBudget>(RowMemory::OfMachine());
  FetchPace pace = {};  ///< Of each result.
  /// The time at which a transaction is first seen.
  std::function<std::chrono::system_clock::time_point()> now = &std::chrono::system_clock::now;
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
class DataConnection : public Connection,
                       public std::enable_shared_from_this<DataConnection>,
                       private CursorHost {
 public:
  explicit DataConnection(ConnectionServices services) : services_(std::move(services)) {}
  ~DataConnection() override;

  [[nodiscard]] const std::string& ConnectionString() const override { return connectionString_; }
  void SetConnectionString(std::string connectionString) override;

  [[nodiscard]] std::shared_ptr<Operation> StartOpen(const std::string& user,
                                                     const std::string& password) override;
  void Close() override;
  [[nodiscard]] int State() const override;

  [[nodiscard]] const std::vector<ErrorInfo>& Errors() const override { return errors_; }
  void ClearErrors() override { errors_.clear(); }
  [[nodiscard]] const Properties& ProviderProperties() const override { return properties_; }

  [[nodiscard]] std::string DefaultDatabase() const override { return catalog_; }
  [[nodiscard]] std::shared_ptr<Operation> StartUseCatalog(const std::string& name) override;
  [[nodiscard]] TransactionState Transaction() const override { return transaction_; }
  [[nodiscard]] std::shared_ptr<QueryOperation> StartQuery(const std::string& sql,
                                                           LockType lock) override;
  [[nodiscard]] std::shared_ptr<LoadOperation> StartLoad(LoadRequest request) override;
  [[nodiscard]] std::shared_ptr<QueryOperation>
  StartSchema(SchemaRowset schema, const std::vector<std::string>& restrictions) override;

 private:
  /// News of a task, with what the connection knows of it.
  struct Delivery {
    TaskNews news;
    RowOrigin origin;       ///< Where rows of the task come from.
    bool isCurrent = true;  ///< The connection was not closed meanwhile.
  };
  /// What one kind of task has to say to the connection, before its operation hears of the news.
  using Take = std::function<void(Delivery&)>;

  // For recordsets and operations.
  [[nodiscard]] std::shared_ptr<Connection> AsConnection() override { return shared_from_this(); }
  [[nodiscard]] RowOrigin Origin() const override { return {connectionString_, catalog_}; }
  void CancelTask(const std::shared_ptr<Task>& task) override;
  void WaitFor(Task& task) override;
  [[nodiscard]] std::shared_ptr<Operation>
  StartWrite(const std::shared_ptr<ClientRecordset>& recordset, ChangedRow row,
             RowChange change) override;

  void RequireIdle() const;
  [[nodiscard]] std::shared_ptr<DataOperation> Start(std::shared_ptr<Task> task,
                                                     OperationPhase phase, Take take = {},
                                                     RowSettings settings = {});
  void Deliver(const std::shared_ptr<Task>& task, const std::weak_ptr<DataOperation>& told,
               const Take& take);
  void DropHost();
  void ReleaseRunning();
  void FinishOpen(const OpenTask& task, Delivery& delivery);
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
  OperationPhase runningPhase_ = OperationPhase::Ended;
  std::weak_ptr<DataOperation> operation_;    ///< Of what runs, or ran last.
  std::weak_ptr<ClientRecordset> writesFor_;  ///< A change, if one runs.
  std::weak_ptr<ResultRows> writesTo_;
  bool sessionOpen_ = false;
  bool givenUp_ = false;  ///< The connection closed by itself.
};

}  // namespace tessel
