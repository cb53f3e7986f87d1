#include "data/providers/text/CommandText.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "contract/sql/SqlTokens.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// Walks over words and ";" of a command text; blanks, comments, quoted parts and other signs are
/// passed over. The dialect is not known here: it reads by what they have in common.
class Words {
 public:
  explicit Words(std::string_view text) : tokens_(text, SqlDialect::Standard) {}

  /// The next word, or ";"; empty at the end.
  std::string_view Next() {
    SqlToken token = tokens_.Next();
    while (token.kind == SqlTokenKind::Quoted || token.kind == SqlTokenKind::Sign)
      token = tokens_.Next();
    return tokens_.TextOf(token);
  }

 private:
  SqlTokens tokens_;
};

bool IsOneOf(std::string_view word, const std::vector<std::string_view>& words) {
  return std::ranges::any_of(words, [&](std::string_view one) { return EqualNoCase(word, one); });
}

}  // namespace

void RefuseNul(const std::string& sql, const std::string& source) {
  const std::size_t at = sql.find('\0');
  if (at == std::string::npos) return;
  throw Error(errorNumber::database, source,
              "The command text holds a NUL character (byte " + std::to_string(at + 1) +
                  "). Nothing was run.");
}

std::string_view FirstWord(std::string_view sql) { return Words(sql).Next(); }

bool HasWord(std::string_view sql, const std::vector<std::string_view>& words) {
  Words all(sql);
  for (std::string_view word = all.Next(); !word.empty(); word = all.Next())
    if (IsOneOf(word, words)) return true;
  return false;
}

bool HasStatement(std::string_view sql, const std::vector<std::string_view>& words) {
  Words all(sql);
  bool atStart = true;
  for (std::string_view word = all.Next(); !word.empty(); word = all.Next()) {
    if (atStart && IsOneOf(word, words)) return true;
    atStart = word == ";";
  }
  return false;
}

bool HasSeveralStatements(std::string_view sql) {
  Words all(sql);
  bool ended = false;
  for (std::string_view word = all.Next(); !word.empty(); word = all.Next()) {
    if (ended && word != ";") return true;
    ended = ended || word == ";";
  }
  return false;
}

bool HasStatement(std::string_view sql, std::string_view first,
                  const std::vector<std::string_view>& others) {
  Words words(sql);
  bool atStart = true;
  bool inside = false;
  for (std::string_view word = words.Next(); !word.empty(); word = words.Next()) {
    if (atStart) inside = EqualNoCase(word, first);
    atStart = word == ";";
    if (inside && IsOneOf(word, others)) return true;
  }
  return false;
}

}  // namespace tessel
