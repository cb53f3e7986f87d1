#include <utility>

#include "data/changes/WriteDialects.h"
#include "data/providers/mariadb/MariaSession.h"

namespace tessel {

namespace {

void AddRow(MariaStatement& statement, const std::vector<MariaForm>& forms, RowSink& rows) {
  for (unsigned i = 0; i < forms.size(); ++i) {
    const std::optional<std::string> cell = statement.CellAt(i);
    if (cell) AppendMariaCell(forms[i], *cell, rows.Column(i));
    else rows.Column(i).AppendNull();
  }
  rows.EndRow();
}

StatementResult ReadRows(MariaStatement& statement) {
  std::vector<MariaForm> forms;
  for (const MariaColumn& column : statement.Columns())
    forms.push_back(DescribeMariaColumn(column).form);
  StatementResult result;
  RowSink rows(forms.size());
  while (statement.Fetch())
    if (result.rows++ == 0) AddRow(statement, forms, rows);
  result.first = TakeFirstRow(rows);
  return result;
}

}  // namespace

void MariaSession::ChooseDialect() {
  dialect_ =
      MariaDialect(connection_->IsMariaDb() ? "MariaDB" : "MySQL", connection_->ServerVersion());
}

/// An error says nothing of the transaction, and one of a deadlock ends it: then the server is
/// asked by a statement that does nothing.
UserTransaction MariaSession::Transaction() {
  if (std::exchange(statusIsOld_, false) && connection_->InTransaction())
    RunControl("do 0", nullptr);
  if (connection_->InTransaction()) return UserTransaction::Open;
  return connection_->CommitsByItself() ? UserTransaction::None : UserTransaction::Waiting;
}

StatementResult MariaSession::RunStatement(const RowStatement& text, WorkContext& context) {
  const CancelSwitch::On scope(cancel_, CancelSender());
  return Guarded(context, [&] {
    std::vector<ValueView> parameters;
    for (const auto& [value, field] : text.parameters) parameters.push_back(value);
    MariaStatement statement = connection_->Prepare(text.sql);
    statement.Run(parameters);
    if (statement.ColumnCount() > 0) return ReadRows(statement);
    return StatementResult{statement.AffectedRows(), {}};
  });
}

/// Cannot be cancelled: whoever cancels a commit would not know what came of it.
void MariaSession::RunControl(std::string_view sql, const WorkContext* /*context*/) try {
  connection_->Run(std::string(sql));
} catch (const Error& error) {
  lost_ = lost_ || SaysSessionIsLost(error.Info());
  throw;
}

}  // namespace tessel
