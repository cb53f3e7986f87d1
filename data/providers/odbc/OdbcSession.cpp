#include "data/providers/odbc/OdbcSession.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "contract/text/Ascii.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/odbc/OdbcBase.h"
#include "data/providers/odbc/OdbcProperties.h"
#include "data/providers/odbc/OdbcSchema.h"
#include "data/providers/odbc/driver/OdbcErrors.h"
#include "data/providers/odbc/driver/OdbcKeys.h"
#include "data/providers/odbc/driver/OdbcPlainQuery.h"
#include "data/providers/text/CommandText.h"

namespace tessel::odbc {

namespace {

/// Drivers that obey give up a connect then; nothing can cancel it.
constexpr std::chrono::seconds connectTimeout{15};

/// A connect that hangs never comes back. A statement does, when the driver has dropped what it has
/// of the result; dropping a whole large one takes longer still.
constexpr std::chrono::milliseconds connectPatience{150};
constexpr std::chrono::milliseconds executePatience{500};
constexpr std::chrono::milliseconds resultPatience{3000};

/// Drivers may quote the connection string they were given.
void HidePassword(Diagnostics& records, const std::string& password) {
  constexpr std::size_t shortestHidden = 3;
  if (password.size() < shortestHidden) return;
  for (Diagnostic& record : records)
    for (std::size_t at = 0; (at = record.text.find(password, at)) != std::string::npos;)
      record.text.replace(at, password.size(), "***");
}

}  // namespace

OdbcSession::OdbcSession(Target target, std::shared_ptr<const Trace> trace)
    : driver_(target.driver.empty() ? "ODBC" : target.driver),
      profile_(ProfileOf(target.driver)),
      trace_(std::move(trace)),
      keys_(std::move(target.keys)) {}

// --- errors --------------------------------------------------------------------------------------

/// Whatever the driver calls it, what fails after a cancel reached it was cancelled.
void OdbcSession::RaiseFailure(const Failure& failure, WorkContext& context) {
  NoteHealth(failure);
  hasWarnings_ = true;
  const bool cancelled = context.StopAsked() && cancel_.Sent();
  if (cancelled) throw CancelledError();
  context.Raise(ToErrors(failure.Records(), driver_));
}

void OdbcSession::NoteHealth(const Failure& failure) {
  if (!dbc_) return;
  alive_ = alive_ && !dbc_->IsDead().value_or(SaysSessionIsLost(failure.Records()));
}

// --- opening -------------------------------------------------------------------------------------

void OdbcSession::Open(const Login& login, WorkContext& context) {
  AddLogin(keys_, login.user, login.password);
  AddDefaults(keys_, profile_);
  CheckFile();
  dbc_ = Connect(keys_, context);
  alive_ = true;
  patience_ = executePatience;
  const std::uint32_t extensions = dbc_->InfoNumber(SQL_GETDATA_EXTENSIONS).value_or(0);
  constexpr std::uint32_t needed = SQL_GD_BOUND | SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER;
  canReadBoundCells_ = (extensions & needed) == needed;
}

std::unique_ptr<Dbc> OdbcSession::Connect(const ConnectionKeys& keys, WorkContext& context) const {
  try {
    auto dbc = std::make_unique<Dbc>(trace_);
    const Diagnostics notices = dbc->Connect(keys.Compose(), connectTimeout);
    for (ErrorInfo& notice : ToNotices(notices, driver_, profile_))
      context.Report(std::move(notice));
    return dbc;
  } catch (const Failure& failure) {
    Diagnostics records = failure.Records();
    HidePassword(records, PasswordOf(keys));
    context.Raise(ToErrors(records, driver_));
  }
}

/// Some drivers fail without a reason when their file is not there.
void OdbcSession::CheckFile() const {
  if (profile_.fileKey.empty()) return;
  const std::string file = keys_.Get(profile_.fileKey);
  std::error_code unreadable;
  if (std::filesystem::is_regular_file(file, unreadable)) return;
  throw Error(errorNumber::file, driver_, "There is no file '" + file + "'.");
}

void OdbcSession::Close() noexcept {
  CloseResult();
  TidyUp();
  dbc_.reset();
  alive_ = false;
}

Properties OdbcSession::ReadProperties() {
  Properties properties = ReadDriverProperties(*dbc_);
  properties.Set("Catalog Change Ends Session",
                 profile_.catalogChange == DriverProfile::CatalogChange::Reconnect);
  if (!profile_.takesBrackets) properties.Set("Bracket Identifiers", std::int64_t{0});
  return properties;
}

// --- commands ------------------------------------------------------------------------------------

std::vector<FieldInfo> OdbcSession::ExecuteCommand(const std::string& sql, WorkContext& context) {
  RefuseWhatHangs(sql);
  sql_ = sql;
  lastNotices_.clear();
  mayBeWritten_.clear();
  walk_ = TextWalk();
  wantsWarnings_ = !profile_.warningsQuery.empty() && !HasWord(sql, profile_.looksBackWith);
  return Guarded(context, [&] { return Run(sql, context); });
}

std::vector<FieldInfo> OdbcSession::NextResult(WorkContext& context) {
  reader_.reset();
  return Guarded(context, [&] {
    statement_->Unbind();
    walk_.LeaveRows(EarlierStatements::NotKnown, context);
    std::vector<FieldInfo> fields;
    if (MoreResults(context)) {
      context.ThrowIfStopped();
      fields = FindColumns(Outcome::Success, context);
    }
    if (fields.empty()) ReportWarnings(context);
    return fields;
  });
}

void OdbcSession::RefuseWhatHangs(const std::string& sql) const {
  if (profile_.hangsOn.empty() || !HasStatement(sql, profile_.hangsOn, profile_.hangsWith)) return;
  std::string words;
  for (const std::string_view word : profile_.hangsWith)
    words += (words.empty() ? "" : " or ") + AsciiUpper(word);
  throw Error(errorNumber::notSupported, driver_,
              "The ODBC driver of " + std::string(profile_.name) + " hangs in " +
                  AsciiUpper(profile_.hangsOn) + " with " + words + ".");
}

/// The drivers run the whole text in one call. When that fails they do not tell at which statement.
std::vector<FieldInfo> OdbcSession::Run(const std::string& sql, WorkContext& context) {
  Diagnostics notices;
  if (wantsWarnings_ && hasWarnings_) ForgetWarnings();
  statement_ = std::make_unique<Statement>(*dbc_);
  const Outcome outcome = statement_->Execute(sql, cancel_, notices);
  patience_ = resultPatience;
  if (profile_.severalStatements) walk_ = TextWalk(sql, *profile_.severalStatements, context);
  ReportNotices(notices, context);
  std::vector<FieldInfo> fields = FindColumns(outcome, context);
  if (fields.empty()) ReportWarnings(context);
  return fields;
}

/// After a cancel that reached the driver but was late, the command is done and its results are
/// gone; drivers crash when asked for them. A text of comments only has no statement to count.
std::vector<FieldInfo> OdbcSession::FindColumns(Outcome outcome, WorkContext& context) {
  const bool hasStatement = !FirstWord(sql_).empty();
  do {
    if (cancel_.Sent()) return {};
    const std::vector<ResultField> fields = DescribeFields(*statement_, profile_);
    if (!fields.empty()) return BeginResult(fields);
    if (hasStatement) context.EndStatement(Count(outcome));
    walk_.Next(EarlierStatements::NotKnown, context);
    outcome = Outcome::Success;
  } while (MoreResults(context));
  return {};
}

std::vector<FieldInfo> OdbcSession::BeginResult(const std::vector<ResultField>& described) {
  std::vector<bool>& mayBeWritten = mayBeWritten_.emplace_back();
  std::vector<FieldInfo> fields;
  for (const ResultField& field : described) {
    fields.push_back(field.info);
    mayBeWritten.push_back(field.mayBeWritten);
  }
  reader_ = std::make_unique<RowReader>(*statement_, described, canReadBoundCells_);
  return fields;
}

/// The count of a result without columns, -1 when it has none.
std::int64_t OdbcSession::Count(Outcome outcome) const {
  const std::int64_t count = statement_->RowCount();
  const bool isCount = count > 0 || outcome == Outcome::NoData || !profile_.zeroIsNoCount;
  return isCount ? count : -1;
}

bool OdbcSession::MoreResults(WorkContext& context) {
  Diagnostics notices;
  const bool more = statement_->MoreResults(cancel_, notices);
  ReportNotices(notices, context);
  return more;
}

/// A driver may repeat the notices of a text with each of its results.
void OdbcSession::ReportNotices(const Diagnostics& notices, WorkContext& context) {
  if (notices == lastNotices_) return;
  lastNotices_ = notices;
  for (ErrorInfo& notice : ToNotices(notices, driver_, profile_)) context.Report(std::move(notice));
}

void OdbcSession::ForgetWarnings() {
  Diagnostics unused;
  Statement(*dbc_).Execute(std::string(profile_.warningsReset), cancel_, unused);
  hasWarnings_ = false;
}

/// The command itself is done: what goes wrong here does not make it a failure.
void OdbcSession::ReportWarnings(WorkContext& context) try {
  if (!std::exchange(wantsWarnings_, false) || context.StopAsked()) return;
  Diagnostics unused;
  Statement query(*dbc_);
  query.Execute(std::string(profile_.warningsQuery), cancel_, unused);
  if (cancel_.Sent()) return;
  ForEachRow(query, 3, [&](const TextRow& row) {
    ErrorInfo warning;
    warning.number = errorNumber::information;
    warning.nativeError = static_cast<std::int32_t>(ToNumber(row[1], 0));
    warning.source = driver_;
    warning.description = row[0].value_or("") + ": " + row[2].value_or("");
    context.Report(std::move(warning));
    hasWarnings_ = true;
  });
} catch (const Failure& failure) {
  NoteHealth(failure);
}

bool OdbcSession::FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) {
  return Guarded(context, [&] {
    for (std::size_t i = 0; i < maxRows && !context.StopAsked(); ++i)
      if (!reader_->ReadRow(rows)) return false;
    return true;
  });
}

void OdbcSession::CloseResult() noexcept {
  reader_.reset();
  if (profile_.isSlowToDropResults) dropped_ = std::move(statement_);
  statement_.reset();
  if (!dropped_) patience_ = executePatience;
}

void OdbcSession::TidyUp() noexcept {
  if (!dropped_) return;
  dropped_.reset();
  patience_ = executePatience;
}

void OdbcSession::FindBase(std::size_t result, std::vector<FieldInfo>& fields) {
  if (const WriteDialect* dialect = Writing())
    FindBaseColumns(*dbc_, cancel_, *dialect, sql_, fields);
  for (std::size_t i = 0; i < fields.size(); ++i)
    fields[i].updatable = !fields[i].baseTable.empty() && mayBeWritten_.at(result)[i];
}

void OdbcSession::CompleteFields(std::size_t result, std::vector<FieldInfo>& fields) {
  if (!profile_.tellsBaseColumns) return FindBase(result, fields);
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr) return;
  if (profile_.aliasHidesColumn && !NamesPlainColumns(sql_, base->baseTable)) {
    for (FieldInfo& field : fields) field.updatable = false;
    return;
  }
  FindReadOnlyColumns(*dbc_, profile_, cancel_, fields);
}

std::vector<std::size_t> OdbcSession::FindKey(std::size_t /*result*/,
                                              const std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr) return {};
  if (profile_.aliasHidesColumn && !NamesPlainColumns(sql_, base->baseTable)) return {};
  return FindUniqueKey(*dbc_, profile_, cancel_, fields);
}

// --- catalogs and schema -------------------------------------------------------------------------

std::string OdbcSession::CurrentCatalog() {
  if (!alive_) return {};
  try {
    const std::string catalog = dbc_->CurrentCatalog();
    return catalog == profile_.noCatalog ? std::string() : catalog;
  } catch (const Failure&) {
    return {};
  }
}

void OdbcSession::SetCatalog(const std::string& name, WorkContext& context) {
  using Change = DriverProfile::CatalogChange;
  const std::string catalog(WithoutBrackets(name));
  if (profile_.catalogChange == Change::None)
    throw Error(errorNumber::notSupported, driver_,
                std::string(profile_.name) + " has no catalogs to change between.");
  if (profile_.catalogChange == Change::Attribute)
    return Guarded(context, [&] { dbc_->SetCurrentCatalog(catalog); });
  ConnectionKeys keys = keys_;
  keys.Set(profile_.catalogKey, catalog);
  dbc_ = Connect(keys, context);
  keys_ = std::move(keys);
}

void OdbcSession::ReadSchema(SchemaRows& rows, WorkContext& context) {
  Guarded(context, [&] { ReadSchemaRows(*dbc_, profile_, cancel_, rows); });
}

}  // namespace tessel::odbc
