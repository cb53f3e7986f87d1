// A reader of JSON documents of the size of a plan: a tree of values, each read where it stands.

#include "logic/plan/reading/JsonTree.h"

#include <algorithm>
#include <charconv>

#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr int deepest = 500;
constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view numberSigns = "+-.0123456789eE";

char Byte(char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); }

/// Half of a pair without its other half stands for no character.
void AppendUtf8(char32_t code, std::string& text) {
  if ((code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) code = 0xFFFD;
  if (code < 0x80) {
    text += Byte(code);
    return;
  }
  if (code < 0x800) text += Byte(0xC0U | (code >> 6U));
  else if (code < 0x10000) text += Byte(0xE0U | (code >> 12U));
  else text.append({Byte(0xF0U | (code >> 18U)), Byte(0x80U | ((code >> 12U) & 0x3FU))});
  if (code >= 0x800) text += Byte(0x80U | ((code >> 6U) & 0x3FU));
  text += Byte(0x80U | (code & 0x3FU));
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  JsonValue Document() {
    JsonValue value = Value();
    PassBlanks();
    if (at_ != text_.size()) Fail("something stands behind its end");
    return value;
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    RaiseAppError("This is no JSON: " + what + ", at byte " + std::to_string(at_ + 1) + ".");
  }

  void PassBlanks() { at_ = std::min(text_.find_first_not_of(blanks, at_), text_.size()); }

  [[nodiscard]] char Ahead() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  bool Take(char sign) {
    PassBlanks();
    if (Ahead() != sign) return false;
    ++at_;
    return true;
  }

  void Require(char sign) {
    if (!Take(sign)) Fail(std::string("'") + sign + "' is missing");
  }

  bool TakeWord(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }

  JsonValue Value() {
    PassBlanks();
    if (++depth_ > deepest) Fail("it is nested too deeply");
    JsonValue value;
    if (Take('{')) value = Object();
    else if (Take('[')) value = Array();
    else if (Ahead() == '"') value = {JsonValue::Kind::Text, Text(), {}, {}};
    else if (TakeWord("true")) value = {JsonValue::Kind::Boolean, "true", {}, {}};
    else if (TakeWord("false")) value = {JsonValue::Kind::Boolean, "false", {}, {}};
    else if (!TakeWord("null")) value = Number();
    --depth_;
    return value;
  }

  JsonValue Object() {
    JsonValue value{JsonValue::Kind::Object, {}, {}, {}};
    if (Take('}')) return value;
    do {
      PassBlanks();
      std::string name = Text();
      Require(':');
      value.members.emplace_back(std::move(name), Value());
    } while (Take(','));
    Require('}');
    return value;
  }

  JsonValue Array() {
    JsonValue value{JsonValue::Kind::Array, {}, {}, {}};
    if (Take(']')) return value;
    do value.items.push_back(Value());
    while (Take(','));
    Require(']');
    return value;
  }

  JsonValue Number() {
    const std::size_t end = std::min(text_.find_first_not_of(numberSigns, at_), text_.size());
    const std::string_view digits = text_.substr(at_, end - at_);
    double number = 0;
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (digits.empty() || stop != digits.data() + digits.size()) Fail("a value is expected");
    at_ = end;
    return {JsonValue::Kind::Number, std::string(digits), {}, {}};
  }

  std::string Text() {
    if (Ahead() != '"') Fail("a text is expected");
    ++at_;
    std::string text;
    while (Ahead() != '"') {
      if (at_ >= text_.size()) Fail("a text has no end");
      if (Ahead() == '\\') AppendEscaped(text);
      else text += text_[at_++];
    }
    ++at_;
    return text;
  }

  void AppendEscaped(std::string& text) {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meant = "\"\\/\b\f\n\r\t";
    ++at_;
    const std::size_t place = letters.find(Ahead());
    if (place != std::string_view::npos) text += meant[place];
    else if (Ahead() != 'u') Fail("an escape is unknown");
    ++at_;
    if (place == std::string_view::npos) AppendUtf8(CodePoint(), text);
  }

  /// One behind "\u", with the second half of a pair where it is the first.
  char32_t CodePoint() {
    const char32_t first = Hex();
    if (first < 0xD800 || first > 0xDBFF || !TakeWord("\\u")) return first;
    return 0x10000 + ((first - 0xD800) << 10U) + (Hex() - 0xDC00);
  }

  char32_t Hex() {
    unsigned number = 0;
    const std::string_view digits = text_.substr(at_, 4);
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (digits.size() != 4 || stop != digits.data() + 4) Fail("an escape is unknown");
    at_ += 4;
    return number;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

const JsonValue* JsonValue::Find(std::string_view name) const {
  for (const auto& [member, value] : members)
    if (member == name) return &value;
  return nullptr;
}

std::string JsonValue::TextOf(std::string_view name) const {
  const JsonValue* member = Find(name);
  return member == nullptr ? std::string() : member->text;
}

std::optional<double> JsonValue::NumberOf(std::string_view name) const {
  const std::string digits = TextOf(name);
  double number = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (digits.empty() || error != std::errc() || stop != digits.data() + digits.size())
    return std::nullopt;
  return number;
}

JsonValue ReadJson(std::string_view text) { return Reader(text).Document(); }

}  // namespace tessel
