// How a plan is asked for: the statement under the database's own word for it, within the bracket
// of a transaction that is taken back where it has to be, and the answer read into one kind of
// tree.

#include "logic/plan/Explain.h"

#include "contract/data/DbmsName.h"
#include "logic/plan/RolledBack.h"

namespace tessel {

namespace {

int Number(const Recordset& rows, std::int64_t row, std::size_t field) {
  const ValueView value = rows.ValueAt(row, field);
  const auto* number = std::get_if<std::int64_t>(&value);
  return number == nullptr ? 0 : static_cast<int>(*number);
}

/// Of a table of several columns, such as SQLite's, the last one has the words.
std::string RawText(const Recordset& rows) {
  std::string text;
  const std::size_t last = rows.Fields().size() - 1;
  for (std::int64_t row = 0; row < rows.RecordCount(); ++row)
    text += (row == 0 ? "" : "\n") + ToText(rows.ValueAt(row, last));
  return text;
}

Plan SqlitePlanOf(const Recordset& rows) {
  std::vector<SqlitePlanRow> told;
  const std::size_t last = rows.Fields().size() - 1;
  for (std::int64_t row = 0; row < rows.RecordCount(); ++row)
    told.push_back({Number(rows, row, 0), Number(rows, row, 1), ToText(rows.ValueAt(row, last))});
  return ReadSqlitePlan(told);
}

Plan PlanOf(const Recordset& rows, const std::string& raw, SqlDialect dialect) {
  if (dialect == SqlDialect::PostgreSQL) return ReadPostgresPlan(raw);
  if (dialect == SqlDialect::MariaDB) return ReadMariaPlan(raw);
  return SqlitePlanOf(rows);
}

}  // namespace

void Explain::Show(frmRecords& window, const std::string& taggedSQL) {
  const std::optional<std::string> sql = window.FillInTags(taggedSQL);
  if (!sql) return;
  help_.TryTo([&] {
    const Connection& connection = *window.TheConnection();
    if ((connection.State() & objectState::open) == 0)
      RaiseAppError("The connection is closed: connect again.");
    ShowStatement(window, StatementToExplain(*sql, DialectOf(DbmsName(connection))));
  });
}

void Explain::ShowStatement(frmRecords& window, const ExplainedStatement& statement) {
  bool measured = false;
  while (true) {
    const std::optional<ShownPlan> shown = Read(window, statement, measured);
    if (!shown) return;
    do {
      if (ShowPlan(global_, frame_, sqlWindow_, *shown) == PlanWish::Nothing) return;
    } while (!MayMeasure(statement));
    measured = true;
  }
}

/// A statement that only reads is run without a question.
bool Explain::MayMeasure(const ExplainedStatement& statement) const {
  if (!statement.writes) return true;
  Message question;
  question.text =
      "To tell real rows and times the statement is run, and what it changes is taken back at "
      "once. "
      "Tables without transactions, counters and what triggers do outside of the database are not "
      "taken back. Run it?";
  question.buttons = MessageButtons::OkCancel;
  question.icon = MessageIcon::Exclamation;
  question.captions = {"&Run", "&Cancel"};
  question.defaultAnswer = MessageResult::Cancel;
  return help_.Ask(question, helpContext::question) == MessageResult::Ok;
}

std::optional<ShownPlan> Explain::Read(frmRecords& window, const ExplainedStatement& statement,
                                       bool measured) {
  Connection& connection = *window.TheConnection();
  const SqlDialect dialect = DialectOf(DbmsName(connection));
  // A mistake in the statement would end the user's own transaction there.
  const bool takenBack = measured || (dialect == SqlDialect::PostgreSQL &&
                                      connection.Transaction().state == UserTransaction::Open);
  const std::shared_ptr<Recordset> rows =
      Run(connection, ExplainCommand(statement.sql, dialect, measured), takenBack);
  if (rows == nullptr || rows->Fields().empty()) return std::nullopt;
  ShownPlan shown;
  shown.raw = RawText(*rows);
  shown.plan = PlanOf(*rows, shown.raw, dialect);
  shown.connection = window.Caption();
  shown.measured = measured;
  shown.canMeasure = CanMeasure(dialect) && !measured;
  return shown;
}

std::shared_ptr<Recordset> Explain::Run(Connection& connection, const std::string& command,
                                        bool takenBack) {
  RolledBack bracket(async_, connection);
  if (takenBack) bracket.Begin();
  try {
    std::shared_ptr<Recordset> rows = async_.ReadRows(connection, command);
    bracket.TakeBack();
    return rows;
  } catch (const Error&) {
    bracket.TakeBack();
    throw;
  }
}

}  // namespace tessel
