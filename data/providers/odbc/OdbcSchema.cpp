#include "data/providers/odbc/OdbcSchema.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "contract/text/Ascii.h"
#include "data/changes/UniqueRows.h"
#include "data/providers/odbc/OdbcRows.h"

namespace tessel::odbc {

namespace {

/// Drivers say "" as well as null where there is nothing.
OptionalText Named(const OptionalText& text) {
  return text && !text->empty() ? text : OptionalText();
}

/// Reads one schema rowset.
class SchemaReader {
 public:
  SchemaReader(const Dbc& dbc, const DriverProfile& profile, CancelSwitch& cancel, SchemaRows& rows)
      : dbc_(dbc), profile_(profile), cancel_(cancel), rows_(rows), statement_(dbc) {}

  void Catalogs();
  void Tables();
  void Columns();

 private:
  static constexpr std::size_t catalogAt = 0;  // Places of restrictions.
  static constexpr std::size_t schemaAt = 1;
  static constexpr std::size_t tableAt = 2;
  static constexpr std::size_t typeAt = 3;

  [[nodiscard]] CatalogName Pattern() const;
  [[nodiscard]] std::string Escaped(const std::string& name) const;
  [[nodiscard]] bool IsHidden(const OptionalText& schema) const;
  [[nodiscard]] std::string TypeList() const;
  [[nodiscard]] SchemaColumn ToColumn(const TextRow& row) const;

  const Dbc& dbc_;
  const DriverProfile& profile_;
  CancelSwitch& cancel_;
  SchemaRows& rows_;
  Statement statement_;
};

void SchemaReader::Catalogs() {
  Diagnostics notices;
  if (profile_.catalogQuery.empty())
    statement_.Tables({.catalog = "%", .schema = "", .table = ""}, "");
  else statement_.Execute(std::string(profile_.catalogQuery), cancel_, notices);
  std::vector<std::string> names;
  ForEachRow(statement_, 1, [&](const TextRow& row) {
    if (const OptionalText name = Named(row[0])) names.push_back(*name);
  });
  std::ranges::sort(names);
  for (const std::string& name : names) rows_.AddCatalog(name, {});
}

void SchemaReader::Tables() {
  statement_.Tables(Pattern(), TypeList());
  std::vector<SchemaTable> tables;
  ForEachRow(statement_, 5, [&](const TextRow& row) {
    if (!row[2] || IsHidden(row[1])) return;
    tables.push_back(
        {Named(row[0]), Named(row[1]), *row[2], row[3].value_or("TABLE"), Named(row[4])});
  });
  std::ranges::stable_sort(tables, {}, [](const SchemaTable& table) {
    return std::tie(table.name, table.schema, table.catalog);
  });
  for (const SchemaTable& table : tables) rows_.AddTable(table);
}

void SchemaReader::Columns() {
  statement_.Columns(Pattern());
  std::vector<SchemaColumn> columns;
  ForEachRow(statement_, 17, [&](const TextRow& row) {
    if (row[2] && row[3] && !IsHidden(row[1])) columns.push_back(ToColumn(row));
  });
  std::ranges::stable_sort(columns, {}, [](const SchemaColumn& column) {
    return std::tie(column.table, column.schema, column.catalog, column.ordinal);
  });
  for (const SchemaColumn& column : columns) rows_.AddColumn(column);
}

SchemaColumn SchemaReader::ToColumn(const TextRow& row) const {
  const std::string typeName = row[5].value_or("");
  const auto code = static_cast<SQLSMALLINT>(ToNumber(row[4], SQL_VARCHAR));
  const bool isUnsigned = AsciiUpper(typeName).find("UNSIGNED") != std::string::npos;
  return {.catalog = Named(row[0]),
          .schema = Named(row[1]),
          .table = *row[2],
          .name = *row[3],
          .ordinal = ToNumber(row[16], 0),
          .nullable = ToNumber(row[10], SQL_NULLABLE) != SQL_NO_NULLS,
          .type = TypeOf(code, isUnsigned, typeName, profile_.typeRules).type,
          .typeName = typeName};
}

/// Names are search patterns to the catalog functions, but for the catalog.
CatalogName SchemaReader::Pattern() const {
  CatalogName pattern;
  pattern.catalog = rows_.Restriction(catalogAt);
  if (pattern.catalog->empty() && profile_.needsCatalog) pattern.catalog = dbc_.CurrentCatalog();
  if (pattern.catalog->empty() || pattern.catalog == profile_.noCatalog) pattern.catalog.reset();
  if (const std::string& schema = rows_.Restriction(schemaAt); !schema.empty())
    pattern.schema = Escaped(schema);
  else if (profile_.schemaPattern) pattern.schema = "%";
  if (const std::string& table = rows_.Restriction(tableAt); !table.empty())
    pattern.table = Escaped(table);
  return pattern;
}

std::string SchemaReader::Escaped(const std::string& name) const {
  const std::string escape = dbc_.InfoText(SQL_SEARCH_PATTERN_ESCAPE).value_or("");
  std::string escaped;
  for (const char c : name) {
    if (c == '%' || c == '_' || escape == std::string_view(&c, 1)) escaped += escape;
    escaped += c;
  }
  return escaped;
}

bool SchemaReader::IsHidden(const OptionalText& schema) const {
  if (!schema || !rows_.Restriction(schemaAt).empty()) return false;
  return std::ranges::any_of(profile_.hiddenSchemas,
                             [&](std::string_view hidden) { return schema->starts_with(hidden); });
}

std::string SchemaReader::TypeList() const {
  const std::string& type = rows_.Restriction(typeAt);
  const bool plain = !type.empty() && type.find('\'') == std::string::npos;
  return plain ? "'" + type + "'" : std::string();
}

std::vector<std::string> PrimaryKey(const Dbc& dbc, const CatalogName& table) {
  Statement statement(dbc);
  statement.PrimaryKeys(table);
  std::vector<std::string> key;
  ForEachRow(statement, 4, [&](const TextRow& row) { key.push_back(row[3].value_or("")); });
  return key;
}

using Indexes = std::map<std::string, std::vector<std::string>>;

/// Columns of the unique indexes, by name; in the place of an expression or a condition stands "".
Indexes UniqueIndexes(const Dbc& dbc, const CatalogName& table) {
  Statement statement(dbc);
  statement.UniqueIndexes(table);
  Indexes indexes;
  ForEachRow(statement, 13, [&](const TextRow& row) {
    if (!row[5] || ToNumber(row[3], SQL_TRUE) != SQL_FALSE) return;
    const bool plain = row[8].has_value() && !Named(row[12]);
    indexes[*row[5]].push_back(plain ? *row[8] : std::string());
  });
  return indexes;
}

std::string QuotedText(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

/// Fills the names of the table in.
std::string WithNames(std::string_view query, const CatalogName& table) {
  std::string sql(query);
  for (const auto& [mark, name] : {std::pair("{catalog}", table.catalog.value_or("")),
                                   std::pair("{schema}", table.schema.value_or("")),
                                   std::pair("{table}", table.table.value_or(""))}) {
    const std::size_t at = sql.find(mark);
    if (at != std::string::npos) sql.replace(at, std::string_view(mark).size(), QuotedText(name));
  }
  return sql;
}

Indexes QueriedIndexes(const Dbc& dbc, std::string_view query, CancelSwitch& cancel,
                       const CatalogName& table) {
  Diagnostics unused;
  Statement statement(dbc);
  statement.Execute(WithNames(query, table), cancel, unused);
  Indexes indexes;
  ForEachRow(statement, 2, [&](const TextRow& row) {
    indexes[row[0].value_or("")].push_back(row[1].value_or(""));
  });
  return indexes;
}

CatalogName NameOf(const FieldInfo& base) {
  return {Named(base.baseCatalog), Named(base.baseSchema), base.baseTable};
}

/// Of the columns of an index, those that are among the fields are not null.
bool NeverNull(const std::vector<FieldInfo>& fields, const std::vector<std::string>& key) {
  return std::ranges::all_of(fields, [&](const FieldInfo& field) {
    return !field.nullable || std::ranges::find(key, field.baseColumn) == key.end();
  });
}

}  // namespace

void ReadSchemaRows(const Dbc& dbc, const DriverProfile& profile, CancelSwitch& cancel,
                    SchemaRows& rows) {
  SchemaReader reader(dbc, profile, cancel, rows);
  switch (rows.Kind()) {
    case SchemaRowset::Catalogs: return reader.Catalogs();
    case SchemaRowset::Columns: return reader.Columns();
    case SchemaRowset::Tables: return reader.Tables();
    default: RaiseNoRowset("ODBC");
  }
}

std::vector<std::size_t> FindUniqueKey(const Dbc& dbc, const DriverProfile& profile,
                                       CancelSwitch& cancel, const std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr) return {};
  const CatalogName table = NameOf(*base);
  const TableKey primary = PrimaryKey(dbc, table);
  if (!primary.empty()) return KeyFields(fields, {primary});
  const Indexes indexes = profile.uniqueIndexQuery.empty()
                              ? UniqueIndexes(dbc, table)
                              : QueriedIndexes(dbc, profile.uniqueIndexQuery, cancel, table);
  std::vector<TableKey> keys;
  for (const auto& [name, columns] : indexes)
    if (NeverNull(fields, columns)) keys.push_back(columns);
  return KeyFields(fields, keys);
}

void FindReadOnlyColumns(const Dbc& dbc, const DriverProfile& profile, CancelSwitch& cancel,
                         std::vector<FieldInfo>& fields) {
  const FieldInfo* base = OneBaseTable(fields);
  if (base == nullptr || profile.readOnlyColumnsQuery.empty()) return;
  Diagnostics unused;
  Statement statement(dbc);
  statement.Execute(WithNames(profile.readOnlyColumnsQuery, NameOf(*base)), cancel, unused);
  ForEachRow(statement, 1, [&](const TextRow& row) {
    for (FieldInfo& field : fields)
      if (!field.baseTable.empty() && field.baseColumn == row[0]) field.updatable = false;
  });
}

}  // namespace tessel::odbc
