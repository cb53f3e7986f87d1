#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/providers/CancelSwitch.h"
#include "data/providers/Provider.h"
#include "data/providers/postgresql/PostgresKeys.h"
#include "data/providers/postgresql/PostgresTypes.h"
#include "data/providers/postgresql/PqApi.h"

namespace tessel {

/// A database of a PostgreSQL server. The keys stand at PostgresTarget.
///
/// A text of several statements is one transaction, unless it says otherwise: an error in it undoes
/// all. Rows come one at a time while the server makes them. COPY from or to the client is refused.
/// The catalogs are the server's databases; to change means to connect again.
class PostgresSession : public ProviderSession {
 public:
  explicit PostgresSession(const ConnectionKeys& keys) : target_(PostgresTarget::FromKeys(keys)) {}

  void Open(const Login& login, Operation& operation) override;
  void Close() noexcept override;
  [[nodiscard]] bool IsAlive() noexcept override { return connection_ && connection_->IsAlive(); }
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

  [[nodiscard]] std::string CurrentCatalog() override;
  void SetCatalog(const std::string& name, Operation& operation) override;
  void ReadSchema(SchemaRows& rows, Operation& operation) override;

  void Cancel() noexcept override { cancel_.Request(); }
  [[nodiscard]] std::chrono::milliseconds CancelPatience() const noexcept override {
    return std::chrono::milliseconds(500);
  }

 private:
  [[nodiscard]] std::unique_ptr<PqConnection> Connect(const PostgresTarget& target,
                                                      Operation& operation) const;
  [[nodiscard]] PqResult NextResult(Operation& operation);
  [[nodiscard]] ExecuteResult BeginResult(PqResult first);
  void Count(const PqResult& result);
  void AppendRow(RowSink& rows) const;
  [[noreturn]] void RaiseFailure(const PqResult& failed, Operation& operation);
  [[noreturn]] void RefuseCopy(PqKind kind, Operation& operation);
  [[nodiscard]] bool DropResults(std::vector<ErrorInfo>& errors);

  PostgresTarget target_;
  std::unique_ptr<PqConnection> connection_;
  CancelSwitch cancel_{[this] { connection_->SendCancel(); }};

  // The command that runs, or ran last.
  std::string sql_;
  bool ended_ = true;  ///< Nothing of it is left at the server.
  std::int64_t affected_ = -1;
  PqResult next_;  ///< What FetchRows looks at first.
  std::vector<PqColumn> columns_;
  std::vector<PostgresForm> forms_;
};

}  // namespace tessel
