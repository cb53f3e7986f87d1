#include "logic/schema/sql/SqlGeneration.h"

namespace tessel {

namespace {

constexpr const char* newLine = "\r\n";
constexpr std::string_view comma = ", ";
constexpr std::string_view equals = " = ";

std::string From(const std::string& table, const NameQuoting& quoting) {
  return " FROM " + quoting.Table(table);
}

}  // namespace

std::string CheckedFieldList(const std::vector<std::string>& fields, std::string_view separator,
                             std::string_view suffix, const NameQuoting& quoting) {
  std::string list;
  for (const std::string& field : fields)
    list.append(separator).append(quoting.Name(field)).append(suffix);
  return list.empty() ? list : list.substr(separator.size());
}

std::string TableSelectText(const std::string& table, const std::vector<std::string>& fields,
                            const NameQuoting& quoting) {
  const std::string list = CheckedFieldList(fields, comma, {}, quoting);
  return "SELECT " + (list.empty() ? "*" : list) + From(table, quoting) + newLine;
}

std::string TableCountText(const std::string& table, const std::vector<std::string>& fields,
                           const NameQuoting& quoting) {
  const std::string counted = "COUNT(*) AS n" + From(table, quoting) + newLine;
  const std::string list = CheckedFieldList(fields, comma, {}, quoting);
  if (list.empty()) return "SELECT " + counted;
  return "SELECT " + list + ", " + counted + "GROUP BY " + list + newLine;
}

/// With fields the line breaks before " VALUES()", so the second line begins with a blank.
std::string TableInsertText(const std::string& table, const std::vector<std::string>& fields,
                            const NameQuoting& quoting) {
  const std::string list = CheckedFieldList(fields, comma, {}, quoting);
  const std::string columns = list.empty() ? "" : "(" + list + ")" + newLine;
  return "INSERT INTO " + quoting.Table(table) + columns + " VALUES()" + newLine;
}

std::string TableUpdateText(const std::string& table, const std::vector<std::string>& fields,
                            const NameQuoting& quoting) {
  return "UPDATE " + quoting.Table(table) + " SET " +
         CheckedFieldList(fields, comma, equals, quoting) + newLine;
}

std::string TableDeleteText(const std::string& table, const std::vector<std::string>& fields,
                            const NameQuoting& quoting) {
  return "DELETE" + From(table, quoting) + " " + TableWhereText(fields, quoting) + newLine;
}

std::string TableWhereText(const std::vector<std::string>& fields, const NameQuoting& quoting) {
  return "WHERE " + CheckedFieldList(fields, " AND ", equals, quoting);
}

std::string FieldMinMaxText(const std::string& table, const std::string& field,
                            const NameQuoting& quoting) {
  const std::string name = quoting.Name(field);
  return "SELECT MIN(" + name + ") AS a, MAX(" + name + ") AS b" + From(table, quoting) + newLine;
}

std::string DistinctValuesText(const std::string& table, const std::string& field,
                               const NameQuoting& quoting) {
  return "SELECT DISTINCT " + quoting.Name(field) + From(table, quoting);
}

}  // namespace tessel
