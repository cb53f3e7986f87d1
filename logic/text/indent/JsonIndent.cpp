// JSON is read part by part: the open brackets are kept as a text of their own, one character each,
// so a depth of millions costs as many bytes. What the parts are is checked, what they mean is not.

#include <string_view>
#include <utility>

#include "contract/text/ByteOrderMark.h"
#include "logic/text/indent/TextIndent.h"

namespace tessel {

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }
bool IsHexDigit(char character) {
  return IsDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

class JsonIndenter final : public Indenting {
 public:
  explicit JsonIndenter(std::string_view text) : text_(text), place_(BehindMark(text)) {
    out_.reserve(text_.size() + text_.size() / 4);
  }

  bool Step(std::size_t bytes) override {
    const std::size_t until = place_ + bytes;
    try {
      while (expectsValue_ || !open_.empty()) {
        if (place_ >= until) return true;
        ReadPart();
      }
      place_ = SkipBlanks(text_, place_);
      if (place_ < text_.size()) Fault("the text goes on behind its end");
    } catch (TextFault& fault) {
      fault_ = std::move(fault);
    }
    return false;
  }

  [[nodiscard]] int Percent() const override {
    return text_.empty() ? 100 : static_cast<int>(place_ * 100 / text_.size());
  }

  [[nodiscard]] IndentedText Result() override {
    if (fault_) return {TextStructure::Json, {}, std::move(fault_)};
    return {TextStructure::Json, std::move(out_), std::nullopt};
  }

 private:
  [[noreturn]] void Fault(const char* reason) const { throw TextFault{place_, reason}; }

  /// The next character that is no blank; NUL at the end.
  [[nodiscard]] char Next() {
    place_ = SkipBlanks(text_, place_);
    return place_ < text_.size() ? text_[place_] : '\0';
  }
  void Take(std::size_t count = 1) {
    out_ += text_.substr(place_, count);
    place_ += count;
  }

  /// One part more: nothing calls itself for what is inside of it.
  void ReadPart() {
    if (std::exchange(expectsValue_, false)) ReadValue();
    else ReadNext();
  }

  /// A value, or the beginning of one that holds others.
  void ReadValue() {
    const char first = Next();
    if (first == '{' || first == '[') return Open();
    if (first == '"') return ReadString();
    if (first == '-' || IsDigit(first)) return ReadNumber();
    for (const std::string_view word : {"true", "false", "null"})
      if (text_.substr(place_).starts_with(word)) return Take(word.size());
    Fault(place_ == text_.size() ? "the text ends where a value should stand" : "this is no value");
  }

  /// What is inside follows in steps of its own; an empty one is closed on its line.
  void Open() {
    const char bracket = text_[place_];
    Take();
    const char close = bracket == '{' ? '}' : ']';
    if (Next() == close) return Take();
    open_ += bracket;
    AppendLine(out_, open_.size());
    ReadMember();
  }

  /// What stands behind a value inside of another one.
  void ReadNext() {
    const char next = Next();
    if (next == ',') {
      Take();
      AppendLine(out_, open_.size());
      return ReadMember();
    }
    if (next != (open_.back() == '{' ? '}' : ']')) FaultBehindValue(next);
    open_.pop_back();
    AppendLine(out_, open_.size());
    Take();
  }

  [[noreturn]] void FaultBehindValue(char next) const {
    if (place_ == text_.size())
      Fault(open_.back() == '{' ? "the text ends before its \"}\""
                                : "the text ends before its \"]\"");
    if (next == '}' || next == ']') Fault("this bracket closes none that is open");
    Fault("a comma is missing");
  }

  /// The name of a member; its value comes next.
  void ReadMember() {
    expectsValue_ = true;
    if (open_.back() == '[') return;
    if (Next() != '"') Fault("a name in double quotes should stand here");
    ReadString();
    if (Next() != ':') Fault("a colon is missing");
    Take();
    out_ += ' ';
  }

  void ReadString() {
    const std::size_t start = place_++;
    while (place_ < text_.size() && text_[place_] != '"') {
      if (static_cast<unsigned char>(text_[place_]) < 0x20)
        Fault("a control character stands in a string");
      if (text_[place_] == '\\') SkipEscape();
      else ++place_;
    }
    if (place_ == text_.size()) {
      place_ = start;
      Fault("this string has no end");
    }
    ++place_;
    out_ += text_.substr(start, place_ - start);
  }

  void SkipEscape() {
    const char kind = place_ + 1 < text_.size() ? text_[place_ + 1] : '\0';
    constexpr std::string_view kinds = "\"\\/bfnrtu";
    if (kind == '\0' || kinds.find(kind) == std::string_view::npos) Fault("this is no escape");
    const std::size_t digits = kind == 'u' ? 4 : 0;
    for (std::size_t digit = 0; digit < digits; ++digit)
      if (place_ + 2 + digit >= text_.size() || !IsHexDigit(text_[place_ + 2 + digit]))
        Fault("\"\\u\" wants four hexadecimal digits");
    place_ += 2 + digits;
  }

  /// As many digits as it has, and in the form that the rules allow.
  void ReadNumber() {
    const std::size_t start = place_;
    if (text_[place_] == '-') ++place_;
    if (Is('0')) ++place_;
    else SkipDigits();
    if (Is('.')) {
      ++place_;
      SkipDigits();
    }
    if (Is('e') || Is('E')) {
      ++place_;
      if (Is('+') || Is('-')) ++place_;
      SkipDigits();
    }
    if (place_ < text_.size() && IsDigit(text_[place_])) Fault("a number begins with no 0");
    out_ += text_.substr(start, place_ - start);
  }

  [[nodiscard]] bool Is(char character) const {
    return place_ < text_.size() && text_[place_] == character;
  }
  void SkipDigits() {
    if (place_ >= text_.size() || !IsDigit(text_[place_])) Fault("a digit is missing");
    while (place_ < text_.size() && IsDigit(text_[place_])) ++place_;
  }

  std::string_view text_;
  std::size_t place_;
  std::string out_;
  std::optional<TextFault> fault_;
  bool expectsValue_ = true;
  std::string open_;  ///< The brackets that are open, the outermost first.
};

}  // namespace

std::unique_ptr<Indenting> StartIndentingJson(std::string_view text) {
  return std::make_unique<JsonIndenter>(text);
}

}  // namespace tessel
