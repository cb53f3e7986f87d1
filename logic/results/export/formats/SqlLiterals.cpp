// Literals of SQL, database by database: where they agree is less than one would think. Texts,
// bytes, truths and the numbers that are none have a form of their own in nearly each of them.

#include "logic/results/export/formats/SqlLiterals.h"

#include "contract/base/Properties.h"
#include "contract/text/NumberText.h"
#include "logic/query/completion/NameQuoting.h"

namespace tessel {

namespace {

struct Dialect {
  std::string_view name;  ///< As a person calls it.
  char quote;             ///< Before a name.
  char closing;           ///< Behind it, doubled inside.
  std::string_view preamble;
};

const Dialect& Of(SqlDialect dialect) {
  static constexpr Dialect postgres{
      "PostgreSQL", '"', '"',
      "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n"};
  // In such a comment MariaDB and its kin run it, and a driver that keeps the character set to
  // itself lets it through.
  static constexpr Dialect maria{"MariaDB", '`', '`', "/*!40101 SET NAMES utf8mb4 */;\n"};
  static constexpr Dialect sqlite{"SQLite", '"', '"', ""};
  static constexpr Dialect server{"SQL Server", '[', ']', ""};
  static constexpr Dialect standard{"standard SQL", '"', '"', ""};
  switch (dialect) {
    case SqlDialect::PostgreSQL: return postgres;
    case SqlDialect::MariaDB: return maria;
    case SqlDialect::SQLite: return sqlite;
    case SqlDialect::SqlServer: return server;
    case SqlDialect::Standard: return standard;
  }
  return standard;
}

/// A text in a form that has to stand between single quotes; `backslash`: it is an escape there.
void AppendInside(TextSink& sink, std::string_view text, bool backslash) {
  if (!backslash) return AppendDoubled(sink, text, '\'');
  AppendInPieces(sink, text, [&](std::string_view piece) {
    for (const char c : piece) {
      if (c == '\0') sink.Text() += "\\0";
      else if (c == '\r') sink.Text() += "\\r";
      else if (c == '\'' || c == '\\') sink.Text().append(2, c);
      else sink.Text() += c;
    }
  });
}

bool HasReturn(std::string_view text) { return text.find('\r') != std::string_view::npos; }

bool HasNul(std::string_view text) { return text.find('\0') != std::string_view::npos; }

}  // namespace

std::string SqlLiterals::Name(std::string_view name) const {
  const Dialect& dialect = Of(dialect_);
  std::string quoted(1, dialect.quote);
  for (const char c : name) quoted.append(c == dialect.closing ? 2 : 1, c);
  return quoted + dialect.closing;
}

std::string SqlLiterals::Table(std::string_view written) const {
  if (TableNameLength(written) != written.size()) return Name(written);
  Properties provider;
  provider.Set("Bracket Identifiers", std::int64_t{0});
  provider.Set("Identifier Quote Character",
               std::string(1, dialect_ == SqlDialect::MariaDB ? '`' : '"'));
  return NameQuoting(provider).Written(written);
}

std::string_view SqlLiterals::Preamble() const { return Of(dialect_).preamble; }

void SqlLiterals::Append(TextSink& sink, const ValueView& value, DataType type,
                         const CellPlace& place) const {
  if (const Special special = SpecialOf(value); special != Special::None)
    return AppendSpecial(sink, special, place);
  if (IsNull(value)) sink.Text() += "NULL";
  else if (const auto* flag = std::get_if<bool>(&value)) AppendFlag(sink, *flag);
  else if (const auto* text = std::get_if<std::string_view>(&value)) AppendText(sink, *text, place);
  else if (const auto* moment = std::get_if<MomentView>(&value)) AppendQuoted(sink, moment->text);
  else if (const auto* binary = std::get_if<BinaryView>(&value)) AppendBytes(sink, *binary);
  else if (const auto* decimal = std::get_if<DecimalView>(&value))
    AppendDecimal(sink, decimal->digits);
  else if (const auto* number = std::get_if<double>(&value)) AppendFloating(sink, *number);
  else if (const auto* single = std::get_if<float>(&value)) AppendFloating(sink, *single);
  else if (type == DataType::Boolean && (ToText(value) == "0" || ToText(value) == "1"))
    AppendFlag(sink, ToText(value) == "1");
  else tessel::AppendText(value, sink.Text());
}

void SqlLiterals::AppendFlag(TextSink& sink, bool flag) const {
  const bool word = dialect_ == SqlDialect::PostgreSQL || dialect_ == SqlDialect::Standard;
  if (word) sink.Text() += flag ? "TRUE" : "FALSE";
  else sink.Text() += flag ? '1' : '0';
}

/// A column of SQLite keeps any bytes as text; others take what is text only. The programs that
/// read statements from files take a return before a line end away.
void SqlLiterals::AppendText(TextSink& sink, std::string_view text, const CellPlace& place) const {
  if (dialect_ == SqlDialect::SQLite && (HasNul(text) || HasReturn(text) || !IsValidUtf8(text))) {
    sink.Text() += "CAST(";
    AppendBytes(sink, {std::as_bytes(std::span(text))});
    sink.Text() += " AS TEXT)";
    return;
  }
  RefuseNoText(text, place);
  if (dialect_ == SqlDialect::SqlServer) sink.Text() += 'N';
  AppendQuoted(sink, text);
}

void SqlLiterals::RefuseNoText(std::string_view text, const CellPlace& place) const {
  if (!IsValidUtf8(text))
    RaiseAtCell(place, "the text is no valid UTF-8, and " + std::string(Of(dialect_).name) +
                           " takes no other.");
  if (dialect_ != SqlDialect::MariaDB && HasNul(text))
    RaiseAtCell(place, "the text holds a NUL character, and " + std::string(Of(dialect_).name) +
                           " has no literal for it.");
}

void SqlLiterals::AppendQuoted(TextSink& sink, std::string_view text) const {
  sink.Text() += '\'';
  AppendInside(sink, text, dialect_ == SqlDialect::MariaDB);
  sink.Text() += '\'';
}

void SqlLiterals::AppendBytes(TextSink& sink, BinaryView binary) const {
  const bool server = dialect_ == SqlDialect::SqlServer;
  sink.Text() += server ? "0x" : dialect_ == SqlDialect::PostgreSQL ? "'\\x" : "X'";
  AppendHex(sink, binary);
  if (!server) sink.Text() += '\'';
}

/// PostgreSQL has words for all of them, SQLite a number for the infinite ones.
void SqlLiterals::AppendSpecial(TextSink& sink, Special special, const CellPlace& place) const {
  const bool negative = special == Special::MinusInfinity;
  if (dialect_ == SqlDialect::PostgreSQL) {
    sink.Text() += special == Special::NotANumber ? "'NaN'"
                   : negative                     ? "'-Infinity'"
                                                  : "'Infinity'";
  } else if (dialect_ == SqlDialect::SQLite && special != Special::NotANumber) {
    sink.Text() += negative ? "-9e999" : "9e999";
  } else {
    RaiseAtCell(place, std::string(special == Special::NotANumber ? "not-a-number" : "infinity") +
                           " is no number of " + std::string(Of(dialect_).name) + ".");
  }
}

/// SQLite would read bare digits in double precision.
void SqlLiterals::AppendDecimal(TextSink& sink, std::string_view digits) const {
  if (dialect_ == SqlDialect::SQLite || !IsPlainNumber(digits)) AppendQuoted(sink, digits);
  else sink.Text() += digits;
}

/// Digits alone would be a whole number.
template <class Number>
void SqlLiterals::AppendFloating(TextSink& sink, Number number) const {
  const std::size_t start = sink.Text().size();
  AppendNumber(number, sink.Text());
  if (sink.Text().find_first_of(".e", start) == std::string::npos) sink.Text() += ".0";
}

}  // namespace tessel
