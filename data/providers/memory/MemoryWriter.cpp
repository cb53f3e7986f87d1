#include "data/providers/memory/MemoryWriter.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

bool IsNullValue(const Value& value) { return std::holds_alternative<std::monostate>(value); }

/// A number larger than all others for each field that generates one.
void GiveNumbers(const MemoryResult& table, MemoryRow& row) {
  for (std::size_t field = 0; field < row.size(); ++field) {
    if (!table.fields[field].autoIncrement || !IsNullValue(row[field])) continue;
    std::int64_t largest = 0;
    for (const MemoryRow& other : *table.rows)
      if (const auto* number = std::get_if<std::int64_t>(&other[field]))
        largest = std::max(largest, *number);
    row[field] = largest + 1;
  }
}

/// Of a row that stands in the place of `changed`, or of a new one.
void RequireConstraints(const MemoryResult& table, const MemoryRow& row, const MemoryRow* changed) {
  for (std::size_t field = 0; field < row.size(); ++field)
    if (!table.fields[field].nullable && IsNullValue(row[field]))
      throw Error(MemoryError("NOT NULL constraint failed: " + table.fields[field].name));
  if (!table.uniqueRows) return;
  for (const MemoryRow& other : *table.rows)
    if (&other != changed && other[0] == row[0])
      throw Error(MemoryError("UNIQUE constraint failed: " + table.fields[0].name));
}

}  // namespace

WriteDialect MemoryDialect() {
  return {.sameOrNull = "{column} is {value}",
          .returnsInserted = true,
          .returnsUpdated = true,
          .begin = "begin"};
}

/// Reads a statement from left to right, and its parameters with it.
class MemoryWriter::Reader {
 public:
  explicit Reader(const RowStatement& statement) : statement_(statement), rest_(statement.sql) {}

  [[nodiscard]] bool Take(std::string_view words) {
    if (!rest_.starts_with(words)) return false;
    rest_.remove_prefix(words.size());
    return true;
  }
  void Require(std::string_view words) {
    if (!Take(words)) Refuse();
  }
  [[nodiscard]] std::string_view Rest() const { return rest_; }
  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
  void RequireEnd() const {
    if (!rest_.empty()) Refuse();
  }
  [[noreturn]] void Refuse() const {
    throw Error(
        MemoryError("The server in memory does not understand the end of this statement, '" +
                    std::string(rest_) + "':\n" + statement_.sql));
  }

  /// A name without quotes ends at a blank.
  [[nodiscard]] std::string Name() {
    if (!Take("\"")) {
      const std::string name(rest_.substr(0, rest_.find(' ')));
      rest_.remove_prefix(name.size());
      return name;
    }
    std::string name;
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      if (rest_.front() == '"' && !rest_.substr(1).starts_with('"')) break;
      if (rest_.front() == '"') rest_.remove_prefix(1);
      name += rest_.front();
    }
    Require("\"");
    return name;
  }
  /// The number of the field of a column of `table` that is named next.
  [[nodiscard]] std::size_t Field(const MemoryResult& table) {
    const std::string name = Name();
    const auto found = std::ranges::find(table.fields, name, &FieldInfo::name);
    if (found == table.fields.end()) Refuse();
    return static_cast<std::size_t>(found - table.fields.begin());
  }
  [[nodiscard]] Value Parameter() {
    Require("?");
    if (next_ == statement_.parameters.size()) Refuse();
    return ToValue(statement_.parameters[next_++].value);
  }

  /// The cells of `values (...)`, or none.
  [[nodiscard]] std::vector<Cell> GivenCells(const MemoryResult& table) {
    std::vector<Cell> cells;
    if (Take(" default values")) return cells;
    Require(" (");
    do cells.push_back({Field(table), Value()});
    while (Take(", "));
    Require(") values (");
    for (Cell& cell : cells) {
      if (&cell != cells.data()) Require(", ");
      cell.value = Parameter();
    }
    Require(")");
    return cells;
  }
  /// Those of `set ...`.
  [[nodiscard]] std::vector<Cell> NewCells(const MemoryResult& table) {
    std::vector<Cell> cells;
    Require(" set ");
    do {
      const std::size_t field = Field(table);
      Require(" = ");
      cells.push_back({field, Parameter()});
    } while (Take(", "));
    return cells;
  }
  /// Those that `where ...` asks for.
  [[nodiscard]] std::vector<Cell> Conditions(const MemoryResult& table) {
    std::vector<Cell> cells;
    Require(" where ");
    do {
      const std::size_t field = Field(table);
      if (Take(" is null")) {
        cells.push_back({field, Value()});
        continue;
      }
      if (!Take(" = ")) Require(" is ");
      cells.push_back({field, Parameter()});
    } while (Take(" and "));
    return cells;
  }
  /// What `returning ...` gives of `row`.
  [[nodiscard]] std::vector<Value> Returned(const MemoryResult& table, const MemoryRow& row) {
    std::vector<Value> values;
    Require(" returning ");
    do values.push_back(row[Field(table)]);
    while (Take(", "));
    RequireEnd();
    return values;
  }

 private:
  const RowStatement& statement_;
  std::string_view rest_;
  std::size_t next_ = 0;
};

StatementResult MemoryWriter::Run(const RowStatement& statement) {
  Reader reader(statement);
  if (reader.Take("insert into ")) return Insert(reader);
  if (reader.Take("update ")) return Update(reader);
  if (reader.Take("delete from ")) return Delete(reader);
  if (reader.Take("create table ")) return Create(reader);
  reader.Refuse();
}

MemoryResult& MemoryWriter::ReadTable(Reader& reader) {
  MemoryResult* table = server_.FindTable(reader.Name());
  if (table == nullptr) reader.Refuse();
  before_.push_back({table->rows, *table->rows});
  return *table;
}

StatementResult MemoryWriter::Insert(Reader& reader) {
  MemoryResult& table = ReadTable(reader);
  MemoryRow row(table.fields.size());
  std::vector<Cell> given = reader.GivenCells(table);
  for (Cell& cell : given) row[cell.field] = std::move(cell.value);
  GiveNumbers(table, row);
  RequireConstraints(table, row, nullptr);
  StatementResult result{.rows = 1, .first = {}};
  if (given.empty() || !reader.AtEnd()) result.first = reader.Returned(table, row);
  table.rows->push_back(std::move(row));
  return result;
}

/// The table is among the server's answers already: what the columns are to hold stands there.
StatementResult MemoryWriter::Create(Reader& reader) {
  const std::string name = reader.Name();
  server_.created.push_back(name + std::string(reader.Rest()));
  return {};
}

StatementResult MemoryWriter::Update(Reader& reader) {
  MemoryResult& table = ReadTable(reader);
  const std::vector<Cell> cells = reader.NewCells(table);
  const std::vector<Cell> conditions = reader.Conditions(table);
  StatementResult result;
  for (MemoryRow& row : *table.rows) {
    if (!Meets(row, conditions)) continue;
    MemoryRow changed = row;
    for (const Cell& cell : cells) changed[cell.field] = cell.value;
    RequireConstraints(table, changed, &row);
    row = std::move(changed);
    if (++result.rows == 1) result.first = reader.Returned(table, row);
  }
  return result;
}

StatementResult MemoryWriter::Delete(Reader& reader) {
  MemoryResult& table = ReadTable(reader);
  const std::vector<Cell> conditions = reader.Conditions(table);
  reader.RequireEnd();
  const auto gone =
      std::erase_if(*table.rows, [&](const MemoryRow& row) { return Meets(row, conditions); });
  return {.rows = static_cast<std::int64_t>(gone), .first = {}};
}

bool MemoryWriter::Meets(const MemoryRow& row, const std::vector<Cell>& conditions) {
  return std::ranges::all_of(conditions,
                             [&](const Cell& cell) { return row[cell.field] == cell.value; });
}

void MemoryWriter::Control(std::string_view sql) {
  if (sql == "rollback" || sql == "rollback to savepoint tessel_change") return Undo();
  const bool begins = sql == "begin" || sql == "savepoint tessel_change";
  if (!begins && sql != "commit" && sql != "release savepoint tessel_change")
    throw Error(MemoryError("The server in memory does not understand: " + std::string(sql)));
  before_.clear();
}

void MemoryWriter::Undo() {
  for (; !before_.empty(); before_.pop_back())
    *before_.back().rows = std::move(before_.back().values);
}

}  // namespace tessel
