#include "logic/results/runs/FailedPlace.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "contract/sql/SqlStatements.h"
#include "logic/program/Characters.h"

namespace tessel {

namespace {

/// Letters of all scripts count as such.
bool IsOfWord(char c) { return IsIdentifierChar(c) || static_cast<unsigned char>(c) >= 0x80; }

/// The word that begins at a place, or the one sign; at the end of the SQL, the last of it.
TextRange WordAt(std::string_view sql, std::size_t place) {
  constexpr std::string_view blanks = " \t\r\n";
  const bool atEnd = sql.find_first_not_of(blanks, place) == std::string_view::npos;
  std::size_t begin = atEnd ? sql.find_last_not_of(blanks) : place;
  if (begin == std::string_view::npos) return {};
  if (atEnd)
    while (begin > 0 && IsOfWord(sql[begin]) && IsOfWord(sql[begin - 1])) --begin;
  std::size_t end = begin;
  while (end < sql.size() && IsOfWord(sql[end])) ++end;
  return {begin, std::max(end, begin + 1)};
}

/// The statement; of a text of one statement it is known which one.
std::optional<TextRange> StatementIn(std::string_view sql, const StatementPlace& statement) {
  if (statement.number > 0) return TextRange{statement.begin, statement.end};
  const std::vector<SqlStatement> statements = SplitStatements(sql, SqlDialect::Standard);
  if (statements.size() != 1) return std::nullopt;
  return TextRange{statements.front().begin, statements.front().end};
}

}  // namespace

std::optional<TextRange> FailedPlace(const PreparedQuery& query, const QueryOperation& operation) {
  const std::optional<TextStop>& stop = operation.Stop();
  if (!stop || query.edited || operation.Outcome() == OperationOutcome::Cancelled)
    return std::nullopt;
  const bool knowsPlace = stop->failedAt && *stop->failedAt <= query.sql.size();
  const std::optional<TextRange> place =
      knowsPlace ? WordAt(query.sql, *stop->failedAt) : StatementIn(query.sql, stop->statement);
  if (!place) return std::nullopt;
  return InTaggedText(*place, query.tags);
}

}  // namespace tessel
