#include "contract/sql/SqlStatements.h"

#include <algorithm>
#include <memory>

#include "contract/sql/SqlBlocks.h"
#include "contract/sql/SqlTokens.h"
#include "contract/text/Ascii.h"
#include "contract/text/ByteOrderMark.h"

namespace tessel {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";
constexpr std::string_view blanksOfLine = " \t\v\f";
constexpr std::size_t longestDelimiter = 15;  // As in the client of MariaDB.

/// A statement, and where what ended it ends: its delimiter, or the text.
struct Found {
  SqlStatement statement;
  std::size_t stop = 0;
};

/// Finds one statement after another.
class Splitter {
 public:
  Splitter(std::string_view text, SqlDialect dialect, ClientWords clientWords)
      : text_(text),
        dialect_(dialect),
        clientWords_(clientWords),
        tokens_(text, dialect),
        blocks_(SqlBlocks::Of(dialect)) {
    if (HasGo()) SplitAt({});
  }

  /// The next one; nothing behind the last.
  std::optional<Found> Next() {
    begun_.reset();
    for (;;) {
      const SqlToken token = tokens_.Next();
      if (token.kind == SqlTokenKind::End) return Take(text_.size(), text_.size());
      if (clientWords_ == ClientWords::Yes && (IsGoLine(token) || IsDelimiterLine(token))) {
        if (const auto found = TakeLine(token)) return found;
      } else if (token.kind == SqlTokenKind::Delimiter) {
        if (Ends() && begun_) return Take(token.begin, token.end);
      } else {
        Add(token);
      }
    }
  }

 private:
  [[nodiscard]] bool HasGo() const {
    return clientWords_ == ClientWords::Yes && dialect_ == SqlDialect::SqlServer;
  }
  [[nodiscard]] bool HasDelimiterLines() const {
    return clientWords_ == ClientWords::Yes && dialect_ == SqlDialect::MariaDB;
  }

  void Add(const SqlToken& token) {
    const std::string_view piece = tokens_.TextOf(token);
    if (!begun_ && piece == ";") return;  // Empty, where semicolons divide nothing.
    if (!begun_) begun_ = token.begin;
    if (ownBlocks_ && token.kind != SqlTokenKind::CodeMark) blocks_->Take(token.kind, piece);
  }
  /// Whether the delimiter ends what has begun.
  [[nodiscard]] bool Ends() {
    if (!ownBlocks_) return true;
    // MariaDB refuses what its comment divides, so that stays one statement.
    if (!blocks_->EndsHere() || tokens_.InCode()) return false;
    return dialect_ != SqlDialect::SqlServer || !GoesOnWithElse();
  }
  /// SQL Server allows a semicolon in front of ELSE.
  [[nodiscard]] bool GoesOnWithElse() const {
    SqlTokens ahead = tokens_;
    return begun_ && EqualNoCase(ahead.TextOf(ahead.Next()), "ELSE");
  }
  [[nodiscard]] std::optional<Found> Take(std::size_t end, std::size_t stop) const {
    if (!begun_) return std::nullopt;
    const std::size_t last = text_.substr(0, end).find_last_not_of(blanks);
    return Found{{*begun_, last + 1}, stop};
  }
  /// The empty one: nothing divides statements but lines.
  void SplitAt(std::string_view delimiter) {
    tokens_.SplitAt(delimiter);
    ownBlocks_ = delimiter == ";";
    blocks_ = SqlBlocks::Of(dialect_);
  }

  // --- Lines for tools --------------------------------------------------------------------------

  [[nodiscard]] bool BeginsLine(std::size_t position) const {
    const std::size_t before = text_.substr(0, position).find_last_not_of(blanksOfLine);
    return before == std::string_view::npos || IsLineEnd(text_[before]) || IsMark(before);
  }
  /// Whether the mark of the byte order in front of a text ends there.
  [[nodiscard]] bool IsMark(std::size_t position) const {
    return position + 1 == BehindMark(text_);
  }
  [[nodiscard]] static bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }
  [[nodiscard]] std::size_t LineEnd(std::size_t position) const {
    return std::min(text_.size(), text_.find_first_of("\n\r", position));
  }
  /// What follows the token on its line, without blanks around it.
  [[nodiscard]] std::string_view RestOfLine(const SqlToken& token) const {
    std::string_view rest = text_.substr(token.end, LineEnd(token.end) - token.end);
    rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(blanksOfLine)));
    return rest.substr(0, rest.find_last_not_of(blanksOfLine) + 1);
  }
  [[nodiscard]] bool IsWordOfLine(const SqlToken& token, std::string_view word) const {
    return token.kind == SqlTokenKind::Word && EqualNoCase(tokens_.TextOf(token), word) &&
           BeginsLine(token.begin);
  }
  [[nodiscard]] bool IsGoLine(const SqlToken& token) const {
    if (!HasGo() || !IsWordOfLine(token, "GO")) return false;
    std::string_view rest = RestOfLine(token);
    rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of("0123456789 \t")));
    return rest.empty() || rest.starts_with("--");
  }
  /// Within a statement such a line is one only if it names signs: DELIMITER may be a name as well.
  [[nodiscard]] bool IsDelimiterLine(const SqlToken& token) const {
    if (!HasDelimiterLines() || !IsWordOfLine(token, "DELIMITER")) return false;
    const std::string_view rest = RestOfLine(token);
    const bool isApart = token.end < text_.size() && text_[token.end] <= ' ';
    return isApart && !rest.empty() &&
           (!begun_ || rest.find_first_not_of(";/|$&#@~^!%\\:") == std::string_view::npos);
  }

  std::optional<Found> TakeLine(const SqlToken& token) {
    const std::size_t end = LineEnd(token.end);
    tokens_.GoTo(end);
    if (HasGo()) return Take(token.begin, end);
    SplitAt(DelimiterOf(RestOfLine(token)));
    return Take(token.begin, token.begin);
  }
  [[nodiscard]] static std::string_view DelimiterOf(std::string_view argument) {
    argument = argument.substr(0, argument.find_first_of(blanksOfLine));
    const bool quoted = argument.size() > 2 && argument.front() == argument.back() &&
                        std::string_view("'\"`").find(argument.front()) != std::string_view::npos;
    if (quoted) argument = argument.substr(1, argument.size() - 2);
    return argument.substr(0, longestDelimiter);
  }

  std::string_view text_;
  SqlDialect dialect_;
  ClientWords clientWords_;
  SqlTokens tokens_;
  std::unique_ptr<SqlBlocks> blocks_;
  bool ownBlocks_ = true;             ///< Whether ";" divides statements, but for those in blocks.
  std::optional<std::size_t> begun_;  ///< Where the statement at hand begins.
};

}  // namespace

std::vector<SqlStatement> SplitStatements(std::string_view text, SqlDialect dialect,
                                          ClientWords clientWords) {
  std::vector<SqlStatement> statements;
  Splitter splitter(text, dialect, clientWords);
  while (const auto found = splitter.Next()) statements.push_back(found->statement);
  return statements;
}

std::optional<SqlStatement> StatementAt(std::string_view text, std::size_t position,
                                        SqlDialect dialect, ClientWords clientWords) {
  position = std::min(position, text.size());
  std::optional<SqlStatement> before;
  Splitter splitter(text, dialect, clientWords);
  while (const auto found = splitter.Next()) {
    const auto& [statement, stop] = *found;
    if (before && position < statement.begin) return before;
    if (position < stop) return statement;
    const std::string_view behind = text.substr(stop, position - stop);
    const bool sameLine = behind.find_first_not_of(blanksOfLine) == std::string_view::npos;
    before = sameLine ? std::optional(statement) : std::nullopt;
  }
  return before;
}

}  // namespace tessel
