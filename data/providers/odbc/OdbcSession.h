#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "data/providers/Provider.h"
#include "data/providers/TextWalk.h"
#include "data/providers/odbc/OdbcRows.h"
#include "data/providers/odbc/driver/OdbcApi.h"
#include "data/providers/odbc/driver/OdbcProfile.h"

namespace tessel::odbc {

/// Where a session leads.
struct Target {
  ConnectionKeys keys;  ///< As the driver is to get them, but for user and password given beside.
  std::string driver;   ///< The driver's name or library; empty when it is not known.
};

/// A session through an ODBC driver.
class OdbcSession : public ProviderSession {
 public:
  /// `trace` may be null.
  OdbcSession(Target target, std::shared_ptr<const Trace> trace);

  void Open(const Login& login, WorkContext& context) override;
  void Close() noexcept override;
  [[nodiscard]] bool IsAlive() noexcept override { return alive_; }
  [[nodiscard]] Properties ReadProperties() override;

  [[nodiscard]] std::vector<FieldInfo> ExecuteCommand(const std::string& sql,
                                                      WorkContext& context) override;
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) override;
  [[nodiscard]] std::vector<FieldInfo> NextResult(WorkContext& context) override;
  void CloseResult() noexcept override;
  void TidyUp() noexcept override;
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
    return patience_.load();
  }

 private:
  class Loader;

  /// Does `work`. A Failure in it is raised as the Error that it means.
  template <class Work>
  auto Guarded(WorkContext& context, Work work) {
    try {
      return work();
    } catch (const Failure& failure) {
      RaiseFailure(failure, context);
    }
  }
  [[noreturn]] void RaiseFailure(const Failure& failure, WorkContext& context);
  void NoteHealth(const Failure& failure);

  [[nodiscard]] std::unique_ptr<Dbc> Connect(const ConnectionKeys& keys,
                                             WorkContext& context) const;
  void CheckFile() const;
  void RefuseWhatHangs(const std::string& sql) const;

  [[nodiscard]] std::vector<FieldInfo> Run(const std::string& sql, WorkContext& context);
  /// Walks on until a result has columns, counting on the way.
  [[nodiscard]] std::vector<FieldInfo> FindColumns(Outcome outcome, WorkContext& context);
  [[nodiscard]] std::vector<FieldInfo> BeginResult(const std::vector<ResultField>& described);
  [[nodiscard]] bool MoreResults(WorkContext& context);
  [[nodiscard]] std::int64_t Count(Outcome outcome) const;
  void ReportNotices(const Diagnostics& notices, WorkContext& context);
  void FindBase(std::size_t result, std::vector<FieldInfo>& fields);
  [[noreturn]] void RaiseCancelledLate() const;
  [[nodiscard]] StatementResult ReadResult(Statement& statement);
  void ForgetWarnings();
  void ReportWarnings(WorkContext& context);

  const std::string driver_;
  const DriverProfile& profile_;
  const std::shared_ptr<const Trace> trace_;
  ConnectionKeys keys_;  ///< From Open on with user and password; they stay in memory.

  std::unique_ptr<Dbc> dbc_;
  /// At its very beginning a statement is not yet protected by all drivers: short ones are left to
  /// end by themselves.
  CancelSwitch cancel_{
      {.before = CancelSwitch::Milliseconds(5), .between = CancelSwitch::Milliseconds(10)}};
  std::atomic<std::chrono::milliseconds> patience_;  ///< With what runs now.
  bool alive_ = false;
  bool canReadBoundCells_ = false;
  std::optional<WriteDialect> dialect_;  ///< Once it was asked for.

  std::unique_ptr<Statement> statement_;
  std::unique_ptr<Statement> dropped_;  ///< With a result to drop when nobody waits.
  std::unique_ptr<RowReader> reader_;   ///< While there are rows to read.
  Diagnostics lastNotices_;
  std::string sql_;  ///< The last command.
  TextWalk walk_;
  /// Of the fields of its results, where base columns have to be found out.
  std::vector<std::vector<bool>> mayBeWritten_;
  bool wantsWarnings_ = false;  ///< Of the present command.
  bool hasWarnings_ = false;    ///< The database still tells those of an earlier command.
};

}  // namespace tessel::odbc
