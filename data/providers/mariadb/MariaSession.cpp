#include "data/providers/mariadb/MariaSession.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "contract/text/Ascii.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/mariadb/MariaSchema.h"
#include "data/providers/mariadb/MariaTables.h"
#include "data/providers/text/CommandText.h"
#include "data/providers/text/QuotedPlace.h"

namespace tessel {

namespace {

constexpr const char* source = "MariaDB";
constexpr std::chrono::seconds killPatience{2};
constexpr std::int32_t syntaxError = 1064;

/// How statements begin that change rows, and so have a count even when it is 0. The server gives
/// others counts too, such as the creation of a database.
bool CountsRows(const std::string& sql) {
  return HasStatement(sql,
                      {"insert", "update", "delete", "replace", "load", "with", "call", "execute"});
}

/// Of names without quotes, as ODBC counts the ways.
constexpr std::int64_t keepsCase = 4;

ErrorInfo Warning(std::string text) {
  ErrorInfo warning;
  warning.number = errorNumber::information;
  warning.source = source;
  warning.description = std::move(text);
  return warning;
}

}  // namespace

// --- errors --------------------------------------------------------------------------------------

/// An error ends the whole text.
void MariaSession::RaiseFailure(const Error& error, WorkContext& context) {
  result_ = MariaResult();
  ended_ = true;
  statusIsOld_ = true;
  lost_ = lost_ || SaysSessionIsLost(error.Info());
  if (context.StopAsked() && SaysInterrupted(error.Info())) throw CancelledError();
  const auto byte = QuotedPlace(error.Description(), walk_.Text());
  if (byte && error.Info().nativeError == syntaxError)
    context.FailAt(context.Statement().begin + *byte);
  throw error;
}

void MariaSession::SendKill() const noexcept {
  try {
    MariaLogin login = target_.login;
    login.database.clear();
    const WorkContext unstopped;
    MariaConnection killer;
    killer.SetPatience(killPatience);
    killer.Open(login, killPatience, unstopped);
    killer.Run("kill query " + std::to_string(connection_->Number()));
  } catch (const std::exception&) {
    return;  // It will be asked for again.
  }
}

// --- opening and closing -------------------------------------------------------------------------

void MariaSession::Open(const Login& login, WorkContext& context) {
  target_.AddLogin(login);
  connection_ = std::make_unique<MariaConnection>();
  connection_->Open(target_.login, target_.limit, context);
  // The client library goes on in the clear when the server has no TLS, whatever was demanded.
  if (target_.login.useSsl && connection_->Cipher().empty()) {
    connection_.reset();
    throw Error(errorNumber::database, std::string(source),
                "SSL is required by the connection string, but the server does not offer it.");
  }
  if (target_.mode == ConnectionMode::ReadOnly)
    connection_->Run("set session transaction read only");
  ChooseDialect();
}

void MariaSession::Close() noexcept {
  CloseResult();
  connection_.reset();
}

Properties MariaSession::ReadProperties() {
  Properties properties;
  properties.Set("Provider Name", std::string(source));
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  properties.Set("DBMS Name", std::string(connection_->IsMariaDb() ? "MariaDB" : "MySQL"));
  properties.Set("DBMS Version", connection_->ServerVersion());
  properties.Set("Driver Name", std::string("libmariadb"));
  properties.Set("Driver Version", MariaConnection::LibraryVersion());
  properties.Set("Identifier Quote Character", std::string("`"));
  properties.Set("Bracket Identifiers", std::int64_t{0});
  properties.Set("Identifier Case Sensitivity", keepsCase);
  properties.Set("Schema By Rowsets", std::int64_t{1});
  properties.Set("Current Catalog", connection_->Database());
  properties.Set("Server Name", target_.login.host);
  properties.Set("Connection", connection_->HostInfo());
  properties.Set("User Name", target_.login.user);
  properties.Set("Cipher", connection_->Cipher());
  properties.Set("Encrypted", !connection_->Cipher().empty());
  properties.Set("Character Set", connection_->CharacterSet());
  properties.Set("Catalog Term", std::string("database"));
  properties.Set("Schema Term", std::string());
  properties.Set("Table Term", std::string("table"));
  properties.Set("Procedure Term", std::string("stored procedure"));
  properties.Set("Catalog Name Separator", std::string("."));
  properties.Set("Multiple Results", true);
  TellMode(properties, target_.mode, target_.mode == ConnectionMode::ReadOnly);
  properties.Set("Maximum Identifier Length", std::int64_t{64});
  return properties;
}

// --- commands ------------------------------------------------------------------------------------

std::vector<FieldInfo> MariaSession::ExecuteCommand(const std::string& sql, WorkContext& context) {
  walk_ = TextWalk(sql, SqlDialect::MariaDB, context);
  counts_ = CountsRows(sql);
  keepsFoundRows_ = HasWord(sql, {"sql_calc_found_rows"});
  warnings_ = lostWarnings_ = 0;
  ended_ = false;
  running_.emplace(cancel_, CancelSender());
  std::vector<FieldInfo> fields = Guarded(context, [&] {
    ended_ = !RunText(sql);
    return ended_ ? std::vector<FieldInfo>() : FindRows(context);
  });
  if (ended_) ReportWarnings(context);
  return fields;
}

std::vector<FieldInfo> MariaSession::NextResult(WorkContext& context) {
  std::vector<FieldInfo> fields = Guarded(context, [&] {
    result_ = MariaResult();
    CountWarnings();
    walk_.LeaveRows(WhenDone(), context);
    ended_ = !NextStatement();
    return ended_ ? std::vector<FieldInfo>() : FindRows(context);
  });
  if (ended_) ReportWarnings(context);
  return fields;
}

/// False when there is no statement in it.
bool MariaSession::RunText(const std::string& sql) try {
  connection_->Run(sql);
  return true;
} catch (const Error& error) {
  if (SaysEmpty(error.Info())) return false;
  throw;
}

bool MariaSession::NextStatement() try {
  return connection_->NextResult();
} catch (const Error& error) {
  if (SaysEmpty(error.Info())) return false;
  throw;
}

/// Goes on to the next statement with columns.
std::vector<FieldInfo> MariaSession::FindRows(WorkContext& context) {
  do {
    result_ = connection_->Result();
    if (result_) return BeginResult();
    context.EndStatement(counts_ ? connection_->AffectedRows() : -1);
    CountWarnings();
    walk_.Next(WhenDone(), context);
  } while (NextStatement());
  ended_ = true;
  return {};
}

EarlierStatements MariaSession::WhenDone() const {
  return connection_->InTransaction() ? EarlierStatements::MayBeUndone : EarlierStatements::Stay;
}

/// Goes to the first row before it tells the columns: these come from the server before the
/// statement has done anything.
std::vector<FieldInfo> MariaSession::BeginResult() {
  std::vector<FieldInfo> fields;
  forms_.clear();
  for (unsigned i = 0; i < result_.ColumnCount(); ++i) {
    MariaField field = DescribeMariaColumn(result_.Column(i));
    forms_.push_back(field.form);
    fields.push_back(std::move(field.info));
  }
  hasRow_ = result_.Fetch();
  return fields;
}

void MariaSession::CountWarnings() {
  lostWarnings_ += warnings_;
  warnings_ = connection_->WarningCount();
}

bool MariaSession::FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) {
  return Guarded(context, [&] {
    for (std::size_t i = 0; hasRow_ && i < maxRows; ++i) {
      if (context.StopAsked()) return true;
      AppendRow(rows);
      hasRow_ = result_.Fetch();
    }
    return hasRow_;
  });
}

void MariaSession::AppendRow(RowSink& rows) const {
  for (std::size_t i = 0; i < forms_.size(); ++i) {
    const auto column = static_cast<unsigned>(i);
    if (result_.IsNullAt(column)) rows.Column(i).AppendNull();
    else AppendMariaCell(forms_[i], result_.TextAt(column), rows.Column(i));
  }
  rows.EndRow();
}

/// The server keeps those of the last statement only. The command itself is done: what goes wrong
/// here does not make it a failure.
void MariaSession::ReportWarnings(WorkContext& context) try {
  if (lostWarnings_ > 0)
    context.Report(Warning("Warnings of statements before the last one, which the server does "
                           "not keep: " +
                           std::to_string(lostWarnings_)));
  if (warnings_ == 0 || context.StopAsked()) return;
  connection_->Run("show warnings");
  MariaResult rows = connection_->Result();
  while (rows.Fetch()) {
    ErrorInfo warning = Warning(std::string(rows.TextAt(0)) + ": " + std::string(rows.TextAt(2)));
    const std::string_view code = rows.TextAt(1);
    std::from_chars(code.data(), code.data() + code.size(), warning.nativeError);
    context.Report(std::move(warning));
  }
} catch (const Error& error) {
  lost_ = lost_ || SaysSessionIsLost(error.Info());
}

/// The server is asked to give up first: to read it all may take forever.
void MariaSession::DropResults() noexcept try {
  SendKill();
  result_ = MariaResult();
  while (NextStatement()) (void)connection_->Result();
  ended_ = true;
} catch (const Error& error) {
  ended_ = true;
  lost_ = lost_ || SaysSessionIsLost(error.Info());
}

void MariaSession::CloseResult() noexcept {
  if (!ended_) DropResults();
  hasRow_ = false;
  running_.reset();
}

/// The alias of a query is told like a table: where there is no such table, nothing can be written.
void MariaSession::CompleteFields(std::size_t /*result*/, std::vector<FieldInfo>& fields) {
  if (keepsFoundRows_ || !IsAlive()) return;
  CompleteMariaFields(*connection_, fields);
}

std::vector<std::size_t> MariaSession::FindKey(std::size_t /*result*/,
                                               const std::vector<FieldInfo>& fields) try {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr || keepsFoundRows_ || !IsAlive()) return {};
  return KeyFields(fields, ReadMariaKeys(*connection_, *base));
} catch (const Error&) {
  return {};  // The alias of a query is told like a table.
}

// --- catalogs and schema -------------------------------------------------------------------------

std::string MariaSession::CurrentCatalog() {
  return connection_ ? connection_->Database() : std::string();
}

void MariaSession::SetCatalog(const std::string& name, WorkContext& context) {
  Guarded(context, [&] { connection_->SelectDatabase(std::string(WithoutBrackets(name))); });
}

void MariaSession::ReadSchema(SchemaRows& rows, WorkContext& context) {
  const CancelSwitch::On scope(cancel_, CancelSender());
  Guarded(context, [&] { ReadMariaSchema(*connection_, rows); });
}

}  // namespace tessel
