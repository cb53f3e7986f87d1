#include "tests/support/SqlStatementsProperty.h"

namespace tessel::test {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

std::string_view PieceOf(std::string_view text, const SqlStatement& statement) {
  return text.substr(statement.begin, statement.end - statement.begin);
}

bool HasBlanksAround(std::string_view piece) {
  return piece.empty() || blanks.find(piece.front()) != std::string_view::npos ||
         blanks.find(piece.back()) != std::string_view::npos;
}

/// Whether the text, which is all of a statement, may be none at all when it stands alone: a mark
/// of the byte order counts only in front, and two minuses at the end of a text begin a comment.
bool DependsOnItsPlace(std::string_view piece) {
  return piece.starts_with("\xEF\xBB\xBF") || piece == "--";
}

std::string ComplaintAboutOne(std::string_view text, const SqlStatement& statement,
                              SqlDialect dialect, ClientWords clientWords) {
  const std::string_view piece = PieceOf(text, statement);
  if (HasBlanksAround(piece)) return "blanks around a statement";
  const std::vector<SqlStatement> whole{{0, piece.size()}};
  if (clientWords == ClientWords::No && !DependsOnItsPlace(piece) &&
      SplitStatements(piece, dialect) != whole)
    return "a statement is not one when it stands alone";
  for (const std::size_t caret : {statement.begin, statement.end - 1})
    if (StatementAt(text, caret, dialect, clientWords) != statement)
      return "a caret finds another statement";
  return {};
}

}  // namespace

std::string ComplaintAboutStatements(std::string_view text, SqlDialect dialect,
                                     ClientWords clientWords) {
  constexpr std::size_t mostLookedAt = 40;  // Each is looked for from the beginning of the text.
  std::size_t at = 0;
  std::size_t count = 0;
  std::string between;
  for (const SqlStatement& statement : SplitStatements(text, dialect, clientWords)) {
    if (statement.begin < at || statement.end <= statement.begin || statement.end > text.size())
      return "statements are not in order";
    between = text.substr(at, statement.begin - at);
    if (clientWords == ClientWords::No && !SplitStatements(between, dialect).empty())
      return "a statement is missing";
    at = statement.end;
    if (++count > mostLookedAt) continue;
    if (auto complaint = ComplaintAboutOne(text, statement, dialect, clientWords);
        !complaint.empty())
      return complaint;
  }
  between = text.substr(at);
  const bool complete =
      clientWords == ClientWords::Yes || SplitStatements(between, dialect).empty();
  return complete ? "" : "the last statement is missing";
}

std::string ComplaintAboutStatements(std::string_view text) {
  using enum SqlDialect;
  for (const SqlDialect dialect : {Standard, PostgreSQL, MariaDB, SQLite, SqlServer})
    for (const ClientWords words : {ClientWords::No, ClientWords::Yes})
      if (auto complaint = ComplaintAboutStatements(text, dialect, words); !complaint.empty())
        return complaint + " (dialect " + std::to_string(static_cast<int>(dialect)) + ", lines " +
               std::to_string(static_cast<int>(words)) + ")";
  return {};
}

}  // namespace tessel::test
