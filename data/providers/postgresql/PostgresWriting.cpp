#include "data/changes/WriteDialects.h"
#include "data/providers/postgresql/PostgresQuery.h"
#include "data/providers/postgresql/PostgresSession.h"

namespace tessel {

namespace {

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
