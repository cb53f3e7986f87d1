#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/sql/SqlStatements.h"

namespace tessel::test {

/// A text of SQL and its statements, which stand between "«" and "»" in it.
struct SqlCase {
  std::string_view name;  ///< What the case shows; letters and digits.
  std::vector<SqlDialect> dialects;
  std::string_view marked;
  ClientWords clientWords = ClientWords::No;
};

/// A text without its marks.
struct MarkedSql {
  std::string text;
  std::vector<SqlStatement> statements;
  std::size_t caret = 0;  ///< Where "‸" stood.
};
[[nodiscard]] MarkedSql WithoutMarks(std::string_view marked);
/// The text with "«" and "»" around statements.
[[nodiscard]] std::string WithMarks(std::string_view text,
                                    const std::vector<SqlStatement>& statements);

/// All cases: those of several dialects, and those of one each.
[[nodiscard]] std::vector<SqlCase> SqlCorpus();
[[nodiscard]] std::vector<SqlCase> PlainSqlCases();
[[nodiscard]] std::vector<SqlCase> PostgresSqlCases();
[[nodiscard]] std::vector<SqlCase> SqliteSqlCases();
[[nodiscard]] std::vector<SqlCase> SqlServerSqlCases();
[[nodiscard]] std::vector<SqlCase> MariaDbSqlCases();

}  // namespace tessel::test
