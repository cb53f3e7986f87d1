#include "data/changes/RowSql.h"

#include <algorithm>

#include "contract/text/Ascii.h"
#include "data/changes/UniqueRows.h"

namespace tessel {

namespace {

bool IsNullValue(const Value& value) { return std::holds_alternative<std::monostate>(value); }

/// Puts `with` in the place of each `mark`.
std::string Replaced(std::string_view pattern, std::string_view mark, std::string_view with) {
  std::string text(pattern);
  for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += with.size())
    text.replace(at, mark.size(), with);
  return text;
}

bool IsPlainNameByte(char c) {
  const char upper = AsciiUpper(c);
  return (upper >= 'A' && upper <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string_view ElementType(std::string_view typeName) {
  return typeName.ends_with("[]") ? typeName.substr(0, typeName.size() - 2) : typeName;
}

}  // namespace

/// Without a sign for it only a name that needs none is taken: it might be anything else.
std::string QuotedName(std::string_view name, const WriteDialect& dialect) {
  if (dialect.quote == '\0') {
    if (!std::ranges::all_of(name, IsPlainNameByte))
      throw Error(errorNumber::notSupported, "Tessel",
                  "The name '" + std::string(name) + "' cannot be quoted for this database.");
    return std::string(name);
  }
  std::string quoted(1, dialect.quote);
  for (const char c : name) quoted.append(c == dialect.quote ? 2 : 1, c);
  return quoted + dialect.quote;
}

std::string BaseTableName(const FieldInfo& field, const WriteDialect& dialect) {
  std::string name;
  if (dialect.namesCatalog && !field.baseCatalog.empty())
    name = QuotedName(field.baseCatalog, dialect) + ".";
  if (!field.baseSchema.empty()) name += QuotedName(field.baseSchema, dialect) + ".";
  return name + QuotedName(field.baseTable, dialect);
}

RowSql::RowSql(const RowChange& change, const WriteDialect& dialect)
    : change_(change), dialect_(dialect) {
  for (std::size_t i = 0; i < change.fields.size(); ++i)
    if (IsReadBack(i)) readBack_.push_back(i);
}

bool RowSql::IsReadBack(std::size_t field) const {
  return HasColumn(Field(field)) && (change_.changes[field] || !change_.isLong[field]);
}

std::string RowSql::Column(std::size_t field) const {
  return QuotedName(Field(field).baseColumn, dialect_);
}

std::string RowSql::Table() const { return BaseTableName(*OneBaseTable(change_.fields), dialect_); }

std::string RowSql::Parameter(RowStatement& statement, std::size_t field,
                              const Value& value) const {
  statement.parameters.push_back({ToView(value), &Field(field)});
  return dialect_.numbersParameters ? "$" + std::to_string(statement.parameters.size()) : "?";
}

std::string_view RowSql::PatternOf(const FieldInfo& field) const {
  if (!field.searchable) return {};
  for (const WriteDialect::Comparison& rule : dialect_.comparisons) {
    const bool named = !rule.typeName.empty();
    if (named ? EqualNoCase(rule.typeName, ElementType(field.typeName)) : rule.type == field.type)
      return rule.pattern;
  }
  return dialect_.sameOrNull;
}

/// A key is compared in the plain way, which finds its index.
void RowSql::AddComparison(RowStatement& statement, std::size_t field, const Value& value,
                           bool byKey) const {
  const std::string_view pattern = byKey ? "{column} = {value}" : PatternOf(Field(field));
  if (pattern.empty()) return;
  statement.sql += statement.sql.ends_with(" where") ? " " : " and ";
  if (IsNullValue(value)) {
    statement.sql += Column(field) + " is null";
    return;
  }
  const std::string column = Replaced(pattern, "{column}", Column(field));
  statement.sql += Replaced(column, "{value}", Parameter(statement, field, value));
}

/// Whether its original value must still be there, beside the key that finds the row.
bool RowSql::IsCompared(std::size_t field) const {
  return change_.key.empty() || change_.changes[field] || change_.kind == RowChange::Kind::Delete;
}

void RowSql::AddWhere(RowStatement& statement) const {
  statement.sql += " where";
  for (const std::size_t field : change_.key)
    AddComparison(statement, field, *change_.originals[field], true);
  for (std::size_t i = 0; i < change_.fields.size(); ++i)
    if (change_.originals[i] && IsCompared(i))
      AddComparison(statement, i, *change_.originals[i], false);
  if (statement.sql.ends_with(" where"))
    throw Error(errorNumber::notSupported, "Tessel",
                "The record cannot be found again: no key is known, and none of its fields can be "
                "compared.");
}

void RowSql::AddColumns(RowStatement& statement) const {
  for (const std::size_t field : readBack_) {
    statement.sql += (statement.columns.empty() ? " " : ", ") + Column(field);
    statement.columns.push_back(&Field(field));
  }
}

void RowSql::AddReturning(RowStatement& statement) const {
  statement.sql += " returning";
  AddColumns(statement);
}

RowStatement RowSql::Update() const {
  RowStatement statement;
  statement.sql = "update " + Table() + " set ";
  for (std::size_t i = 0; i < change_.fields.size(); ++i) {
    if (!change_.changes[i]) continue;
    if (!statement.parameters.empty()) statement.sql += ", ";
    statement.sql += Column(i) + " = " + Parameter(statement, i, *change_.changes[i]);
  }
  AddWhere(statement);
  if (dialect_.returnsUpdated) AddReturning(statement);
  return statement;
}

RowStatement RowSql::Insert() const {
  RowStatement statement;
  std::string names;
  std::string values;
  for (std::size_t i = 0; i < change_.fields.size(); ++i) {
    if (!change_.changes[i]) continue;
    names += (names.empty() ? "" : ", ") + Column(i);
    values += (values.empty() ? "" : ", ") + Parameter(statement, i, *change_.changes[i]);
  }
  statement.sql = "insert into " + Table() + " ";
  statement.sql += names.empty() ? std::string(dialect_.insertDefaults)
                                 : "(" + names + ") values (" + values + ")";
  if (dialect_.returnsInserted) AddReturning(statement);
  return statement;
}

RowStatement RowSql::Delete() const {
  RowStatement statement;
  statement.sql = "delete from " + Table();
  AddWhere(statement);
  return statement;
}

RowStatement RowSql::Count() const {
  RowStatement statement;
  statement.sql = "select count(*) from " + Table();
  AddWhere(statement);
  return statement;
}

RowStatement RowSql::Select(const std::vector<Value>& key) const {
  RowStatement statement;
  statement.sql = "select";
  AddColumns(statement);
  statement.sql += " from " + Table() + " where";
  for (std::size_t i = 0; i < key.size(); ++i)
    AddComparison(statement, change_.key[i], key[i], true);
  return statement;
}

}  // namespace tessel
