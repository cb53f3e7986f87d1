#include <limits>

#include "data/changes/WriteDialects.h"
#include "data/providers/sqlite/SqliteSession.h"

namespace tessel {

namespace {

/// Adds a value to a statement as the storage class that is nearest to it; the column's affinity
/// does the rest.
struct Binder {
  SqliteStatement& statement;
  int parameter;

  void operator()(std::monostate /*null*/) const { statement.BindNull(parameter); }
  void operator()(bool value) const { statement.BindInteger(parameter, value ? 1 : 0); }
  void operator()(std::int64_t value) const { statement.BindInteger(parameter, value); }
  void operator()(std::uint64_t value) const {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value <= most) statement.BindInteger(parameter, static_cast<std::int64_t>(value));
    else statement.BindText(parameter, std::to_string(value));
  }
  void operator()(float value) const { statement.BindReal(parameter, value); }
  void operator()(double value) const { statement.BindReal(parameter, value); }
  void operator()(DecimalView value) const { statement.BindText(parameter, value.digits); }
  void operator()(MomentView value) const { statement.BindText(parameter, value.text); }
  void operator()(std::string_view value) const { statement.BindText(parameter, value); }
  void operator()(BinaryView value) const { statement.BindBlob(parameter, value.bytes); }
};

/// The forms of the cells, as the fields declare them.
std::vector<SqliteForm> FormsOf(const std::vector<const FieldInfo*>& fields) {
  std::vector<SqliteForm> forms;
  for (const FieldInfo* field : fields) {
    FieldInfo unused;
    forms.push_back(ApplyDeclaredType(field->typeName, unused));
  }
  return forms;
}

void AppendRow(const SqliteStatement& statement, const std::vector<SqliteForm>& forms,
               RowSink& rows) {
  for (int column = 0; column < statement.ColumnCount(); ++column) {
    const auto index = static_cast<std::size_t>(column);
    AppendSqliteCell(statement, column, forms[index], rows.Column(index));
  }
  rows.EndRow();
}

}  // namespace

const WriteDialect* SqliteSession::Writing() {
  static const WriteDialect dialect = SqliteDialect();
  return &dialect;
}

StatementResult SqliteSession::RunStatement(const RowStatement& text, Operation& operation) {
  const Cancellable scope(*this, operation);
  try {
    SqliteStatement statement = database_->PrepareOne(text.sql);
    int parameter = 0;
    for (const auto& [value, field] : text.parameters)
      std::visit(Binder{statement, ++parameter}, value);
    const std::vector<SqliteForm> forms = FormsOf(text.columns);
    StatementResult result;
    RowSink rows(forms.size());
    while (statement.Step())
      if (result.rows++ == 0) AppendRow(statement, forms, rows);
    if (forms.empty()) result.rows = database_->Changes();
    result.first = TakeFirstRow(rows);
    return result;
  } catch (const Error& error) {
    throw AsCancelled(error, operation);
  }
}

UserTransaction SqliteSession::Transaction() {
  return database_->InTransaction() ? UserTransaction::Open : UserTransaction::None;
}

void SqliteSession::RunControl(std::string_view sql, const Operation* operation) {
  const Cancellable scope(*this, operation);
  try {
    (void)database_->PrepareOne(sql).Step();
  } catch (const Error& error) {
    throw operation == nullptr ? error : AsCancelled(error, *operation);
  }
}

}  // namespace tessel
