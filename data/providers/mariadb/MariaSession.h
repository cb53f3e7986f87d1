#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/providers/CancelSwitch.h"
#include "data/providers/Provider.h"
#include "data/providers/TextWalk.h"
#include "data/providers/mariadb/MariaApi.h"
#include "data/providers/mariadb/MariaKeys.h"
#include "data/providers/mariadb/MariaTypes.h"

namespace tessel {

/// A database of a MariaDB or MySQL server. The keys stand at MariaTarget.
///
/// Of a text of several statements those before an error stay done. Rows come one at a time while
/// the server makes them. A statement is cancelled by KILL QUERY from a connection of its own.
class MariaSession : public ProviderSession {
 public:
  explicit MariaSession(const ConnectionKeys& keys) : target_(MariaTarget::FromKeys(keys)) {}

  void Open(const Login& login, WorkContext& context) override;
  void Close() noexcept override;
  [[nodiscard]] bool IsAlive() noexcept override { return connection_ && !lost_; }
  [[nodiscard]] Properties ReadProperties() override;

  [[nodiscard]] std::vector<FieldInfo> ExecuteCommand(const std::string& sql,
                                                      WorkContext& context) override;
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) override;
  [[nodiscard]] std::vector<FieldInfo> NextResult(WorkContext& context) override;
  void CloseResult() noexcept override;
  void CompleteFields(std::size_t result, std::vector<FieldInfo>& fields) override;
  [[nodiscard]] std::vector<std::size_t> FindKey(std::size_t result,
                                                 const std::vector<FieldInfo>& fields) override;

  [[nodiscard]] const WriteDialect* Writing() override { return &dialect_; }
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

  /// Does `work`. An error becomes the one that tells what it means: a cancel, a lost server.
  template <class Work>
  auto Guarded(WorkContext& context, Work work) {
    try {
      return work();
    } catch (const Error& error) {
      RaiseFailure(error, context);
    }
  }
  [[noreturn]] void RaiseFailure(const Error& error, WorkContext& context);
  void ChooseDialect();
  void RequireUndo(const LoadRequest& request);
  [[nodiscard]] bool RunText(const std::string& sql);
  [[nodiscard]] bool NextStatement();
  [[nodiscard]] std::vector<FieldInfo> FindRows(WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> BeginResult();
  [[nodiscard]] EarlierStatements WhenDone() const;
  void CountWarnings();
  void AppendRow(RowSink& rows) const;
  void ReportWarnings(WorkContext& context);
  void DropResults() noexcept;
  void SendKill() const noexcept;
  [[nodiscard]] std::function<void()> CancelSender() const {
    return [this] { SendKill(); };
  }

  MariaTarget target_;
  std::unique_ptr<MariaConnection> connection_;
  WriteDialect dialect_;
  bool lost_ = false;
  bool statusIsOld_ = false;  ///< Of the server: the last answer was an error.
  CancelSwitch cancel_;
  std::optional<CancelSwitch::On> running_;  ///< While a command runs.

  // The command that runs, or ran last.
  bool ended_ = true;  ///< Nothing of it is left at the server.
  TextWalk walk_;
  bool counts_ = false;
  bool keepsFoundRows_ = false;  ///< What it found is asked for by a command to come.
  unsigned warnings_ = 0;        ///< Of its last statement so far.
  unsigned lostWarnings_ = 0;    ///< Of those before.
  MariaResult result_;
  bool hasRow_ = false;  ///< It stands on a row that was not fetched.
  std::vector<MariaForm> forms_;
};

}  // namespace tessel
