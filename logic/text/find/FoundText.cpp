#include "logic/text/find/FoundText.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "contract/text/Ascii.h"
#include "logic/text/find/PatternMatcher.h"

namespace tessel {

namespace {

constexpr std::size_t stepsAtOnce = 1'000'000;

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// The text as it stands.
class SameText final : public TextTest {
 public:
  explicit SameText(std::string_view what) : what_(what) {}
  [[nodiscard]] bool Holds(std::string_view text) const override {
    return text.find(what_) != std::string_view::npos;
  }

 private:
  std::string what_;
};

/// A text of ASCII characters, whose case does not count.
class AsciiText final : public TextTest {
 public:
  explicit AsciiText(std::string_view what) : what_(what) {
    std::ranges::transform(what_, what_.begin(), [](char c) { return AsciiLower(c); });
  }
  [[nodiscard]] bool Holds(std::string_view text) const override {
    if (text.size() < what_.size()) return false;
    const std::size_t last = text.size() - what_.size();
    for (std::size_t at = 0; at <= last; ++at)
      if (AsciiLower(text[at]) == what_[0] && StandsAt(text.data() + at)) return true;
    return false;
  }

 private:
  [[nodiscard]] bool StandsAt(const char* text) const {
    for (std::size_t i = 1; i < what_.size(); ++i)
      if (AsciiLower(text[i]) != what_[i]) return false;
    return true;
  }

  std::string what_;
};

/// Any pattern, by following it. A text without its case is looked for as it stands first.
class PatternText final : public TextTest {
 public:
  PatternText(std::string_view what, const FindOptions& options)
      : program_(MakePattern(what, options)) {
    if (!options.wholeWords && !options.regularExpression) plain_ = what;
  }
  [[nodiscard]] bool Holds(std::string_view text) const override {
    if (!plain_.empty() && text.find(plain_) != std::string_view::npos) return true;
    if (!plain_.empty() && IsAscii(text)) return false;
    PatternMatcher matcher(program_, text);
    matcher.Begin(0, text.size(), text.size());
    StepState state = StepState::Running;
    while (state == StepState::Running) state = matcher.Step(stepsAtOnce);
    return state == StepState::Found;
  }

 private:
  PatternProgram program_;
  std::string plain_;  ///< A text with other characters than ASCII; empty: it is none.
};

}  // namespace

std::shared_ptr<const TextTest> MakeTextTest(std::string_view what, const FindOptions& options) {
  const bool isPlain = !options.wholeWords && !options.regularExpression;
  if (isPlain && options.matchCase) return std::make_shared<SameText>(what);
  if (isPlain && IsAscii(what)) return std::make_shared<AsciiText>(what);
  return std::make_shared<PatternText>(what, options);
}

}  // namespace tessel
