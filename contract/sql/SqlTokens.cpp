#include "contract/sql/SqlTokens.h"

#include <algorithm>
#include <array>

#include "contract/text/Ascii.h"
#include "contract/text/ByteOrderMark.h"

namespace tessel {

namespace {

constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// A byte that goes on with a word in every dialect.
constexpr bool IsPlainWordByte(char c) {
  const char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || IsDigit(c) || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// The signs that are letters of words, too.
constexpr std::string_view WordSigns(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::Standard: return "";
    case SqlDialect::SqlServer: return "@#$";
    default: return "$";
  }
}

/// The signs that may begin a comment or a quoted part.
constexpr std::string_view Openings(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::Standard: return "-/'\"`";
    case SqlDialect::PostgreSQL: return "-/'\"$";
    case SqlDialect::MariaDB: return "-/#'\"`*";
    case SqlDialect::SQLite: return "-/'\"`[";
    case SqlDialect::SqlServer: return "-/'\"[";
  }
  return "";
}

/// Whether a word may begin with one of its signs.
constexpr bool BeginsWithSigns(SqlDialect dialect) {
  return dialect == SqlDialect::MariaDB || dialect == SqlDialect::SqlServer;
}

constexpr std::uint8_t blank = 1;
constexpr std::uint8_t wordBegin = 2;
constexpr std::uint8_t wordByte = 4;
constexpr std::uint8_t opening = 8;

/// What each byte may be in a dialect; a sign that is nothing else has none.
constexpr SqlByteKinds KindsOf(SqlDialect dialect) {
  SqlByteKinds kinds{};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const char c = static_cast<char>(i);
    const bool letter = IsPlainWordByte(c);
    const bool sign = WordSigns(dialect).find(c) != std::string_view::npos;
    if (IsBlank(c)) kinds[i] |= blank;
    if (letter || sign) kinds[i] |= wordByte;
    if (letter || (sign && BeginsWithSigns(dialect))) kinds[i] |= wordBegin;
    if (Openings(dialect).find(c) != std::string_view::npos) kinds[i] |= opening;
  }
  return kinds;
}

constexpr std::array<SqlByteKinds, 5> kindsOfDialects{
    KindsOf(SqlDialect::Standard), KindsOf(SqlDialect::PostgreSQL), KindsOf(SqlDialect::MariaDB),
    KindsOf(SqlDialect::SQLite), KindsOf(SqlDialect::SqlServer)};

bool NestsComments(SqlDialect dialect) {
  return dialect == SqlDialect::PostgreSQL || dialect == SqlDialect::SqlServer;
}

}  // namespace

SqlTokens::SqlTokens(std::string_view text, SqlDialect dialect)
    : text_(text),
      dialect_(dialect),
      kinds_(&kindsOfDialects.at(static_cast<std::size_t>(dialect))) {
  at_ = BehindMark(text_);
}

SqlToken SqlTokens::Next() {
  PassFiller();
  const std::size_t begin = at_;
  const SqlTokenKind kind = begin == text_.size() ? SqlTokenKind::End : Take();
  return {kind, begin, at_};
}

bool SqlTokens::Is(std::size_t position, std::uint8_t kinds) const {
  return ((*kinds_)[static_cast<unsigned char>(text_[position])] & kinds) != 0;
}

// --- Blanks and comments ------------------------------------------------------------------------

void SqlTokens::PassFiller() {
  do {
    while (at_ < text_.size() && Is(at_, blank)) ++at_;
  } while (at_ < text_.size() && Is(at_, opening) && !AtDelimiter() && PassComment());
}

bool SqlTokens::PassComment() {
  if (AtLineComment()) {
    at_ = std::min(text_.size(),
                   text_.find_first_of(dialect_ == SqlDialect::PostgreSQL ? "\n\r" : "\n", at_));
    return true;
  }
  if (!StartsWith("/*") || AtCode()) return false;
  PassBlockComment();
  return true;
}

bool SqlTokens::AtLineComment() const {
  if (dialect_ != SqlDialect::MariaDB) return StartsWith("--");
  if (text_[at_] == '#') return true;
  const char behind = Ahead(2);  // NUL at the end of the text, which counts as a control character.
  return StartsWith("--") && ((behind >= '\0' && behind <= ' ') || behind == '\x7F');
}

void SqlTokens::PassBlockComment() {
  if (!NestsComments(dialect_)) return GoBehind("*/", at_ + 2);
  std::size_t depth = 0;
  do {
    if (StartsWith("/*")) ++depth;
    else if (StartsWith("*/")) --depth;
    at_ = std::min(text_.size(), at_ + 2);
    if (depth > 0)
      while (at_ < text_.size() && !StartsWith("/*") && !StartsWith("*/")) ++at_;
  } while (depth > 0 && at_ < text_.size());
}

bool SqlTokens::AtCode() const {
  if (dialect_ != SqlDialect::MariaDB) return false;
  const std::size_t mark = StartsWith("/*!") ? 3 : StartsWith("/*M!") ? 4 : 0;
  // No server ever has this version: such a comment speaks to the client that reads a dump.
  return mark != 0 && text_.substr(at_ + mark, 6) != "999999";
}

bool SqlTokens::AtDelimiter() const {
  if (delimiter_.empty() || text_[at_] != delimiter_.front() || !StartsWith(delimiter_))
    return false;
  // One of letters is a word of its own: "go" does not begin "gone".
  return !IsPlainWordByte(delimiter_.back()) || !IsPlainWordByte(Ahead(delimiter_.size()));
}

void SqlTokens::GoBehind(std::string_view end, std::size_t from) {
  const std::size_t found = text_.find(end, from);
  at_ = found == std::string_view::npos ? text_.size() : found + end.size();
}

// --- Pieces -------------------------------------------------------------------------------------

SqlTokenKind SqlTokens::Take() {
  if (AtDelimiter()) {
    at_ += delimiter_.size();
    return SqlTokenKind::Delimiter;
  }
  if (Is(at_, wordBegin)) return TakeWord();
  if (Is(at_, opening)) return TakeOpening();
  ++at_;
  return SqlTokenKind::Sign;
}

SqlTokenKind SqlTokens::TakeOpening() {
  const char c = text_[at_];
  const bool backslashes = dialect_ == SqlDialect::MariaDB && c != '`';
  if (c == '\'' || c == '"' || c == '`')
    return TakeQuoted(c, backslashes ? Escapes::Backslash : Escapes::Doubled);
  if (c == '[')
    return TakeQuoted(']', dialect_ == SqlDialect::SQLite ? Escapes::None : Escapes::Doubled);
  if (const std::size_t tagSize = DollarTagSize()) return TakeDollarQuoted(tagSize);
  if (AtCode() || (inCode_ && StartsWith("*/"))) return TakeCodeMark();
  ++at_;
  return SqlTokenKind::Sign;
}

SqlTokenKind SqlTokens::TakeWord() {
  const std::size_t end = WordEnd();
  const bool isE = end - at_ == 1 && AsciiLower(text_[at_]) == 'e';
  at_ = end;
  if (isE && dialect_ == SqlDialect::PostgreSQL && Ahead(0) == '\'') return TakeEscapeString();
  return SqlTokenKind::Word;
}

std::size_t SqlTokens::WordEnd() const {
  std::size_t end = at_ + 1;
  // In PostgreSQL a letter or "$" behind digits begins something else.
  const bool digits = dialect_ == SqlDialect::PostgreSQL && IsDigit(text_[at_]);
  while (end < text_.size() && (digits ? IsDigit(text_[end]) : Is(end, wordByte))) ++end;
  if (!delimiter_.starts_with('$')) return end;
  // Such a delimiter, as "$$", ends a word, though its signs could be letters of one.
  const std::string_view word = text_.substr(at_, end - at_);
  return at_ + std::min(word.size(), word.find(delimiter_));
}

SqlTokenKind SqlTokens::TakeCodeMark() {
  inCode_ = text_[at_] == '/';
  at_ += inCode_ && text_[at_ + 2] == 'M' ? 4 : inCode_ ? 3 : 2;
  while (inCode_ && at_ < text_.size() && IsDigit(text_[at_])) ++at_;
  return SqlTokenKind::CodeMark;
}

SqlTokenKind SqlTokens::TakeQuoted(char close, Escapes escapes) {
  for (++at_; at_ < text_.size(); ++at_) {
    const char c = text_[at_];
    if (c == '\\' && escapes == Escapes::Backslash) {
      ++at_;
    } else if (c == close) {
      if (escapes == Escapes::None || Ahead(1) != close) break;
      ++at_;
    }
  }
  at_ = std::min(text_.size(), at_ + 1);
  return SqlTokenKind::Quoted;
}

SqlTokenKind SqlTokens::TakeEscapeString() {
  do TakeQuoted('\'', Escapes::Backslash);
  while (StringGoesOn());
  return SqlTokenKind::Quoted;
}

/// A string of PostgreSQL goes on, by the same rules, in quotes on a line below.
bool SqlTokens::StringGoesOn() {
  const std::size_t next = std::min(text_.size(), text_.find_first_not_of(" \t\n\v\f\r", at_));
  const bool goesOn = text_.substr(next, 1) == "'" &&
                      text_.substr(at_, next - at_).find_first_of("\n\r") != std::string_view::npos;
  if (goesOn) at_ = next;
  return goesOn;
}

std::size_t SqlTokens::DollarTagSize() const {
  if (text_[at_] != '$' || IsDigit(Ahead(1))) return 0;
  std::size_t end = at_ + 1;
  while (end < text_.size() && IsPlainWordByte(text_[end])) ++end;
  return end < text_.size() && text_[end] == '$' ? end + 1 - at_ : 0;
}

SqlTokenKind SqlTokens::TakeDollarQuoted(std::size_t tagSize) {
  GoBehind(text_.substr(at_, tagSize), at_ + tagSize);
  return SqlTokenKind::Quoted;
}

}  // namespace tessel
