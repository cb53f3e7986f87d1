#include "data/providers/postgresql/PostgresSession.h"

#include <algorithm>
#include <utility>

#include "contract/base/Ascii.h"
#include "data/changes/UniqueRows.h"
#include "data/changes/WriteDialects.h"
#include "data/providers/CommandText.h"
#include "data/providers/postgresql/PostgresMessages.h"
#include "data/providers/postgresql/PostgresProperties.h"
#include "data/providers/postgresql/PostgresQuery.h"
#include "data/providers/postgresql/PostgresSchema.h"
#include "data/providers/postgresql/PostgresTables.h"

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

}  // namespace

// --- opening and closing -------------------------------------------------------------------------

void PostgresSession::Open(const Login& login, Operation& operation) {
  target_.AddLogin(login);
  connection_ = Connect(target_, operation);
}

std::unique_ptr<PqConnection> PostgresSession::Connect(const PostgresTarget& target,
                                                       Operation& operation) const {
  auto connection = std::make_unique<PqConnection>();
  connection->Open(target.keywords, target.limit, operation);
  UseFixedForms(*connection);
  for (const PqMessage& notice : connection->TakeNotices())
    operation.Report(ToErrorInfo(notice, errorNumber::information, {}));
  return connection;
}

void PostgresSession::Close() noexcept {
  CloseResult();
  connection_.reset();
}

Properties PostgresSession::ReadProperties() { return ReadPostgresProperties(*connection_); }

// --- commands ------------------------------------------------------------------------------------

ExecuteResult PostgresSession::ExecuteCommand(const std::string& sql, Operation& operation) {
  RefuseNul(sql, "PostgreSQL");
  sql_ = sql;
  affected_ = -1;
  cancel_.TurnOn();
  connection_->Send(sql_);
  ended_ = false;
  while (PqResult result = NextResult(operation)) {
    if (result.ColumnCount() > 0) return BeginResult(std::move(result));
    Count(result);
  }
  return {.fields = {}, .recordsAffected = affected_};
}

/// The next piece of what the command gives, no error and no COPY; none at its end.
PqResult PostgresSession::NextResult(Operation& operation) {
  PqResult result = connection_->Next();
  for (const PqMessage& notice : connection_->TakeNotices())
    operation.Report(ToErrorInfo(notice, errorNumber::information, sql_));
  ended_ = !result;
  if (ended_) return result;
  switch (result.Kind()) {
    case PqKind::Error: RaiseFailure(result, operation);
    case PqKind::CopyIn:
    case PqKind::CopyOut: RefuseCopy(result.Kind(), operation);
    default: return result;
  }
}

void PostgresSession::Count(const PqResult& result) {
  const std::int64_t count = result.Kind() == PqKind::Done ? result.AffectedRows() : -1;
  if (count >= 0) affected_ = std::max<std::int64_t>(affected_, 0) + count;
}

ExecuteResult PostgresSession::BeginResult(PqResult first) {
  ExecuteResult result{.fields = {}, .recordsAffected = affected_};
  columns_.clear();
  forms_.clear();
  for (int i = 0; i < first.ColumnCount(); ++i) {
    const PqColumn& column = columns_.emplace_back(first.Column(i));
    FieldInfo& field = result.fields.emplace_back();
    field.name = column.name;
    forms_.push_back(ApplyPostgresType(column.type, column.modifier, field));
  }
  next_ = std::move(first);
  return result;
}

bool PostgresSession::FetchRows(RowSink& rows, std::size_t maxRows, Operation& operation) {
  for (std::size_t i = 0; i < maxRows; ++i) {
    if (operation.StopAsked()) return true;
    if (!next_) next_ = NextResult(operation);
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

void PostgresSession::DrainResults(Operation& operation) {
  next_ = PqResult();
  while (NextResult(operation)) operation.ThrowIfStopped();
}

/// An error ends the whole text.
void PostgresSession::RaiseFailure(const PqResult& failed, Operation& operation) {
  std::vector<ErrorInfo> errors = {ToErrorInfo(failed.Message(), errorNumber::database, sql_)};
  (void)DropResults(errors);
  if (operation.StopAsked() && errors.front().sqlState == queryCanceled) throw CancelledError();
  operation.Raise(std::move(errors));
}

void PostgresSession::RefuseCopy(PqKind kind, Operation& operation) {
  if (kind == PqKind::CopyOut) connection_->SendCancel();
  connection_->LeaveCopy(kind);
  std::vector<ErrorInfo> errors;
  std::string text = kind == PqKind::CopyIn ? "COPY FROM STDIN is not possible from here: use "
                                              "INSERT, or COPY from a file of the server."
                                            : "COPY TO STDOUT is not possible from here: use "
                                              "SELECT, or COPY to a file of the server.";
  if (!DropResults(errors)) text += " The rest of the text was run.";
  if (operation.StopAsked()) throw CancelledError();
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
  cancel_.TurnOff();
}

/// In a transaction that failed nothing can be asked.
void PostgresSession::CompleteFields(std::vector<FieldInfo>& fields) {
  if (IsAlive() && !connection_->InFailedTransaction())
    CompletePostgresFields(*connection_, columns_, fields);
}

std::vector<std::size_t> PostgresSession::FindKey(const std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr || !IsAlive() || connection_->InFailedTransaction()) return {};
  const Oid table = columns_[static_cast<std::size_t>(base - fields.data())].table;
  return KeyFields(fields, ReadPostgresKeys(*connection_, table));
}

// --- catalogs and schema -------------------------------------------------------------------------

std::string PostgresSession::CurrentCatalog() {
  return connection_ ? connection_->Database() : std::string();
}

void PostgresSession::SetCatalog(const std::string& name, Operation& operation) {
  PostgresTarget target = target_;
  target.SetDatabase(std::string(WithoutBrackets(name)));
  connection_ = Connect(target, operation);
  target_ = std::move(target);
}

void PostgresSession::ReadSchema(SchemaRows& rows, Operation& operation) {
  cancel_.TurnOn();
  try {
    ReadPostgresSchema(*connection_, rows);
  } catch (const Error& error) {
    cancel_.TurnOff();
    if (operation.StopAsked() && error.Info().sqlState == queryCanceled) throw CancelledError();
    throw;
  }
  cancel_.TurnOff();
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

StatementResult PostgresSession::RunStatement(const RowStatement& statement, Operation& operation) {
  const std::vector<PqParameter> parameters = ToParameters(statement);
  const CancelSwitch::On scope(cancel_);
  sql_ = statement.sql;
  connection_->Send(sql_, parameters);
  StatementResult result;
  RowSink rows(statement.columns.size());
  while (const PqResult piece = NextResult(operation)) {
    if (piece.Kind() == PqKind::Done) result.rows = piece.AffectedRows();
    if (piece.Kind() == PqKind::Row && result.rows++ == 0) AddRow(piece, rows);
  }
  result.first = TakeFirstRow(rows);
  return result;
}

/// Cannot be cancelled: whoever cancels a commit would not know what came of it.
void PostgresSession::RunControl(std::string_view sql, const Operation* /*operation*/) {
  ForEachRow(*connection_, std::string(sql), {}, [](const PqResult&) {});
  (void)connection_->TakeNotices();
}

}  // namespace tessel
