#include "tests/support/TagScannerProperty.h"

#include "contract/base/Error.h"
#include "logic/program/Characters.h"
#include "logic/tags/TagScanner.h"

namespace tessel::test {

namespace {

/// What came of a text: the new one or the reason why there is none.
struct Outcome {
  std::string text;
  int usedSources = 0;
  std::string failure;
  int resolved = 0;

  bool operator==(const Outcome&) const = default;
};

/// Answers with texts that look like tags and literals themselves. A name that begins with "!" has
/// no text, and one tag too many is cancelled.
class OddResolver final : public TagResolver {
 public:
  bool Yield() override { return ++count != mostTags; }
  std::string Resolve(const Tag& tag) override { return TextOf(tag.type, tag.name, tag.flags); }

  static std::string TextOf(char type, std::string_view name, int flags) {
    if (name.starts_with('!')) throw Error(errorNumber::application, "Tessel", std::string(name));
    std::string text = MakeTagText(name, flags, type);
    return text + "'<%?" + text;
  }

  static constexpr int mostTags = 6;
  int count = 0;
};

Outcome OutcomeOfScanner(std::string_view text) {
  Outcome outcome;
  OddResolver resolver;
  try {
    const SubstitutedText result = SubstituteTags(text, resolver);
    outcome.text = result.text;
    outcome.usedSources = result.usedSources;
  } catch (const Error& error) {
    outcome.failure = error.Description();
  }
  outcome.resolved = resolver.count;
  return outcome;
}

/// The slow scanner. Positions are counted from 1.
class StepScanner {
 public:
  explicit StepScanner(std::string_view text) { outcome_.text = text; }

  Outcome Run() {
    while (outcome_.failure.empty() && i_ + 2 <= outcome_.text.size() && Step()) {
    }
    if (!outcome_.failure.empty()) {
      outcome_.text.clear();
      outcome_.usedSources = 0;
    }
    return outcome_;
  }

 private:
  [[nodiscard]] char At(std::size_t position) const { return outcome_.text[position - 1]; }
  /// Position of the first `part` from `from` on; 0 for none.
  [[nodiscard]] std::size_t Find(std::string_view part, std::size_t from) const {
    const std::size_t found = outcome_.text.find(part, from - 1);
    return found == std::string::npos ? 0 : found + 1;
  }

  /// False when the scan ends.
  bool Step() {
    const char c = At(i_);
    if (c != '<' && c != '{') return StepOver(c);
    const char m = At(i_ + 1);
    if (m == '%' || m == '*') TakeTag(c, m);
    else ++i_;
    return true;
  }

  bool StepOver(char c) {
    if (c == '\'') {
      const std::size_t end = Find("'", i_ + 1);
      if (end == 0) return false;
      i_ = end;
    }
    ++i_;
    return true;
  }

  void TakeTag(char c, char m) {
    const char t = At(i_ + 2);
    const std::size_t kind = std::string_view("=?^").find(t);
    if (kind == std::string_view::npos) return FailUnknown();
    const std::string end = {m, static_cast<char>(c + 2)};
    const std::size_t j = Find(end, i_ + 3);
    if (j == 0) return Fail("Missing '" + end + "'");
    const std::string name = outcome_.text.substr(i_ + 2, j - (i_ + 3));
    if (++outcome_.resolved == OddResolver::mostTags) return Fail("Cancelled.");
    const int flags = (m == '*' ? 1 : 0) + (c == '{' ? 2 : 0);
    try {
      Replace(j, OddResolver::TextOf(t, name, flags));
    } catch (const Error& error) {
      return Fail(error.Description());
    }
    outcome_.usedSources |= 1 << kind;
  }

  void Replace(std::size_t end, const std::string& resolved) {
    outcome_.text = outcome_.text.substr(0, i_ - 1) + resolved + outcome_.text.substr(end + 2 - 1);
    i_ += resolved.size();
  }

  void FailUnknown() {
    const std::string_view rest = std::string_view(outcome_.text).substr(i_ + 1);
    Fail("Unknown tag type: '" + std::string(FirstCharacter(rest)) + "'");
  }
  void Fail(const std::string& reason) { outcome_.failure = reason; }

  Outcome outcome_;
  std::size_t i_ = 1;
};

bool HoldsTagHead(std::string_view text) {
  for (const std::string_view head : {"<%", "<*", "{%", "{*"})
    if (text.find(head) != std::string_view::npos) return true;
  return false;
}

std::string Describe(const Outcome& outcome) {
  return "text [" + outcome.text + "] sources " + std::to_string(outcome.usedSources) +
         " failure [" + outcome.failure + "] tags " + std::to_string(outcome.resolved);
}

}  // namespace

std::string ComplaintAboutTags(std::string_view text) {
  const Outcome found = OutcomeOfScanner(text);
  const Outcome expected = StepScanner(text).Run();
  if (!(found == expected))
    return "of [" + std::string(text) + "]: " + Describe(found) + ", expected " +
           Describe(expected);
  if (!HoldsTagHead(text) && found.text != text)
    return "a text without tags was changed: [" + std::string(text) + "]";
  return {};
}

}  // namespace tessel::test
