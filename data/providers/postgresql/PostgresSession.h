#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/providers/CancelSwitch.h"
#include "data/providers/Provider.h"
#include "data/providers/TextWalk.h"
#include "data/providers/postgresql/client/PostgresKeys.h"
#include "data/providers/postgresql/client/PostgresTypes.h"
#include "data/providers/postgresql/client/PqApi.h"

namespace tessel {

/// A database of a PostgreSQL server. The keys stand at PostgresTarget.
///
/// A text of several statements is one transaction, unless it says otherwise: an error in it undoes
/// all. Rows come one at a time while the server makes them. COPY from or to the client is refused.
/// The catalogs are the server's databases; to change means to connect again.
class PostgresSession : public ProviderSession {
 public:
  explicit PostgresSession(const ConnectionKeys& keys) : target_(PostgresTarget::FromKeys(keys)) {}

  void Open(const Login& login, WorkContext& context) override;
  void Close() noexcept override;
  [[nodiscard]] bool IsAlive() noexcept override { return connection_ && connection_->IsAlive(); }
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

  [[nodiscard]] std::string CurrentCatalog() override;
  void SetCatalog(const std::string& name, WorkContext& context) override;
  void ReadSchema(SchemaRows& rows, WorkContext& context) override;

  void Cancel() noexcept override { cancel_.Request(); }
  [[nodiscard]] std::chrono::milliseconds CancelPatience() const noexcept override {
    return std::chrono::milliseconds(500);
  }

 private:
  class Loader;

  [[nodiscard]] std::unique_ptr<PqConnection> Connect(const PostgresTarget& target,
                                                      WorkContext& context) const;
  [[nodiscard]] PqResult NextPiece(WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> FindRows(WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> BeginResult(PqResult first);
  [[nodiscard]] EarlierStatements WhenDone(const PqResult& done) const;
  void AppendRow(RowSink& rows) const;
  void TellUncertain(WorkContext& context);
  [[nodiscard]] bool GoesThroughPooler();
  [[noreturn]] void RaiseFailure(const PqResult& failed, WorkContext& context);
  void GoToFailure(const PqMessage& message, WorkContext& context);
  [[noreturn]] void RefuseCopy(PqKind kind, WorkContext& context);
  [[nodiscard]] bool DropResults(std::vector<ErrorInfo>& errors);
  [[nodiscard]] std::function<void()> CancelSender() {
    return [this] { connection_->SendCancel(); };
  }

  PostgresTarget target_;
  std::unique_ptr<PqConnection> connection_;
  CancelSwitch cancel_;
  std::optional<CancelSwitch::On> running_;  ///< While a command runs.
  std::optional<bool> pooled_;               ///< Once it was asked.

  // The command that runs, or ran last.
  std::string sql_;
  TextWalk walk_;
  bool ended_ = true;                           ///< Nothing of it is left at the server.
  PqResult next_;                               ///< What FetchRows looks at first.
  std::vector<std::vector<PqColumn>> columns_;  ///< Of its results with columns.
  std::vector<PostgresForm> forms_;
};

}  // namespace tessel
