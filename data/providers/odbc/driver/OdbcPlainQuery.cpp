#include "data/providers/odbc/driver/OdbcPlainQuery.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "contract/text/Ascii.h"
#include "data/providers/text/CommandText.h"

namespace tessel::odbc {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }

bool IsNameByte(char c) {
  const char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// Reads a query from its front.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) { SkipBlanks(); }

  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

  bool TakeSign(char sign) {
    if (!rest_.starts_with(sign)) return false;
    Skip(1);
    return true;
  }
  bool TakeWord(std::string_view word) {
    if (!EqualNoCase(rest_.substr(0, NameSize()), word)) return false;
    Skip(word.size());
    return true;
  }
  /// A name, in quotes or without; empty when there is none.
  std::string TakeName() {
    const char quote = rest_.empty() ? '\0' : rest_.front();
    const std::size_t size = NameSize();
    const std::size_t end = rest_.find(quote == '[' ? ']' : quote, 1);
    const bool isQuoted = quote == '"' || quote == '`' || quote == '[';
    if (isQuoted && end == std::string_view::npos) return {};
    std::string name(isQuoted ? rest_.substr(1, end - 1) : rest_.substr(0, size));
    Skip(isQuoted ? end + 1 : size);
    return name;
  }

 private:
  [[nodiscard]] std::size_t NameSize() const {
    return static_cast<std::size_t>(std::ranges::find_if_not(rest_, IsNameByte) - rest_.begin());
  }
  void Skip(std::size_t size) {
    rest_.remove_prefix(size);
    SkipBlanks();
  }
  void SkipBlanks() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
  }

  std::string_view rest_;
};

/// "*", "name" or "name.name", "name.*".
bool TakeColumn(Reader& query) {
  if (query.TakeSign('*')) return true;
  if (query.TakeName().empty()) return false;
  while (query.TakeSign('.'))
    if (!query.TakeSign('*') && query.TakeName().empty()) return false;
  return true;
}

bool MayFollow(Reader& query) {
  constexpr std::array<std::string_view, 4> words = {"where", "group", "order", "limit"};
  return query.AtEnd() || query.TakeSign(';') ||
         std::ranges::any_of(words, [&](std::string_view word) { return query.TakeWord(word); });
}

/// "name", "schema.name" or "catalog.schema.name"; nothing when it is none of them.
std::optional<PlainTable> TakeTable(Reader& query) {
  PlainTable table{.catalog = {}, .schema = {}, .name = query.TakeName()};
  for (int parts = 1; !table.name.empty() && query.TakeSign('.'); ++parts) {
    if (parts > 2) return std::nullopt;
    table.catalog = std::exchange(table.schema, std::exchange(table.name, query.TakeName()));
  }
  return table.name.empty() ? std::nullopt : std::optional(table);
}

}  // namespace

std::optional<PlainTable> PlainTableOf(std::string_view sql) {
  Reader query(sql);
  if (!query.TakeWord("select")) return std::nullopt;
  do {
    if (!TakeColumn(query)) return std::nullopt;
  } while (query.TakeSign(','));
  if (!query.TakeWord("from")) return std::nullopt;
  std::optional<PlainTable> table = TakeTable(query);
  if (!table || !MayFollow(query)) return std::nullopt;
  if (HasWord(sql, {"union", "intersect", "except"}) || HasSeveralStatements(sql))
    return std::nullopt;
  return table;
}

bool NamesPlainColumns(std::string_view sql, std::string_view table) {
  const std::optional<PlainTable> named = PlainTableOf(sql);
  return named && EqualNoCase(named->name, table);
}

}  // namespace tessel::odbc
