#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "data/providers/Provider.h"
#include "data/providers/sqlite/SqliteApi.h"
#include "data/providers/sqlite/SqliteTables.h"
#include "data/providers/sqlite/SqliteTypes.h"

namespace tessel {

/// A database of libsqlite3.
///
/// Keys: "Data Source", a file or ":memory:"; "Mode", ReadWrite (when missing), ReadOnly or
/// ReadWriteCreate; "Timeout", how many seconds to wait for locks, 5 when missing.
///
/// SQLite has no catalogs to change between: a statement names the database it means, so there is
/// no current one even when others are attached.
class SqliteSession : public ProviderSession {
 public:
  explicit SqliteSession(ConnectionKeys keys) : keys_(std::move(keys)) {}

  void Open(const Login& login, Operation& operation) override;
  void Close() noexcept override;
  [[nodiscard]] Properties ReadProperties() override;

  [[nodiscard]] ExecuteResult ExecuteCommand(const std::string& sql, Operation& operation) override;
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, Operation& operation) override;
  void DrainResults(Operation& operation) override;
  void CloseResult() noexcept override;
  void CompleteFields(std::vector<FieldInfo>& fields) override;
  [[nodiscard]] std::vector<std::size_t> FindKey(const std::vector<FieldInfo>& fields) override;

  [[nodiscard]] const WriteDialect* Writing() override;
  [[nodiscard]] UserTransaction Transaction() override;
  [[nodiscard]] StatementResult RunStatement(const RowStatement& statement,
                                             Operation& operation) override;
  void RunControl(std::string_view sql, const Operation* operation) override;

  [[nodiscard]] std::string CurrentCatalog() override { return {}; }
  void SetCatalog(const std::string& name, Operation& operation) override;
  void ReadSchema(SchemaRows& rows, Operation& operation) override;

  void Cancel() noexcept override;
  /// Longer than the usual: what runs here lives in this process and reacts as soon as it is given
  /// the processor; a session left behind would keep its locks.
  [[nodiscard]] std::chrono::milliseconds CancelPatience() const noexcept override {
    return std::chrono::milliseconds(500);
  }

 private:
  /// While it lives, Cancel interrupts; at its end no interrupt is under way.
  class Cancellable {
   public:
    Cancellable(SqliteSession& session, const Operation* operation) : session_(session) {
      Set(operation);
    }
    Cancellable(SqliteSession& session, const Operation& operation)
        : Cancellable(session, &operation) {}
    Cancellable(const Cancellable&) = delete;
    Cancellable& operator=(const Cancellable&) = delete;
    ~Cancellable() { Set(nullptr); }

   private:
    void Set(const Operation* operation) {
      const std::lock_guard lock(session_.cancelMutex_);
      session_.operation_ = operation;
    }

    SqliteSession& session_;
  };

  void OpenFile(const std::string& file);
  [[nodiscard]] SqliteStatement NextStatement(Operation& operation);
  void RunCounted(SqliteStatement statement);
  [[nodiscard]] ExecuteResult BeginResult(SqliteStatement statement);
  [[nodiscard]] FieldInfo DescribeColumn(int column);
  [[nodiscard]] const SqliteTable& TableOf(const FieldInfo& field);

  ConnectionKeys keys_;
  std::unique_ptr<SqliteDatabase> database_;

  // The command that runs.
  std::string text_;
  std::string_view rest_;  ///< Of text_: what has not been compiled yet.
  std::int64_t affected_ = -1;
  SqliteStatement statement_;  ///< The one whose rows are fetched.
  bool hasRow_ = false;        ///< It stands on a row that was not fetched.
  std::vector<SqliteForm> forms_;
  std::string query_;  ///< The text of the last statement_.
  std::map<std::pair<std::string, std::string>, SqliteTable> tables_;

  std::mutex cancelMutex_;
  const Operation* operation_ =
      nullptr;  ///< What may be cancelled now. Changed by the worker, locked.
};

}  // namespace tessel
