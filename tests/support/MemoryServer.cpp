#include "tests/support/MemoryServer.h"

#include <algorithm>
#include <utility>

#include "contract/base/Ascii.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

/// Empty names stand for null.
Value TextOrNull(const std::string& text) { return text.empty() ? Value() : Value(text); }

/// Whether a row's first values are those that the restrictions ask for; empty ones ask for
/// nothing.
bool Matches(const MemoryRow& row, const std::vector<std::string>& restrictions) {
  for (std::size_t i = 0; i < restrictions.size() && i < row.size(); ++i)
    if (!restrictions[i].empty() && row[i] != Value(restrictions[i])) return false;
  return true;
}

void AppendColumns(const MemoryTable& table, MemoryRows& rows) {
  std::int64_t ordinal = 0;
  for (const FieldInfo& column : table.columns)
    rows.push_back({TextOrNull(table.catalog), TextOrNull(table.schema), table.name, column.name,
                    ++ordinal, column.nullable, static_cast<std::int64_t>(column.type),
                    column.typeName, table.needsSchema});
}

std::vector<FieldInfo> SchemaFields(SchemaRowset schema) {
  if (schema == SchemaRowset::Catalogs) return MemoryFields({"CATALOG_NAME", "DESCRIPTION"});
  if (schema == SchemaRowset::Tables)
    return MemoryFields({"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "TABLE_TYPE", "DESCRIPTION",
                         "NEEDS_SCHEMA"});
  std::vector<FieldInfo> fields =
      MemoryFields({"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "COLUMN_NAME"});
  fields.push_back(MemoryField("ORDINAL_POSITION", DataType::Integer));
  fields.push_back(MemoryField("IS_NULLABLE", DataType::Boolean));
  fields.push_back(MemoryField("DATA_TYPE", DataType::Integer));
  fields.push_back(MemoryField("TYPE_NAME"));
  fields.push_back(MemoryField("NEEDS_SCHEMA", DataType::Boolean));
  return fields;
}

}  // namespace

FieldInfo MemoryField(std::string name, DataType type) {
  FieldInfo field;
  field.name = std::move(name);
  field.type = type;
  field.updatable = true;
  return field;
}

std::vector<FieldInfo> MemoryFields(const std::vector<std::string>& names) {
  std::vector<FieldInfo> fields;
  fields.reserve(names.size());
  for (const std::string& name : names) fields.push_back(MemoryField(name));
  return fields;
}

ErrorInfo MemoryError(std::string description, std::int32_t number) {
  ErrorInfo error;
  error.number = number;
  error.source = "MemoryServer";
  error.description = std::move(description);
  return error;
}

MemoryResult& MemoryResult::Notices(std::vector<ErrorInfo> list) {
  notices = std::move(list);
  return *this;
}

MemoryResult& MemoryResult::FailAtRow(std::size_t row, ErrorInfo error) {
  failAtRow = row;
  failure = std::move(error);
  return *this;
}

MemoryResult& MemoryResult::Block(std::size_t size) {
  block = size;
  return *this;
}

MemoryResult& MemoryResult::UniqueRows(bool unique) {
  uniqueRows = unique;
  return *this;
}

MemoryResult& MemoryResult::WithoutProperties() {
  hasUniqueRowsProperty = false;
  return *this;
}

MemoryResult& MemoryResult::Writable(bool canBeWritten) {
  writable = canBeWritten;
  return *this;
}

MemoryResult& MemoryResult::NewCatalog(std::string name) {
  newCatalog = std::move(name);
  return *this;
}

MemoryResult& MemoryResult::Leaves(UserTransaction state) {
  transaction = state;
  return *this;
}

MemoryResult& MemoryResult::HoldExecuting() {
  holdExecuting = true;
  return *this;
}

MemoryResult& MemoryResult::HoldAtRow(std::size_t row) {
  holdAtRow = row;
  return *this;
}

MemoryServer::MemoryServer() {
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  properties.Set("Provider Name", std::string("MemoryServer"));
  properties.Set("DBMS Name", std::string("Fake"));
  properties.Set("DBMS Version", std::string("1.0"));
  properties.Set("Identifier Quote Character", std::string("\""));
}

MemoryResult& MemoryServer::Answer(const std::string& sql, std::vector<FieldInfo> fields,
                                   MemoryRows rows) {
  MemoryResult result;
  result.fields = std::move(fields);
  *result.rows = std::move(rows);
  return Add(sql, std::move(result));
}

MemoryResult& MemoryServer::AnswerCount(const std::string& sql, std::int64_t recordsAffected) {
  MemoryResult result;
  result.recordsAffected = recordsAffected;
  return Add(sql, std::move(result));
}

MemoryResult& MemoryServer::AnswerNothing(const std::string& sql) { return AnswerCount(sql, -1); }

MemoryResult& MemoryServer::AnswerError(const std::string& sql, ErrorInfo error) {
  MemoryResult result;
  result.failure = std::move(error);
  return Add(sql, std::move(result));
}

MemoryResult& MemoryServer::Add(const std::string& sql, MemoryResult result) {
  std::deque<MemoryResult>& list = answers_[sql].list;
  list.push_back(std::move(result));
  return list.back();
}

const MemoryResult& MemoryServer::TakeAnswer(const std::string& sql) {
  const auto found = answers_.find(sql);
  if (found == answers_.end()) StopTest("The fake server has no answer to:\n" + sql);
  Answers& answers = found->second;
  const std::size_t last = answers.list.size() - 1;
  return answers.list[std::min(answers.next++, last)];
}

MemoryResult MemoryServer::SchemaRows(SchemaRowset schema,
                                      const std::vector<std::string>& restrictions) const {
  const auto failure = schemaFailures.find(schema);
  if (failure != schemaFailures.end()) throw Error(failure->second);
  MemoryResult result;
  result.fields = SchemaFields(schema);
  if (schema == SchemaRowset::Catalogs)
    for (const std::string& catalog : catalogs) result.rows->push_back({catalog, Value()});
  for (const MemoryTable& table : tables) {
    if (schema == SchemaRowset::Columns) AppendColumns(table, *result.rows);
    if (schema == SchemaRowset::Tables)
      result.rows->push_back({TextOrNull(table.catalog), TextOrNull(table.schema), table.name,
                              table.type, Value(), table.needsSchema});
  }
  std::erase_if(*result.rows, [&](const MemoryRow& row) { return !Matches(row, restrictions); });
  return result;
}

std::string MemoryServer::FindCatalog(const std::string& name) const {
  const auto failure = catalogFailures.find(name);
  if (failure != catalogFailures.end()) throw Error(failure->second);
  const bool bracketed =
      takesBrackets && name.size() > 2 && name.front() == '[' && name.back() == ']';
  const std::string bare = bracketed ? name.substr(1, name.size() - 2) : name;
  for (const std::string& catalog : catalogs)
    if (EqualNoCase(catalog, bare)) return catalog;
  throw Error(MemoryError("Unknown database '" + name + "'."));
}

}  // namespace tessel::test
