#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "data/providers/Provider.h"
#include "data/providers/TextWalk.h"
#include "data/providers/memory/MemoryServer.h"
#include "data/providers/memory/MemoryWriter.h"

namespace tessel {

/// What sessions were asked, in order.
struct MemoryLog {
  struct Opening {
    std::string connectionString;
    std::string user;
    std::string password;
    bool async = false;  ///< Nobody waited for it.
  };
  struct Command {
    std::string connectionString;
    std::string sql;
    bool async = false;  ///< Nobody waited for it.
  };

  std::vector<Opening> opened;      ///< Every opening, also those that failed.
  std::vector<std::string> closed;  ///< Connection strings of sessions that ended.
  std::vector<Command> executed;
  std::vector<std::string> catalogs;  ///< Every name of a catalog that was to be used.
  int changes = 0;                    ///< Rows written or deleted, also those that failed.
  int cancels = 0;                    ///< Requests to stop something that ran.
  int openSessions = 0;               ///< Sessions that are open now.
};

/// Where a session goes, and where it is noted. The server outlives it.
struct MemoryRoute {
  MemoryServer* server = nullptr;
  std::shared_ptr<MemoryLog> log;
  std::string connectionString;
};

/// A session with a server in memory. It never waits: whoever calls it asks first whether the call
/// is to be held back (the hold switches of the server, and HoldsFetch). One thread.
class MemorySession final : public ProviderSession {
 public:
  explicit MemorySession(MemoryRoute route);

  void Open(const Login& login, WorkContext& context) override;
  void Close() noexcept override;
  [[nodiscard]] bool IsAlive() noexcept override { return alive_; }
  [[nodiscard]] Properties ReadProperties() override { return server_.properties; }
  [[nodiscard]] std::vector<FieldInfo> ExecuteCommand(const std::string& sql,
                                                      WorkContext& context) override;
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) override;
  [[nodiscard]] std::vector<FieldInfo> NextResult(WorkContext& context) override;
  void CloseResult() noexcept override {}
  [[nodiscard]] std::vector<std::size_t> FindKey(std::size_t result,
                                                 const std::vector<FieldInfo>& fields) override;
  [[nodiscard]] const WriteDialect* Writing() override { return &dialect_; }
  [[nodiscard]] UserTransaction Transaction() override { return transaction_; }
  [[nodiscard]] StatementResult RunStatement(const RowStatement& statement,
                                             WorkContext& context) override;
  void RunControl(std::string_view sql, const WorkContext* context) override;
  [[nodiscard]] std::string CurrentCatalog() override { return catalog_; }
  void SetCatalog(const std::string& name, WorkContext& context) override;
  void ReadSchema(SchemaRows& rows, WorkContext& context) override;
  void Cancel() noexcept override { ++log_->cancels; }

  // --- for who takes the calls to it -------------------------------------------------------------
  [[nodiscard]] MemoryServer& Server() const { return server_; }
  /// The fetch has come to the row at which it is to be held.
  [[nodiscard]] bool HoldsFetch() const { return result_.holdAtRow == fetched_; }
  /// The calls that follow are noted as such that somebody waits for.
  void SetWaitedFor(bool waitedFor) { waitedFor_ = waitedFor; }
  /// The server goes away without a sign: every call fails from now on.
  void Lose() { alive_ = false; }

 private:
  void RequireAlive() const;
  [[nodiscard]] std::vector<FieldInfo> BeginStatement(WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> FindRows(WorkContext& context);
  [[nodiscard]] EarlierStatements WhenDone() const;
  [[nodiscard]] std::size_t BlockEnd(std::size_t maxRows) const;

  MemoryServer& server_;
  const std::shared_ptr<MemoryLog> log_;
  const std::string connectionString_;
  const WriteDialect dialect_ = MemoryDialect();
  MemoryWriter writer_;
  TextWalk walk_;
  MemoryResult result_;            ///< Of the last statement.
  std::deque<MemoryResult> next_;  ///< Of those behind it.
  std::vector<bool> uniqueRows_;   ///< Of the results with columns.
  std::size_t fetched_ = 0;        ///< Of its rows.
  std::string catalog_;
  UserTransaction transaction_ = UserTransaction::None;
  bool waitedFor_ = false;
  bool alive_ = true;
};

}  // namespace tessel
