#include "data/providers/postgresql/PostgresSession.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"
#include "contract/text/Utf8.h"
#include "data/changes/UniqueRows.h"
#include "data/changes/WriteDialects.h"
#include "data/providers/postgresql/PostgresProperties.h"
#include "data/providers/postgresql/PostgresQuery.h"
#include "data/providers/postgresql/PostgresSchema.h"
#include "data/providers/postgresql/PostgresStructure.h"
#include "data/providers/postgresql/PostgresTables.h"
#include "data/providers/postgresql/client/PostgresMessages.h"
#include "data/providers/text/CommandText.h"

namespace tessel {

namespace {

constexpr const char* queryCanceled = "57014";

/// Bytes go as they are, all else as text.
PqParameter ToParameter(const ValueView& value) {
  if (IsNull(value)) return {};
  if (const auto* boolean = std::get_if<bool>(&value)) return {*boolean ? "t" : "f"};
  if (const auto* binary = std::get_if<BinaryView>(&value)) {
    const auto* start = reinterpret_cast<const char*>(binary->bytes.data());
    return {std::string(start, binary->bytes.size()), true};
  }
  PqParameter parameter{ToText(value)};
  if (parameter.value->find('\0') != std::string::npos)
    throw Error(errorNumber::typeMismatch, "PostgreSQL",
                "PostgreSQL cannot hold a text with a zero character in it.");
  return parameter;
}

std::vector<PqParameter> ToParameters(const RowStatement& statement) {
  std::vector<PqParameter> parameters;
  for (const auto& [value, field] : statement.parameters) parameters.push_back(ToParameter(value));
  return parameters;
}

/// What stands between the program and the server may keep to itself what the session was to begin
/// with.
void RequireReadOnly(PqConnection& connection) {
  std::string setting;
  ForEachRow(connection, "show default_transaction_read_only", {},
             [&](const PqResult& row) { setting = TextAt(row, 0); });
  if (setting == "on") return;
  throw Error(errorNumber::database, "PostgreSQL",
              "The connection string asks for Mode=ReadOnly, but the session that the server gave "
              "is not read-only.");
}

void AddRow(const PqResult& row, RowSink& rows) {
  for (int i = 0; i < row.ColumnCount(); ++i) {
    ColumnBuilder& cells = rows.Column(static_cast<std::size_t>(i));
    const PqColumn column = row.Column(i);
    FieldInfo unused;
    const PostgresForm form = ApplyPostgresType(column.type, column.modifier, unused);
    if (row.IsNullAt(i)) cells.AppendNull();
    else AppendPostgresCell(form, row.TextAt(i), cells);
  }
  rows.EndRow();
}

/// Whether a statement of the text leaves something behind in the session of the server.
bool LeavesInSession(const std::string& sql) {
  const bool sets = HasStatement(sql, {"set"}) && !HasWord(sql, {"local", "transaction"});
  return sets || HasStatement(sql, {"reset", "listen", "prepare", "load"}) ||
         HasStatement(sql, "create", {"temp", "temporary"}) ||
         HasStatement(sql, "declare", {"hold"}) ||
         HasWord(sql, {"set_config", "pg_advisory_lock", "pg_advisory_lock_shared",
                       "pg_try_advisory_lock", "pg_try_advisory_lock_shared"});
}

}  // namespace

// --- opening and closing -------------------------------------------------------------------------

void PostgresSession::Open(const Login& login, WorkContext& context) {
  target_.AddLogin(login);
  connection_ = Connect(target_, context);
  pooled_.reset();
}

std::unique_ptr<PqConnection> PostgresSession::Connect(const PostgresTarget& target,
                                                       WorkContext& context) const {
  auto connection = std::make_unique<PqConnection>();
  connection->Open(target.keywords, target.limit, context);
  UseFixedForms(*connection);
  if (target.mode == ConnectionMode::ReadOnly) RequireReadOnly(*connection);
  for (const PqMessage& notice : connection->TakeNotices())
    context.Report(ToErrorInfo(notice, errorNumber::information, {}));
  return connection;
}

void PostgresSession::Close() noexcept {
  CloseResult();
  connection_.reset();
}

Properties PostgresSession::ReadProperties() {
  Properties properties = ReadPostgresProperties(*connection_);
  TellMode(properties, target_.mode, target_.mode == ConnectionMode::ReadOnly);
  return properties;
}

// --- commands ------------------------------------------------------------------------------------

std::vector<FieldInfo> PostgresSession::ExecuteCommand(const std::string& sql,
                                                       WorkContext& context) {
  RefuseNul(sql, "PostgreSQL");
  sql_ = sql;
  columns_.clear();
  walk_ = TextWalk(sql_, SqlDialect::PostgreSQL, context);
  running_.emplace(cancel_, CancelSender());
  connection_->Send(sql_);
  ended_ = false;
  return FindRows(context);
}

std::vector<FieldInfo> PostgresSession::NextResult(WorkContext& context) {
  next_ = PqResult();
  walk_.LeaveRows(EarlierStatements::MayBeUndone, context);
  return FindRows(context);
}

std::vector<FieldInfo> PostgresSession::FindRows(WorkContext& context) {
  while (PqResult piece = NextPiece(context)) {
    if (piece.ColumnCount() > 0) return BeginResult(std::move(piece));
    const PqKind kind = piece.Kind();
    if (kind == PqKind::Empty) continue;
    context.EndStatement(kind == PqKind::Done ? piece.AffectedRows() : -1);
    walk_.Next(WhenDone(piece), context);
  }
  return {};
}

/// What stands before the end of a transaction is no part of the one that the rest of the text is.
EarlierStatements PostgresSession::WhenDone(const PqResult& done) const {
  const std::string tag = done.Tag();
  const bool ends = tag == "COMMIT" || (tag == "ROLLBACK" && !HasWord(walk_.Text(), {"to"}));
  return ends ? EarlierStatements::Stay : EarlierStatements::MayBeUndone;
}

/// The next piece of what the command gives, no error and no COPY; none at its end.
PqResult PostgresSession::NextPiece(WorkContext& context) {
  PqResult result = connection_->Next();
  for (const PqMessage& notice : connection_->TakeNotices())
    context.Report(ToErrorInfo(notice, errorNumber::information, sql_));
  ended_ = !result;
  if (ended_) {
    TellUncertain(context);
    return result;
  }
  switch (result.Kind()) {
    case PqKind::Error: RaiseFailure(result, context);
    case PqKind::CopyIn:
    case PqKind::CopyOut: RefuseCopy(result.Kind(), context);
    default: return result;
  }
}

/// Within a transaction a pooler keeps to one session.
void PostgresSession::TellUncertain(WorkContext& context) {
  if (!IsAlive() || connection_->InTransaction() || connection_->InFailedTransaction()) return;
  if (!LeavesInSession(sql_) || !GoesThroughPooler()) return;
  context.Report(ErrorInfo{
      errorNumber::information,
      0,
      {},
      "PostgreSQL",
      "This connection goes through a pooler. In its transaction mode each transaction may get "
      "another session of the server: what was set, prepared, locked or made for the session may "
      "be missing at the next command, or meet somebody else's. It holds within one transaction: "
      "BEGIN, SET LOCAL, ..., COMMIT.",
      {},
      0});
}

/// A pooler tells another process at the login than the one that works. A balancer is asked for the
/// server that takes writes. False when it cannot be asked.
bool PostgresSession::GoesThroughPooler() try {
  const auto look = [&](const PqResult& row) {
    pooled_ = NumberAt(row, 0) != connection_->ProcessNumber();
  };
  if (!pooled_)
    ForEachRow(*connection_, "/* no load balance */ select pg_catalog.pg_backend_pid()", {}, look);
  return pooled_.value_or(false);
} catch (const Error&) {
  return false;
}

std::vector<FieldInfo> PostgresSession::BeginResult(PqResult first) {
  std::vector<PqColumn>& columns = columns_.emplace_back();
  std::vector<FieldInfo> fields;
  forms_.clear();
  for (int i = 0; i < first.ColumnCount(); ++i) {
    const PqColumn column = first.Column(i);
    FieldInfo& field = fields.emplace_back();
    field.name = column.name;
    forms_.push_back(ApplyPostgresType(column.type, column.modifier, field));
    columns.push_back(column);
  }
  next_ = std::move(first);
  return fields;
}

bool PostgresSession::FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) {
  for (std::size_t i = 0; i < maxRows; ++i) {
    if (context.StopAsked()) return true;
    if (!next_) next_ = NextPiece(context);
    if (next_.Kind() != PqKind::Row) return false;
    AppendRow(rows);
    next_ = PqResult();
  }
  return true;
}

void PostgresSession::AppendRow(RowSink& rows) const {
  for (std::size_t i = 0; i < forms_.size(); ++i) {
    const int column = static_cast<int>(i);
    if (next_.IsNullAt(column)) rows.Column(i).AppendNull();
    else AppendPostgresCell(forms_[i], next_.TextAt(column), rows.Column(i));
  }
  rows.EndRow();
}

/// An error ends the whole text.
void PostgresSession::RaiseFailure(const PqResult& failed, WorkContext& context) {
  const PqMessage message = failed.Message();
  GoToFailure(message, context);
  std::vector<ErrorInfo> errors = {ToErrorInfo(message, errorNumber::database, sql_)};
  (void)DropResults(errors);
  if (context.StopAsked() && errors.front().sqlState == queryCanceled) throw CancelledError();
  context.Raise(std::move(errors));
}

/// The server reads the whole text before it runs any of it: an error in its words may stand in any
/// statement.
void PostgresSession::GoToFailure(const PqMessage& message, WorkContext& context) {
  if (message.position <= 0 || !message.innerQuery.empty()) return;
  const std::size_t byte = ByteOfCharacter(sql_, static_cast<std::size_t>(message.position) - 1);
  walk_.GoTo(byte, context);
  context.FailAt(byte);
}

void PostgresSession::RefuseCopy(PqKind kind, WorkContext& context) {
  if (kind == PqKind::CopyOut) connection_->SendCancel();
  connection_->LeaveCopy(kind);
  std::vector<ErrorInfo> errors;
  std::string text = kind == PqKind::CopyIn ? "COPY FROM STDIN is not possible from here: use "
                                              "INSERT, or COPY from a file of the server."
                                            : "COPY TO STDOUT is not possible from here: use "
                                              "SELECT, or COPY to a file of the server.";
  if (!DropResults(errors)) text += " The rest of the text was run.";
  if (context.StopAsked()) throw CancelledError();
  throw Error(errorNumber::notSupported, "PostgreSQL", text);
}

/// Drops all that is still to come, without waiting for more than the server needs for it. True
/// when errors were among it; they are added to `errors`.
bool PostgresSession::DropResults(std::vector<ErrorInfo>& errors) {
  const std::size_t before = errors.size();
  while (const PqResult result = connection_->Next()) {
    const PqKind kind = result.Kind();
    if (kind == PqKind::Error)
      errors.push_back(ToErrorInfo(result.Message(), errorNumber::database, sql_));
    if (kind == PqKind::CopyIn || kind == PqKind::CopyOut) connection_->LeaveCopy(kind);
  }
  ended_ = true;
  return errors.size() > before;
}

/// What is left the server is asked to give up: to read it all may take forever.
void PostgresSession::CloseResult() noexcept {
  next_ = PqResult();
  if (!ended_) {
    std::vector<ErrorInfo> unused;
    connection_->SendCancel();
    (void)DropResults(unused);
  }
  running_.reset();
}

/// In a transaction that failed nothing can be asked.
void PostgresSession::CompleteFields(std::size_t result, std::vector<FieldInfo>& fields) {
  if (IsAlive() && !connection_->InFailedTransaction())
    CompletePostgresFields(*connection_, columns_.at(result), fields);
}

std::vector<std::size_t> PostgresSession::FindKey(std::size_t result,
                                                  const std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr || !IsAlive() || connection_->InFailedTransaction()) return {};
  const Oid table = columns_.at(result).at(static_cast<std::size_t>(base - fields.data())).table;
  return KeyFields(fields, ReadPostgresKeys(*connection_, table));
}

// --- catalogs and schema -------------------------------------------------------------------------

std::string PostgresSession::CurrentCatalog() {
  return connection_ ? connection_->Database() : std::string();
}

void PostgresSession::SetCatalog(const std::string& name, WorkContext& context) {
  PostgresTarget target = target_;
  target.SetDatabase(std::string(WithoutBrackets(name)));
  connection_ = Connect(target, context);
  pooled_.reset();
  target_ = std::move(target);
}

void PostgresSession::ReadSchema(SchemaRows& rows, WorkContext& context) {
  const CancelSwitch::On scope(cancel_, CancelSender());
  try {
    if (TellsStructure(rows.Kind())) ReadPostgresStructure(*connection_, rows);
    else ReadPostgresSchema(*connection_, rows);
  } catch (const Error& error) {
    if (context.StopAsked() && error.Info().sqlState == queryCanceled) throw CancelledError();
    throw;
  }
}

// --- changing rows -------------------------------------------------------------------------------

const WriteDialect* PostgresSession::Writing() {
  static const WriteDialect dialect = [] {
    WriteDialect made = PostgresDialect();
    made.namesCatalog = true;  // The server refuses any but the one it is.
    made.numbersParameters = true;
    return made;
  }();
  return &dialect;
}

UserTransaction PostgresSession::Transaction() {
  if (connection_->InFailedTransaction()) return UserTransaction::Failed;
  return connection_->InTransaction() ? UserTransaction::Open : UserTransaction::None;
}

StatementResult PostgresSession::RunStatement(const RowStatement& statement, WorkContext& context) {
  const std::vector<PqParameter> parameters = ToParameters(statement);
  const CancelSwitch::On scope(cancel_, CancelSender());
  sql_ = statement.sql;
  connection_->Send(sql_, parameters);
  StatementResult result;
  RowSink rows(statement.columns.size());
  while (const PqResult piece = NextPiece(context)) {
    if (piece.Kind() == PqKind::Done) result.rows = piece.AffectedRows();
    if (piece.Kind() == PqKind::Row && result.rows++ == 0) AddRow(piece, rows);
  }
  result.first = TakeFirstRow(rows);
  return result;
}

/// Cannot be cancelled: whoever cancels a commit would not know what came of it.
void PostgresSession::RunControl(std::string_view sql, const WorkContext* /*context*/) {
  ForEachRow(*connection_, std::string(sql), {}, [](const PqResult&) {});
  (void)connection_->TakeNotices();
}

}  // namespace tessel
