#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data/providers/CancelSwitch.h"
#include "data/providers/ConnectionMode.h"
#include "data/providers/Provider.h"
#include "data/providers/TextWalk.h"
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

  void Open(const Login& login, WorkContext& context) override;
  void Close() noexcept override;
  [[nodiscard]] Properties ReadProperties() override;

  [[nodiscard]] std::vector<FieldInfo> ExecuteCommand(const std::string& sql,
                                                      WorkContext& context) override;
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) override;
  [[nodiscard]] std::vector<FieldInfo> NextResult(WorkContext& context) override;
  void CloseResult() noexcept override;
  void CompleteFields(std::size_t result, std::vector<FieldInfo>& fields) override;
  [[nodiscard]] std::vector<std::size_t> FindKey(std::size_t result,
                                                 const std::vector<FieldInfo>& fields) override;

  [[nodiscard]] const WriteDialect* Writing() override;
  [[nodiscard]] UserTransaction Transaction() override;
  [[nodiscard]] StatementResult RunStatement(const RowStatement& statement,
                                             WorkContext& context) override;
  void RunControl(std::string_view sql, const WorkContext* context) override;
  [[nodiscard]] std::unique_ptr<RowLoader> BeginLoad(const LoadRequest& request,
                                                     WorkContext& context) override;

  [[nodiscard]] std::string CurrentCatalog() override { return {}; }
  void SetCatalog(const std::string& name, WorkContext& context) override;
  void ReadSchema(SchemaRows& rows, WorkContext& context) override;

  void Cancel() noexcept override { cancel_.Request(); }
  /// Longer than the usual: what runs here lives in this process and reacts as soon as it is given
  /// the processor; a session left behind would keep its locks.
  [[nodiscard]] std::chrono::milliseconds CancelPatience() const noexcept override {
    return std::chrono::milliseconds(500);
  }

 private:
  /// While it lives, Cancel interrupts; at its end no interrupt is under way. Without a context
  /// nothing can be cancelled.
  class Cancellable {
   public:
    Cancellable(SqliteSession& session, const WorkContext* context) : session_(session) {
      session.context_ = context;
      if (context != nullptr)
        on_.emplace(session.cancel_, [&session] { session.database_->Interrupt(); });
    }
    Cancellable(SqliteSession& session, const WorkContext& context)
        : Cancellable(session, &context) {}
    Cancellable(const Cancellable&) = delete;
    Cancellable& operator=(const Cancellable&) = delete;
    ~Cancellable() { session_.context_ = nullptr; }

   private:
    SqliteSession& session_;
    std::optional<CancelSwitch::On> on_;
  };

  class Loader;

  void OpenFile(const std::string& file);
  [[nodiscard]] SqliteStatement NextStatement(WorkContext& context);
  void GoOn(WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> FindRows(WorkContext& context);
  [[nodiscard]] std::int64_t RunCounted(SqliteStatement statement);
  [[nodiscard]] std::vector<FieldInfo> BeginResult(SqliteStatement statement);
  [[nodiscard]] FieldInfo DescribeColumn(int column);
  [[nodiscard]] const SqliteTable& TableOf(const FieldInfo& field);

  ConnectionKeys keys_;
  std::unique_ptr<SqliteDatabase> database_;
  ConnectionMode mode_ = ConnectionMode::ReadWrite;

  // The command that runs.
  std::string text_;
  std::string_view rest_;  ///< Of text_: what has not been compiled yet.
  TextWalk walk_;
  SqliteStatement statement_;  ///< The one whose rows are fetched.
  bool hasRow_ = false;        ///< It stands on a row that was not fetched.
  std::vector<SqliteForm> forms_;
  std::vector<std::string> queries_;  ///< The texts of those with columns so far.
  std::map<std::pair<std::string, std::string>, SqliteTable> tables_;  ///< What it reads.

  CancelSwitch cancel_;
  const WorkContext* context_ = nullptr;  ///< What may be cancelled now. Worker.
};

}  // namespace tessel
