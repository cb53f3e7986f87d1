#include "schema/SqlGeneration.h"

#include "query/Misc.h"

namespace tessel {

namespace {

constexpr const char* newLine = "\r\n";
constexpr std::string_view comma = ", ";
constexpr std::string_view equals = " = ";

std::string From(const std::string& table) { return " FROM " + QuoteIdentifier(table); }

}  // namespace

std::string CheckedFieldList(const std::vector<std::string>& fields, std::string_view separator,
                             std::string_view suffix) {
  std::string list;
  for (const std::string& field : fields)
    list.append(separator).append(QuoteIdentifier(field)).append(suffix);
  return list.empty() ? list : list.substr(separator.size());
}

std::string TableSelectText(const std::string& table, const std::vector<std::string>& fields) {
  const std::string list = CheckedFieldList(fields, comma);
  return "SELECT " + (list.empty() ? "*" : list) + From(table) + newLine;
}

std::string TableCountText(const std::string& table, const std::vector<std::string>& fields) {
  const std::string counted = "COUNT(*) AS n" + From(table) + newLine;
  const std::string list = CheckedFieldList(fields, comma);
  if (list.empty()) return "SELECT " + counted;
  return "SELECT " + list + ", " + counted + "GROUP BY " + list + newLine;
}

/// With fields the line breaks before " VALUES()", so the second line begins with a blank.
std::string TableInsertText(const std::string& table, const std::vector<std::string>& fields) {
  const std::string list = CheckedFieldList(fields, comma);
  const std::string columns = list.empty() ? "" : "(" + list + ")" + newLine;
  return "INSERT INTO " + QuoteIdentifier(table) + columns + " VALUES()" + newLine;
}

std::string TableUpdateText(const std::string& table, const std::vector<std::string>& fields) {
  return "UPDATE " + QuoteIdentifier(table) + " SET " + CheckedFieldList(fields, comma, equals) +
         newLine;
}

std::string TableDeleteText(const std::string& table, const std::vector<std::string>& fields) {
  return "DELETE" + From(table) + " " + TableWhereText(fields) + newLine;
}

std::string TableWhereText(const std::vector<std::string>& fields) {
  return "WHERE " + CheckedFieldList(fields, " AND ", equals);
}

std::string FieldMinMaxText(const std::string& table, const std::string& field) {
  const std::string name = QuoteIdentifier(field);
  return "SELECT MIN(" + name + ") AS a, MAX(" + name + ") AS b" + From(table) + newLine;
}

std::string DistinctValuesText(const std::string& table, const std::string& field) {
  return "SELECT DISTINCT " + QuoteIdentifier(field) + From(table);
}

}  // namespace tessel
