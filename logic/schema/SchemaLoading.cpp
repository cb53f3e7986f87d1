// How the tables and fields of a database come into the schema browser: they are asked for through
// the progress window, by a query or by the provider's rowsets, and taken into the tree in steps
// that can be cancelled.

#include "logic/schema/SchemaLoading.h"

#include <functional>
#include <optional>

#include "contract/base/Error.h"
#include "logic/program/Global.h"
#include "logic/schema/structure/StructureReading.h"

namespace tessel {

namespace {

constexpr const char* tablesQuery =
    "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE IN ('TABLE', 'BASE TABLE') "
    "AND TABLE_SCHEMA <> 'INFORMATION_SCHEMA' ORDER BY TABLE_NAME";
constexpr const char* columnsQuery =
    "SELECT TABLE_NAME, COLUMN_NAME FROM INFORMATION_SCHEMA.COLUMNS WHERE TABLE_SCHEMA <> "
    "'INFORMATION_SCHEMA' ORDER BY TABLE_NAME, ORDINAL_POSITION";

/// Rows that were read, or null when the user cancelled or declined.
using Rows = std::shared_ptr<Recordset>;

/// Thousands of names are taken in many at once: the interface takes longer for its turn than a
/// name takes.
std::int64_t NamesAtOnce(std::int64_t count) {
  if (count > 50'000) return 1024;
  return count > 512 ? 256 : 1;
}

std::size_t RequireField(const Recordset& rows, std::string_view name) {
  const auto field = rows.FindField(name);
  if (!field) RaiseAppError("The rows have no field " + std::string(name) + ".");
  return *field;
}

/// The name in a row; `buffer` takes one that the database does not give as text.
std::string_view NameAt(const Recordset& rows, std::int64_t row, std::size_t field,
                        std::string& buffer) {
  const ValueView value = rows.ValueAt(row, field);
  if (const auto* text = std::get_if<std::string_view>(&value)) return *text;
  return buffer = ToText(value);
}

/// Reads from rows the names under which tables are listed. Where the schema rowsets know better
/// than the standard views, those that SQL does not find alone stand with their schema.
class TableNames {
 public:
  TableNames(const Recordset& rows, const NameQuoting& quoting, bool withSchemas)
      : rows_(rows), quoting_(quoting), name_(RequireField(rows, "TABLE_NAME")) {
    if (!withSchemas) return;
    needsSchema_ = RequireField(rows, "NEEDS_SCHEMA");
    schemas_ = {RequireField(rows, "TABLE_SCHEMA"), RequireField(rows, "TABLE_CATALOG")};
  }

  /// Valid until the next one is read.
  [[nodiscard]] std::string_view At(std::int64_t row) {
    const std::string_view name = NameAt(rows_, row, name_, buffer_);
    if (!needsSchema_) return name;
    return listed_ = quoting_.ListedTable(SchemaAt(row), name);
  }

 private:
  /// Empty where none is needed. A database without schemas has catalogs.
  [[nodiscard]] std::string SchemaAt(std::int64_t row) const {
    const ValueView needs = rows_.ValueAt(row, *needsSchema_);
    const bool* needed = std::get_if<bool>(&needs);
    if (needed == nullptr || !*needed) return {};
    for (const std::size_t field : schemas_)
      if (!IsNull(rows_.ValueAt(row, field))) return ToText(rows_.ValueAt(row, field));
    return {};
  }

  const Recordset& rows_;
  NameQuoting quoting_;
  std::size_t name_;
  std::optional<std::size_t> needsSchema_;
  std::vector<std::size_t> schemas_;
  std::string buffer_;
  std::string listed_;
};

/// One load of one database.
class Loading {
 public:
  Loading(const Help& help, dlgAsync& async, SchemaTree& tree, std::string databaseKey,
          std::shared_ptr<Connection> connection)
      : help_(help),
        async_(async),
        tree_(tree),
        databaseKey_(std::move(databaseKey)),
        connection_(std::move(connection)),
        rowsetsKnowBetter_(connection_->ProviderProperties().Number("Schema By Rowsets", 0) != 0),
        hasViews_(!rowsetsKnowBetter_) {}

  /// Everything was read, nothing cancelled.
  [[nodiscard]] bool Complete() const { return complete_; }

  bool Load() {
    const Rows tables = OpenTables();
    if (tables == nullptr) return false;
    tree_.RefreshDatabase(databaseKey_);
    AddTables(*tables);
    tables->Close();
    const Rows fields = OpenFields();
    if (fields == nullptr) return false;
    AddFields(*fields);
    fields->Close();
    tree_.View().SetExpanded(databaseKey_, true);
    complete_ = !cancelled_;
    if (complete_ && structure_) AddStructure();
    return true;
  }

 private:
  Rows OpenTables() {
    try {
      if (hasViews_) return async_.ReadRows(*connection_, tablesQuery);
    } catch (const Error&) {
      connection_->ClearErrors();
      hasViews_ = false;
    }
    return async_.ReadSchema(*connection_, SchemaRowset::Tables, {"", "", "", "TABLE"});
  }

  Rows OpenFields() {
    try {
      if (hasViews_) return async_.ReadRows(*connection_, columnsQuery);
    } catch (const Error&) {
      connection_->ClearErrors();
      if (!AskForSecondWay()) return nullptr;
    }
    Rows rows = async_.ReadSchema(*connection_, SchemaRowset::Columns, {});
    if (rows == nullptr) return nullptr;
    const std::string order = "TABLE_NAME, ORDINAL_POSITION";
    rows->SetSort(rowsetsKnowBetter_ ? "TABLE_CATALOG, TABLE_SCHEMA, " + order : order);
    structure_.emplace(async_, *connection_, tree_.QuotingOf(databaseKey_),
                       tree_.StructureOf(databaseKey_));
    return rows;
  }

  bool AskForSecondWay() {
    return help_.HelpMsgBoxQuestion(
               "Could not get field names by querying INFORMATION_SCHEMA.COLUMNS. Proceed using "
               "OpenSchema?",
               MessageButtons::YesNo, MessageIcon::Question) == MessageResult::Yes;
  }

  void AddTables(const Recordset& rows) {
    TableNames names(rows, tree_.QuotingOf(databaseKey_), rowsetsKnowBetter_);
    std::vector<std::string> listed;
    const std::int64_t count = rows.RecordCount();
    ForEach("Reading table names...", count,
            [&](std::int64_t row) { listed.emplace_back(names.At(row)); });
    tree_.AddTables(databaseKey_, listed);
  }

  /// The rows come table by table; each table's fields are added together.
  void AddFields(const Recordset& rows) {
    const std::size_t name = RequireField(rows, "COLUMN_NAME");
    TableNames tableNames(rows, tree_.QuotingOf(databaseKey_), rowsetsKnowBetter_);
    TableSchema table;
    bool known = false;
    std::string buffer;
    const std::int64_t count = rows.RecordCount();
    if (structure_) structure_->BeginFields(rows);
    const auto take = [&](std::int64_t row) {
      const std::string_view of = tableNames.At(row);
      if (of != table.name) {
        AddFieldsOf(table);
        table = {std::string(of), {}};
        known = tree_.View().Exists(TableNodeKey(databaseKey_, of));
      }
      if (structure_ && known) structure_->TakeField(rows, row, of);
      table.fields.emplace_back(NameAt(rows, row, name, buffer));
    };
    ForEach("Reading field names...", count, take);
    AddFieldsOf(table);
  }

  void ForEach(const std::string& message, std::int64_t count,
               const std::function<void(std::int64_t)>& step) {
    if (!async_.ForEach(message, connection_.get(), count, step, NamesAtOnce(count)))
      cancelled_ = true;
  }

  /// Fields of what is not among the tables, such as a view, are left out.
  void AddFieldsOf(const TableSchema& table) {
    const std::string key = TableNodeKey(databaseKey_, table.name);
    if (!table.fields.empty() && tree_.View().Exists(key)) tree_.AddFields(key, table.fields);
  }

  /// What is known of the tables beside their fields. A cancel leaves it out, which is no failure.
  void AddStructure() {
    if (!structure_->ReadRest()) return;
    const std::vector<TableFacts*>& tables = tree_.StructureOf(databaseKey_).Tables();
    const auto count = static_cast<std::int64_t>(tables.size());
    const auto addIndexes = [&](std::int64_t table) {
      tree_.AddIndexes(databaseKey_, *tables[static_cast<std::size_t>(table)]);
    };
    async_.ForEach("Reading keys and indexes...", connection_.get(), count, addIndexes,
                   NamesAtOnce(count));
    tree_.AddObjects(databaseKey_);
    tree_.View().RefreshNotes();
  }

  const Help& help_;
  dlgAsync& async_;
  SchemaTree& tree_;
  std::string databaseKey_;
  std::shared_ptr<Connection> connection_;
  std::optional<StructureReading> structure_;  ///< None where only names are told.
  bool rowsetsKnowBetter_;
  bool hasViews_;
  bool cancelled_ = false;
  bool complete_ = false;
};

}  // namespace

bool SchemaLoading::LoadSchemaFromDB(const std::string& databaseKey,
                                     const std::shared_ptr<Connection>& connection) {
  complete_ = false;
  tree_.UseQuoting(databaseKey, *connection);
  try {
    Loading loading(help_, async_, tree_, databaseKey, connection);
    const bool loaded = loading.Load();
    complete_ = loading.Complete();
    return loaded;
  } catch (const Error& error) {
    help_.HelpMsgBoxNotice("Unable to get database schema information: " + error.Description(),
                           MessageButtons::Ok, MessageIcon::Critical);
    return false;
  }
}

}  // namespace tessel
