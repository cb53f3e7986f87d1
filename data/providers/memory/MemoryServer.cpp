#include "data/providers/memory/MemoryServer.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// Empty names stand for null.
OptionalText TextOrNull(const std::string& text) {
  return text.empty() ? OptionalText() : OptionalText(text);
}

void AddTable(SchemaRows& rows, const MemoryTable& table) {
  rows.AddTable({.catalog = TextOrNull(table.catalog),
                 .schema = TextOrNull(table.schema),
                 .name = table.name,
                 .type = table.type,
                 .description = {},
                 .needsSchema = table.needsSchema});
}

void AddColumns(SchemaRows& rows, const MemoryTable& table) {
  std::int64_t ordinal = 0;
  for (const FieldInfo& column : table.columns)
    rows.AddColumn({.catalog = TextOrNull(table.catalog),
                    .schema = TextOrNull(table.schema),
                    .table = table.name,
                    .name = column.name,
                    .ordinal = ++ordinal,
                    .nullable = column.nullable,
                    .type = column.type,
                    .typeName = column.typeName,
                    .needsSchema = table.needsSchema});
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

MemoryResult& MemoryResult::FailedAt(std::size_t byte) {
  failedAt = byte;
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

MemoryResult& MemoryResult::Then(MemoryResult next) {
  next.table = table + "_" + std::to_string(then.size() + 2);
  then.push_back(std::move(next));
  return *this;
}

MemoryResult MemoryResult::Rows(std::vector<FieldInfo> fields, MemoryRows rows) {
  MemoryResult result;
  result.fields = std::move(fields);
  *result.rows = std::move(rows);
  return result;
}

MemoryResult MemoryResult::Count(std::int64_t recordsAffected) {
  MemoryResult result;
  result.recordsAffected = recordsAffected;
  return result;
}

MemoryResult MemoryResult::Failure(ErrorInfo error) {
  MemoryResult result;
  result.failure = std::move(error);
  return result;
}

std::vector<FieldInfo> MemoryResult::DescribedFields() const {
  std::vector<FieldInfo> described = fields;
  if (!writable) return described;
  for (FieldInfo& field : described) {
    field.baseTable = table;
    field.baseColumn = field.name;
  }
  return described;
}

MemoryServer::MemoryServer() {
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  properties.Set("Provider Name", std::string("MemoryServer"));
  properties.Set("DBMS Name", std::string("Memory"));
  properties.Set("DBMS Version", std::string("1.0"));
  properties.Set("Identifier Quote Character", std::string("\""));
}

MemoryResult& MemoryServer::Answer(const std::string& sql, std::vector<FieldInfo> fields,
                                   MemoryRows rows) {
  return Add(sql, MemoryResult::Rows(std::move(fields), std::move(rows)));
}

MemoryResult& MemoryServer::AnswerCount(const std::string& sql, std::int64_t recordsAffected) {
  return Add(sql, MemoryResult::Count(recordsAffected));
}

MemoryResult& MemoryServer::AnswerNothing(const std::string& sql) { return AnswerCount(sql, -1); }

MemoryResult& MemoryServer::AnswerError(const std::string& sql, ErrorInfo error) {
  return Add(sql, MemoryResult::Failure(std::move(error)));
}

MemoryResult& MemoryServer::Add(const std::string& sql, MemoryResult result) {
  result.table = "table" + std::to_string(++tables_);
  std::deque<MemoryResult>& list = answers_[sql].list;
  list.push_back(std::move(result));
  return list.back();
}

const MemoryResult* MemoryServer::FindAnswer(const std::string& sql) const {
  const auto found = answers_.find(sql);
  if (found == answers_.end()) return nullptr;
  const Answers& answers = found->second;
  return &answers.list[std::min(answers.next, answers.list.size() - 1)];
}

const MemoryResult& MemoryServer::TakeAnswer(const std::string& sql) {
  const MemoryResult* answer = FindAnswer(sql);
  if (answer == nullptr) throw Error(MemoryError("The server in memory has no answer to:\n" + sql));
  ++answers_[sql].next;
  return *answer;
}

MemoryResult* MemoryServer::FindTable(std::string_view table) {
  for (auto& [sql, answers] : answers_)
    for (MemoryResult& result : answers.list) {
      if (result.table == table) return &result;
      for (MemoryResult& next : result.then)
        if (next.table == table) return &next;
    }
  return nullptr;
}

void MemoryServer::ReadSchema(SchemaRows& rows) const {
  const auto failure = schemaFailures.find(rows.Kind());
  if (failure != schemaFailures.end()) throw Error(failure->second);
  if (rows.Kind() == SchemaRowset::Catalogs)
    for (const std::string& catalog : catalogs) rows.AddCatalog(catalog, {});
  for (const MemoryTable& table : tables) {
    if (rows.Kind() == SchemaRowset::Columns) AddColumns(rows, table);
    if (rows.Kind() == SchemaRowset::Tables) AddTable(rows, table);
  }
  ReadStructure(rows);
}

void MemoryServer::ReadStructure(SchemaRows& rows) const {
  if (rows.Kind() == SchemaRowset::PrimaryKeys)
    for (const SchemaKeyColumn& column : primaryKeys) rows.AddKeyColumn(column);
  if (rows.Kind() == SchemaRowset::ForeignKeys)
    for (const SchemaForeignColumn& column : foreignKeys) rows.AddForeignColumn(column);
  if (rows.Kind() == SchemaRowset::Indexes)
    for (const SchemaIndexColumn& column : indexes) rows.AddIndexColumn(column);
  if (rows.Kind() == SchemaRowset::Procedures)
    for (const SchemaRoutine& routine : routines) rows.AddRoutine(routine);
  if (rows.Kind() != SchemaRowset::Definitions) return;
  const auto found = definitions.find(rows.Restriction(3) + " " + rows.Restriction(2));
  if (found != definitions.end()) rows.AddDefinition(found->second);
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

}  // namespace tessel
