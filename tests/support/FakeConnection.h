#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/EventQueue.h"
#include "contract/data/Connection.h"
#include "tests/support/FakeRecordset.h"
#include "tests/support/MemoryServer.h"

namespace tessel::test {

/// What was asked of the connections, in order.
struct MemoryLog {
  struct Opening {
    std::string connectionString;
    std::string user;
    std::string password;
    bool async = false;
  };
  struct Command {
    std::string connectionString;
    std::string sql;
    bool async = false;
  };

  std::vector<Opening> opened;      ///< Every Open, also those that failed.
  std::vector<std::string> closed;  ///< Connection strings of sessions that ended.
  std::vector<Command> executed;
  std::vector<std::string> catalogs;  ///< Every name of a catalog that was to be used.
  int changes = 0;                    ///< Rows written or deleted, also those that failed.
  int cancels = 0;                    ///< Requests to stop something that ran.
  int openSessions = 0;               ///< Sessions that are open now.
};

/// A connection whose work is done in steps: an asynchronous operation posts each step to the event
/// queue, so a test can act between any two of them; a synchronous one takes them all at once.
class FakeConnection final : public Connection,
                             public std::enable_shared_from_this<FakeConnection> {
 public:
  /// Finds the server of a connection string; it outlives the connection.
  using FindServer = std::function<MemoryServer&(const std::string&)>;

  FakeConnection(EventQueue& queue, std::shared_ptr<MemoryLog> log, FindServer findServer);
  ~FakeConnection() override;

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

  // --- for recordsets
  // --------------------------------------------------------------------------------
  void Execute(const std::shared_ptr<FakeRecordset>& recordset, int options);
  void CancelOperation(const void* operation);
  /// Runs `write` as an operation of the connection; ChangeComplete of the recordset follows when
  /// asynchronous.
  void Write(const std::shared_ptr<FakeRecordset>& recordset, int options,
             std::function<void()> write);
  /// The end of a change that there was nothing to do for.
  void AnnounceChange(const std::shared_ptr<FakeRecordset>& recordset);

  // --- for tests
  // -------------------------------------------------------------------------------------
  /// Whether an operation is held.
  [[nodiscard]] bool IsHeld() const;
  /// Lets the held operation go on.
  void Resume();
  /// The session ends as if the server had gone: the next operation finds the connection closed.
  void LoseSession();

 private:
  /// What runs. It ends only once.
  struct Operation {
    int stage = objectState::connecting;
    bool async = false;
    bool cancelled = false;
    bool held = false;
    bool resumed = false;
    MemoryResult result;
    std::weak_ptr<FakeRecordset> recordset;
    std::function<void()> write;  ///< Empty: it is no change.
    std::size_t fetched = 0;
    std::optional<ErrorInfo> failure;
    bool ended = false;
  };
  using OperationPtr = std::shared_ptr<Operation>;

  void RequireIdle() const;
  [[nodiscard]] MemoryResult AnswerFor(const FakeRecordset& recordset, int options);
  void Begin(const OperationPtr& operation);
  void RunOn(const OperationPtr& operation);
  void Step(const OperationPtr& operation);
  void PostStep(const OperationPtr& operation);
  [[nodiscard]] bool HoldsAt(Operation& operation, bool here);
  void StepConnecting(Operation& operation);
  void StepExecuting(Operation& operation);
  void StepFetching(Operation& operation);
  void StepWriting(Operation& operation);
  [[nodiscard]] std::size_t NextBlockEnd(const Operation& operation) const;
  void EndOpen(Operation& operation);
  void EndCommand(Operation& operation);
  void End(Operation& operation);
  void Fail(Operation& operation, const ErrorInfo& failure);
  void EndSession();
  void NoteTransaction(UserTransaction state);
  void AnnounceTransaction();

  EventQueue& queue_;
  std::shared_ptr<MemoryLog> log_;
  FindServer findServer_;
  MemoryServer* server_ = nullptr;
  std::string connectionString_;
  bool sessionOpen_ = false;
  OperationPtr running_;
  std::vector<ErrorInfo> errors_;
  Properties properties_;
  std::string catalog_;
  TransactionState transaction_;
};

}  // namespace tessel::test
