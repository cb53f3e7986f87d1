// Names of tables and fields on their way into SQL, for the schema browser and the generated
// statements: taken apart at their dots, looked at for what SQL would misread, and put in the
// quotes that the database takes.

#include "logic/query/completion/NameQuoting.h"

#include <algorithm>
#include <vector>

#include "contract/text/Ascii.h"
#include "logic/query/completion/ReservedWords.h"

namespace tessel {

namespace {

/// Values of the property "Identifier Case Sensitivity".
constexpr std::int64_t keptInCapitals = 1;
constexpr std::int64_t keptInSmallLetters = 2;

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
bool IsSmall(char c) { return c >= 'a' && c <= 'z'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

/// Whether SQL reads a name without quotes as one, in whatever case.
bool IsBareName(std::string_view name) {
  const auto belongs = [](char c) {
    return IsCapital(c) || IsSmall(c) || IsDigit(c) || c == '_' || c == '$' || !IsAscii(c);
  };
  return !name.empty() && !IsDigit(name.front()) && name.front() != '$' &&
         std::ranges::all_of(name, belongs) && !IsReservedWord(name);
}

/// The quote that ends a name which begins with `opening`; 0 when that is none.
char ClosingOf(char opening) {
  switch (opening) {
    case '[': return ']';
    case '"':
    case '`': return opening;
    default: return '\0';
  }
}

/// The length of the quoted name that `text` begins with; 0 when it is not closed. A doubled quote
/// is one inside.
std::size_t QuotedLength(std::string_view text) {
  const char closing = ClosingOf(text.front());
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] != closing) continue;
    if (at + 1 == text.size() || text[at + 1] != closing) return at + 1;
    ++at;
  }
  return 0;
}

/// The length of the part, quoted or bare, that `text` begins with; 0 when there is none.
std::size_t PartLength(std::string_view text) {
  if (!text.empty() && ClosingOf(text.front()) != '\0') return QuotedLength(text);
  return std::min(text.find_first_of(" \t\r\n.,;:()[]\"`'/*-"), text.size());
}

std::string WithoutQuotes(std::string_view quoted) {
  const char closing = quoted.back();
  std::string name;
  for (std::size_t at = 1; at + 1 < quoted.size(); ++at) {
    name += quoted[at];
    if (quoted[at] == closing) ++at;
  }
  return name;
}

/// Calls `take` with each part of a name of which TableNameLength says that it is one.
template <class Take>
void ForEachPart(std::string_view name, Take take) {
  while (!name.empty()) {
    const std::size_t length = PartLength(name);
    take(name.substr(0, length));
    name.remove_prefix(std::min(length + 1, name.size()));
  }
}

/// The parts of a listed table; a dot in `quote`s divides none.
std::vector<std::string> ListedParts(std::string_view listed, char quote) {
  std::vector<std::string> parts;
  while (true) {
    const bool quoted = !listed.empty() && listed.front() == quote;
    const std::size_t inQuotes = quoted ? QuotedLength(listed) : 0;
    const std::size_t end = std::min(listed.find('.', inQuotes), listed.size());
    const std::string_view part = listed.substr(0, end);
    parts.push_back(inQuotes != 0 && inQuotes == end ? WithoutQuotes(part) : std::string(part));
    if (end == listed.size()) return parts;
    listed.remove_prefix(end + 1);
  }
}

}  // namespace

std::string QuoteIdentifier(std::string_view name) {
  const bool startsWithDigit = !name.empty() && IsDigit(name.front());
  if (!startsWithDigit && name.find(' ') == std::string_view::npos) return std::string(name);
  return "[" + std::string(name) + "]";
}

std::size_t TableNameLength(std::string_view text) {
  std::size_t length = 0;
  while (true) {
    const std::size_t part = PartLength(text.substr(length));
    if (part == 0) return 0;
    length += part;
    if (length == text.size() || text[length] != '.') return length;
    ++length;
  }
}

NameQuoting::NameQuoting(const Properties& provider) {
  if (provider.Number("Bracket Identifiers", 1) != 0) return;
  const Property* told = provider.Find("Identifier Quote Character");
  const std::string quote = told == nullptr ? "" : ToText(ToView(told->value));
  quote_ = quote.size() == 1 && quote != " " ? quote.front() : '"';
  const std::int64_t kept = provider.Number("Identifier Case Sensitivity", keptInSmallLetters);
  foldsUpper_ = kept == keptInSmallLetters;
  foldsLower_ = kept == keptInCapitals;
  listsSchemas_ = provider.Number("Schema By Rowsets", 0) != 0;
}

std::string NameQuoting::Quoted(std::string_view name) const {
  std::string quoted(1, quote_);
  for (const char c : name) quoted.append(c == quote_ ? 2 : 1, c);
  return quoted + quote_;
}

/// What becomes of other letters than those of ASCII differs from server to server.
bool NameQuoting::IsFolded(char c) const {
  return !IsAscii(c) || (foldsUpper_ && IsCapital(c)) || (foldsLower_ && IsSmall(c));
}

std::string NameQuoting::Name(std::string_view name) const {
  if (quote_ == '\0') return QuoteIdentifier(name);
  const bool folded = std::ranges::any_of(name, [this](char c) { return IsFolded(c); });
  return IsBareName(name) && !folded ? std::string(name) : Quoted(name);
}

std::string NameQuoting::ListedTable(std::string_view schema, std::string_view table) const {
  const auto part = [this](std::string_view name) {
    const bool unclear = name.find('.') != std::string_view::npos || name.starts_with(quote_);
    return listsSchemas_ && unclear ? Quoted(name) : std::string(name);
  };
  return schema.empty() ? part(table) : part(schema) + "." + part(table);
}

std::string NameQuoting::Table(std::string_view listed) const {
  if (!listsSchemas_) return Name(listed);
  std::string name;
  for (const std::string& part : ListedParts(listed, quote_))
    name.append(name.empty() ? "" : ".").append(Name(part));
  return name;
}

/// A part of a name that a person wrote; the case of a bare one says nothing.
std::string NameQuoting::Part(std::string_view name) const {
  if (ClosingOf(name.front()) != '\0') return Name(WithoutQuotes(name));
  if (quote_ == '\0' || IsBareName(name)) return std::string(name);
  return Quoted(name);
}

std::string NameQuoting::Written(std::string_view text) const {
  const bool quoted = text.find_first_of("[\"`") != std::string_view::npos;
  if (quote_ == '\0' && !quoted) return QuoteIdentifier(text);
  if (TableNameLength(text) != text.size() || text.empty()) return Name(text);
  std::string name;
  ForEachPart(text, [&](std::string_view part) {
    name.append(name.empty() ? "" : ".").append(Part(part));
  });
  return name;
}

}  // namespace tessel
