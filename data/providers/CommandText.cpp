#include "data/providers/CommandText.h"

#include <algorithm>

#include "contract/base/Ascii.h"
#include "contract/base/Error.h"

namespace tessel {

namespace {

bool IsWordByte(char c) {
  const char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// Walks over words and ";" of a command text; blanks, comments, quoted parts and other signs are
/// passed over.
class Words {
 public:
  explicit Words(std::string_view text) : rest_(text) {}

  /// The next word, or ";"; empty at the end.
  std::string_view Next() {
    while (!rest_.empty()) {
      if (rest_.front() == ';') return Take(1);
      if (IsWordByte(rest_.front())) return Take(WordSize());
      Take(SkipSize());
    }
    return {};
  }

 private:
  std::string_view Take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  [[nodiscard]] std::size_t WordSize() const {
    return static_cast<std::size_t>(std::ranges::find_if_not(rest_, IsWordByte) - rest_.begin());
  }
  [[nodiscard]] std::size_t SkipSize() const {
    if (rest_.starts_with("--")) return rest_.find('\n');
    if (rest_.starts_with("/*")) return UpTo("*/");
    const char c = rest_.front();
    return c == '\'' || c == '"' || c == '`' ? UpTo(rest_.substr(0, 1)) : 1;
  }
  [[nodiscard]] std::size_t UpTo(std::string_view end) const {
    const std::size_t found = rest_.find(end, end.size());
    return found == std::string_view::npos ? found : found + end.size();
  }

  std::string_view rest_;
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
