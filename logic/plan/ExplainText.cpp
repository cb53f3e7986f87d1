#include "logic/plan/ExplainText.h"

#include <algorithm>
#include <array>
#include <vector>

#include "contract/sql/SqlStatements.h"
#include "contract/sql/SqlTokens.h"
#include "contract/text/Ascii.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr std::array<std::string_view, 5> reading = {"SELECT", "WITH", "VALUES", "TABLE", "("};
constexpr std::array<std::string_view, 5> writing = {"INSERT", "UPDATE", "DELETE", "REPLACE",
                                                     "MERGE"};

bool IsOneOf(std::string_view word, const auto& words) {
  return std::ranges::any_of(words, [word](std::string_view w) { return EqualNoCase(w, word); });
}

std::string FirstWord(std::string_view statement, SqlDialect dialect) {
  SqlTokens tokens(statement, dialect);
  return AsciiUpper(tokens.TextOf(tokens.Next()));
}

/// A word of writing anywhere counts: a query may hold a statement that writes, or lock rows. A
/// function of that name is asked about in vain, which harms nobody.
bool Writes(std::string_view statement, SqlDialect dialect) {
  SqlTokens tokens(statement, dialect);
  for (SqlToken token = tokens.Next(); token.kind != SqlTokenKind::End; token = tokens.Next())
    if (token.kind == SqlTokenKind::Word && IsOneOf(tokens.TextOf(token), writing)) return true;
  return false;
}

bool HasPlans(SqlDialect dialect) {
  return dialect == SqlDialect::PostgreSQL || dialect == SqlDialect::MariaDB ||
         dialect == SqlDialect::SQLite;
}

}  // namespace

ExplainedStatement StatementToExplain(std::string_view sql, SqlDialect dialect) {
  if (!HasPlans(dialect))
    RaiseAppError("Plans are shown of PostgreSQL, MariaDB and SQLite; this is another database.");
  const std::vector<SqlStatement> statements = SplitStatements(sql, dialect);
  if (statements.empty()) RaiseAppError("There is no statement in what is selected.");
  if (statements.size() > 1)
    RaiseAppError("Please select one statement: " + std::to_string(statements.size()) +
                  " are selected, and a plan is of one.");
  const std::string_view one =
      sql.substr(statements[0].begin, statements[0].end - statements[0].begin);
  const std::string first = FirstWord(one, dialect);
  if (first == "EXPLAIN" || first == "ANALYZE" || first == "DESCRIBE")
    RaiseAppError("This statement asks for a plan already: select it without " + first + ".");
  if (!IsOneOf(first, reading) && !IsOneOf(first, writing))
    RaiseAppError("A statement that begins with " + first + " has no plan.");
  return {std::string(one), Writes(one, dialect)};
}

bool CanMeasure(SqlDialect dialect) {
  return dialect == SqlDialect::PostgreSQL || dialect == SqlDialect::MariaDB;
}

std::string ExplainCommand(const std::string& statement, SqlDialect dialect, bool measured) {
  switch (dialect) {
    case SqlDialect::PostgreSQL:
      return (measured ? "EXPLAIN (ANALYZE, BUFFERS, FORMAT JSON) " : "EXPLAIN (FORMAT JSON) ") +
             statement;
    case SqlDialect::MariaDB:
      return (measured ? "ANALYZE FORMAT=JSON " : "EXPLAIN FORMAT=JSON ") + statement;
    default: return "EXPLAIN QUERY PLAN " + statement;
  }
}

}  // namespace tessel
