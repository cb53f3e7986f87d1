#include "data/providers/sqlite/SqliteSession.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/text/Ascii.h"
#include "data/changes/UniqueRows.h"
#include "data/changes/WriteDialects.h"
#include "data/providers/sqlite/SqliteFile.h"
#include "data/providers/sqlite/SqliteSchema.h"
#include "data/providers/sqlite/SqliteStructure.h"
#include "data/providers/text/CommandText.h"

namespace tessel {

namespace {

/// Statements that change rows, and so have a count even when it is 0.
bool IsCounted(const SqliteStatement& statement) {
  constexpr std::array words = {"INSERT", "UPDATE", "DELETE", "REPLACE", "WITH"};
  if (statement.IsReadOnly()) return false;
  const std::string text = statement.Text();
  const std::string_view first = FirstWord(text);
  return std::ranges::any_of(words, [&](const char* word) { return EqualNoCase(word, first); });
}

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

// --- opening and closing -------------------------------------------------------------------------

void SqliteSession::Open(const Login& /*login*/, WorkContext& context) {
  const SqliteFile file = SqliteFile::FromKeys(keys_);
  auto database = std::make_unique<SqliteDatabase>(file.name, file.Flags());
  database->SetWatch([this] { return context_ != nullptr && context_->StopAsked(); },
                     file.lockPatience);
  database_ = std::move(database);
  mode_ = file.mode;
  const Cancellable scope(*this, context);
  try {
    file.Check(*database_);
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
}

void SqliteSession::Close() noexcept {
  CloseResult();
  database_.reset();
}

Properties SqliteSession::ReadProperties() {
  Properties properties;
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  properties.Set("Provider Name", std::string("SQLite"));
  properties.Set("DBMS Name", std::string("SQLite"));
  properties.Set("DBMS Version", SqliteDatabase::LibraryVersion());
  properties.Set("Identifier Quote Character", std::string("\""));
  properties.Set("Data Source", keys_.Get("Data Source"));
  properties.Set("File", database_->QueryText("select file from pragma_database_list limit 1"));
  TellMode(properties, mode_, database_->IsReadOnly());
  properties.Set("Encoding", database_->QueryText("pragma encoding"));
  properties.Set("Journal Mode", database_->QueryText("pragma journal_mode"));
  properties.Set("Page Size", database_->QueryText("pragma page_size"));
  return properties;
}

// --- commands ------------------------------------------------------------------------------------

/// The next statement of the text; none at its end. What was done before it stays done, so it is
/// only where there is one that a cancel can still take effect.
SqliteStatement SqliteSession::NextStatement(WorkContext& context) {
  SqliteStatement statement;
  try {
    while (!statement && !rest_.empty()) statement = database_->Prepare(rest_);
  } catch (const Error&) {
    const auto before = static_cast<std::size_t>(rest_.data() - text_.data());
    if (const auto offset = database_->ErrorOffset()) context.FailAt(before + *offset);
    throw;
  }
  if (statement) context.ThrowIfStopped();
  return statement;
}

/// The records that it affected; -1: it is of no kind that counts them.
std::int64_t SqliteSession::RunCounted(SqliteStatement statement) {
  const std::int64_t before = database_->TotalChanges();
  (void)statement.Step();
  return IsCounted(statement) ? database_->TotalChanges() - before : -1;
}

std::vector<FieldInfo> SqliteSession::ExecuteCommand(const std::string& sql, WorkContext& context) {
  RefuseNul(sql, "SQLite");
  text_ = sql;
  rest_ = text_;
  queries_.clear();
  tables_.clear();
  walk_ = TextWalk(text_, SqlDialect::SQLite, context);
  return FindRows(context);
}

std::vector<FieldInfo> SqliteSession::NextResult(WorkContext& context) {
  statement_ = SqliteStatement();
  GoOn(context);
  return FindRows(context);
}

void SqliteSession::GoOn(WorkContext& context) {
  walk_.Next(database_->InTransaction() ? EarlierStatements::MayBeUndone : EarlierStatements::Stay,
             context);
}

/// Runs the statements up to the next one with columns.
std::vector<FieldInfo> SqliteSession::FindRows(WorkContext& context) {
  const Cancellable scope(*this, context);
  try {
    while (SqliteStatement statement = NextStatement(context)) {
      if (statement.ColumnCount() > 0) return BeginResult(std::move(statement));
      context.EndStatement(RunCounted(std::move(statement)));
      GoOn(context);
    }
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
  return {};
}

/// SQLite counts the changes of a statement when that has ended: one with rows is not counted. The
/// first row is gone to before the columns are told: it decides the type of those without one.
std::vector<FieldInfo> SqliteSession::BeginResult(SqliteStatement statement) {
  statement_ = std::move(statement);
  queries_.push_back(statement_.Text());
  tables_.clear();
  forms_.clear();
  hasRow_ = statement_.Step();
  std::vector<FieldInfo> fields;
  for (int column = 0; column < statement_.ColumnCount(); ++column)
    fields.push_back(DescribeColumn(column));
  return fields;
}

FieldInfo SqliteSession::DescribeColumn(int column) {
  FieldInfo field;
  field.name = statement_.ColumnName(column);
  field.baseCatalog = statement_.OriginDatabase(column);
  field.baseTable = statement_.OriginTable(column);
  field.baseColumn = statement_.OriginColumn(column);
  const std::string declared = statement_.DeclaredType(column);
  if (declared.empty() && hasRow_) field.type = TypeOfStorage(statement_.StorageAt(column));
  forms_.push_back(ApplyDeclaredType(declared, field));
  if (field.baseTable.empty()) return field;
  const SqliteTable& table = TableOf(field);
  field.autoIncrement = EqualNoCase(field.baseColumn, table.rowNumberColumn);
  if (const SqliteColumn* facts = table.Find(field.baseColumn)) {
    field.nullable = !facts->notNull && !field.autoIncrement;
    field.updatable = !facts->generated;
  }
  return field;
}

const SqliteTable& SqliteSession::TableOf(const FieldInfo& field) {
  const std::pair key(field.baseCatalog, field.baseTable);
  const auto found = tables_.find(key);
  if (found != tables_.end()) return found->second;
  return tables_.emplace(key, ReadSqliteTable(*database_, key.first, key.second)).first->second;
}

bool SqliteSession::FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) {
  const Cancellable scope(*this, context);
  const int columns = statement_.ColumnCount();
  try {
    for (std::size_t fetched = 0; hasRow_ && fetched < maxRows; ++fetched) {
      if (context.StopAsked()) return true;
      for (int column = 0; column < columns; ++column) {
        const auto index = static_cast<std::size_t>(column);
        AppendSqliteCell(statement_, column, forms_[index], rows.Column(index));
      }
      rows.EndRow();
      hasRow_ = statement_.Step();
    }
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
  return hasRow_;
}

void SqliteSession::CloseResult() noexcept {
  statement_ = SqliteStatement();
  hasRow_ = false;
  text_.clear();
  rest_ = {};
}

/// A column of a union, and the like, is told as one of a table that its row may not come from.
/// What is known of the tables may be from before a statement that changed them.
void SqliteSession::CompleteFields(std::size_t result, std::vector<FieldInfo>& fields) {
  if (queries_.size() > 1) tables_.clear();
  const auto isOfTable = [](const FieldInfo& field) { return !field.baseTable.empty(); };
  if (std::ranges::none_of(fields, isOfTable) || ReadsOneTable(*database_, queries_.at(result)))
    return;
  for (FieldInfo& field : fields) field.updatable = false;
}

std::vector<std::size_t> SqliteSession::FindKey(std::size_t result,
                                                const std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr || !ReadsOneTable(*database_, queries_.at(result))) return {};
  return KeyFields(fields, TableOf(*base).keys);
}

// --- catalogs and schema -------------------------------------------------------------------------

void SqliteSession::SetCatalog(const std::string& /*name*/, WorkContext& /*context*/) {
  throw Error(errorNumber::notSupported, "SQLite",
              "SQLite has no catalogs to change between: name the attached database in the "
              "statement.");
}

void SqliteSession::ReadSchema(SchemaRows& rows, WorkContext& context) {
  const Cancellable scope(*this, context);
  try {
    if (TellsStructure(rows.Kind())) ReadSqliteStructure(*database_, rows);
    else ReadSqliteSchema(*database_, rows, context);
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
}

// --- changing rows -------------------------------------------------------------------------------

const WriteDialect* SqliteSession::Writing() {
  static const WriteDialect dialect = SqliteDialect();
  return &dialect;
}

StatementResult SqliteSession::RunStatement(const RowStatement& text, WorkContext& context) {
  const Cancellable scope(*this, context);
  try {
    SqliteStatement statement = database_->PrepareOne(text.sql);
    int parameter = 0;
    for (const auto& [value, field] : text.parameters)
      std::visit(SqliteBinder{statement, ++parameter}, value);
    const std::vector<SqliteForm> forms = FormsOf(text.columns);
    StatementResult result;
    RowSink rows(forms.size());
    while (statement.Step())
      if (result.rows++ == 0) AppendRow(statement, forms, rows);
    if (forms.empty()) result.rows = database_->Changes();
    result.first = TakeFirstRow(rows);
    return result;
  } catch (const Error& error) {
    throw AsCancelled(error, context);
  }
}

UserTransaction SqliteSession::Transaction() {
  return database_->InTransaction() ? UserTransaction::Open : UserTransaction::None;
}

void SqliteSession::RunControl(std::string_view sql, const WorkContext* context) {
  const Cancellable scope(*this, context);
  try {
    (void)database_->PrepareOne(sql).Step();
  } catch (const Error& error) {
    throw context == nullptr ? error : AsCancelled(error, *context);
  }
}

}  // namespace tessel
