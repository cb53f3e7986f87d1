#include "tests/data/providers/fronts/TableParts.h"

namespace tessel::test {

std::string FirstColumn(const std::string& columns) {
  const bool quoted = columns.front() == '"' || columns.front() == '`';
  const std::size_t end = quoted ? columns.find(columns.front(), 1) + 1 : columns.find(' ');
  return columns.substr(0, end);
}

std::string WithoutKeys(std::string columns) {
  for (const std::string key : {", primary key (a, b)", " primary key", " unique"})
    for (std::size_t at = 0; (at = columns.find(key)) != std::string::npos;)
      columns.erase(at, key.size());
  return columns;
}

std::string Literal(const std::string& sql) {
  std::string literal = "'";
  for (const char c : sql) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

}  // namespace tessel::test
