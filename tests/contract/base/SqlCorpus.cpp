#include "tests/contract/base/SqlCorpus.h"

namespace tessel::test {

namespace {

constexpr std::string_view opening = "«";
constexpr std::string_view closing = "»";
constexpr std::string_view caretMark = "‸";

void Append(std::vector<SqlCase>& cases, const std::vector<SqlCase>& more) {
  cases.insert(cases.end(), more.begin(), more.end());
}

}  // namespace

MarkedSql WithoutMarks(std::string_view marked) {
  MarkedSql plain;
  const auto passes = [&](std::string_view mark) {
    const bool stands = marked.starts_with(mark);
    if (stands) marked.remove_prefix(mark.size());
    return stands;
  };
  while (!marked.empty()) {
    if (passes(opening)) {
      plain.statements.push_back({plain.text.size(), 0});
    } else if (passes(closing)) {
      plain.statements.back().end = plain.text.size();
    } else if (passes(caretMark)) {
      plain.caret = plain.text.size();
    } else {
      plain.text += marked.front();
      marked.remove_prefix(1);
    }
  }
  return plain;
}

std::string WithMarks(std::string_view text, const std::vector<SqlStatement>& statements) {
  std::string marked;
  std::size_t at = 0;
  for (const auto& [begin, end] : statements) {
    marked.append(text.substr(at, begin - at)).append(opening);
    marked.append(text.substr(begin, end - begin)).append(closing);
    at = end;
  }
  return marked.append(text.substr(at));
}

std::vector<SqlCase> SqlCorpus() {
  std::vector<SqlCase> cases = PlainSqlCases();
  Append(cases, PostgresSqlCases());
  Append(cases, SqliteSqlCases());
  Append(cases, SqlServerSqlCases());
  Append(cases, MariaDbSqlCases());
  return cases;
}

}  // namespace tessel::test
