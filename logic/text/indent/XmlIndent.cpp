// XML is read twice: the first time to see which elements hold text of their own, and whether the
// tags belong together; the second time to write it. An element that holds text is left on its line
// with all that it holds, for blanks may matter there.

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/text/ByteOrderMark.h"
#include "logic/text/indent/TextIndent.h"

namespace tessel {

namespace {

enum class Part { Text, Open, Close, Alone, Other };

struct Token {
  Part part = Part::Text;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// The parts of a text one after another. Raises TextFault.
class XmlParts {
 public:
  explicit XmlParts(std::string_view text) : text_(text), place_(BehindMark(text)) {}

  [[nodiscard]] bool AtEnd() const { return place_ == text_.size(); }
  [[nodiscard]] std::size_t Place() const { return place_; }

  Token Next() {
    const std::size_t begin = place_;
    if (text_[place_] != '<') {
      place_ = std::min(text_.find('<', place_), text_.size());
      return {Part::Text, begin, place_};
    }
    const std::string_view rest = text_.substr(place_);
    if (rest.starts_with("<!--")) return Closed("-->", "this comment has no end");
    if (rest.starts_with("<![CDATA["))
      return {Part::Text, begin, Closed("]]>", "this CDATA section has no end").end};
    if (rest.starts_with("<?")) return Closed("?>", "this instruction has no end");
    if (rest.starts_with("<!")) return Declaration();
    return Tag();
  }

 private:
  [[noreturn]] void Fault(const char* reason) const { throw TextFault{place_, reason}; }

  Token Closed(std::string_view ending, const char* reason) {
    const std::size_t begin = place_;
    const std::size_t at = text_.find(ending, place_ + 2);
    if (at == std::string_view::npos) Fault(reason);
    place_ = at + ending.size();
    return {Part::Other, begin, place_};
  }

  /// A document type may hold declarations of its own between brackets.
  Token Declaration() {
    const std::size_t begin = place_;
    std::size_t depth = 0;
    for (std::size_t at = place_; at < text_.size(); ++at) {
      if (text_[at] == '<' || text_[at] == '[') ++depth;
      if (text_[at] == ']') --depth;
      if (text_[at] != '>' || --depth != 0) continue;
      place_ = at + 1;
      return {Part::Other, begin, place_};
    }
    Fault("this declaration has no end");
  }

  /// A ">" in the quotes of an attribute ends no tag.
  Token Tag() {
    const std::size_t begin = place_;
    const std::size_t end = EndOfTag();
    const bool closes = text_[begin + 1] == '/';
    const bool alone = !closes && text_[end - 2] == '/';
    place_ = end;
    return {closes ? Part::Close : alone ? Part::Alone : Part::Open, begin, end};
  }

  [[nodiscard]] std::size_t EndOfTag() const {
    char quote = 0;
    for (std::size_t at = place_ + 1; at < text_.size(); ++at) {
      const char character = text_[at];
      if (quote != 0) quote = character == quote ? '\0' : quote;
      else if (character == '"' || character == '\'') quote = character;
      else if (character == '<') break;
      else if (character == '>' && at > place_ + 1) return at + 1;
    }
    Fault(quote != 0 ? "an attribute of this tag has no closing quote" : "this tag has no end");
  }

  std::string_view text_;
  std::size_t place_;
};

bool IsBlankText(std::string_view text) { return SkipBlanks(text, 0) == text.size(); }

class XmlIndenter final : public Indenting {
 public:
  explicit XmlIndenter(std::string_view text) : text_(text), parts_(text) {}

  bool Step(std::size_t bytes) override {
    const std::size_t until = parts_.Place() + bytes;
    try {
      while (!parts_.AtEnd()) {
        if (parts_.Place() >= until) return true;
        const Token token = parts_.Next();
        if (writes_) WriteToken(token);
        else LookAt(token);
      }
      if (writes_) return false;
      EndLook();
    } catch (TextFault& fault) {
      fault_ = std::move(fault);
      return false;
    }
    BeginWriting();
    return true;
  }

  [[nodiscard]] int Percent() const override {
    const std::size_t half = text_.empty() ? 50 : parts_.Place() * 50 / text_.size();
    return static_cast<int>(half) + (writes_ ? 50 : 0);
  }

  [[nodiscard]] IndentedText Result() override {
    if (fault_) return {TextStructure::Xml, {}, std::move(fault_)};
    return {TextStructure::Xml, std::move(out_), std::nullopt};
  }

 private:
  [[nodiscard]] std::string_view TextOf(const Token& token) const {
    return text_.substr(token.begin, token.end - token.begin);
  }

  /// The name in a tag, without "/".
  [[nodiscard]] std::string_view NameOf(const Token& tag) const {
    const std::size_t begin = tag.begin + (tag.part == Part::Close ? 2 : 1);
    std::size_t end = begin;
    while (end < tag.end && !IsBlank(text_[end]) && text_[end] != '>' && text_[end] != '/') ++end;
    return text_.substr(begin, end - begin);
  }

  // --- the first time ----------------------------------------------------------------------------

  /// An element that is open: its number in the order of opening, and its tag.
  struct OpenElement {
    std::size_t number;
    Token tag;
  };

  void EndLook() const {
    if (!open_.empty()) throw TextFault{open_.back().tag.begin, "this element is never closed"};
    if (holdsText_.empty() && !hasElement_)
      throw TextFault{BehindMark(text_), "there is no element"};
  }

  void LookAt(const Token& token) {
    switch (token.part) {
      case Part::Open: return LookAtOpen(token);
      case Part::Close: return LookAtClose(token);
      case Part::Alone: return LookAtElement(token);
      case Part::Text: return LookAtText(token);
      default: return;
    }
  }

  void LookAtElement(const Token& token) {
    if (open_.empty() && hasElement_)
      throw TextFault{token.begin, "a second outermost element begins here"};
    if (NameOf(token).empty()) throw TextFault{token.begin, "this tag has no name"};
    hasElement_ = true;
  }

  void LookAtOpen(const Token& token) {
    LookAtElement(token);
    open_.push_back({holdsText_.size(), token});
    const bool keepsBlanks = TextOf(token).find("xml:space=\"preserve\"") != std::string_view::npos;
    holdsText_.push_back(keepsBlanks);
  }

  void LookAtClose(const Token& token) {
    if (open_.empty()) throw TextFault{token.begin, "this tag closes no element"};
    if (NameOf(open_.back().tag) != NameOf(token))
      throw TextFault{token.begin,
                      "this tag should close \"" + std::string(NameOf(open_.back().tag)) + "\""};
    open_.pop_back();
  }

  void LookAtText(const Token& token) {
    if (IsBlankText(TextOf(token))) return;
    if (open_.empty()) throw TextFault{token.begin, "text stands outside of all elements"};
    holdsText_[open_.back().number] = true;
  }

  // --- the second time ---------------------------------------------------------------------------

  void BeginWriting() {
    out_.reserve(text_.size() + text_.size() / 4);
    parts_ = XmlParts(text_);
    writes_ = true;
  }

  void WriteToken(const Token& token) {
    if (onLine_ > 0) return WriteOnLine(token);
    if (token.part == Part::Text) return;
    if (token.part == Part::Close) return WriteClose(token);
    BeginLine();
    out_ += TextOf(token);
    if (token.part == Part::Open) WriteOpen();
  }

  void WriteOpen() {
    if (holdsText_[opened_++]) onLine_ = 1;
    else ++level_;
    empty_ = true;
  }

  /// Inside an element that stays on its line everything is taken as it is.
  void WriteOnLine(const Token& token) {
    out_ += TextOf(token);
    if (token.part == Part::Open) {
      ++opened_;
      ++onLine_;
    } else if (token.part == Part::Close) {
      --onLine_;
      empty_ = false;
    }
  }

  /// An element that holds nothing is closed on its line.
  void WriteClose(const Token& token) {
    --level_;
    if (!std::exchange(empty_, false)) BeginLine();
    out_ += TextOf(token);
  }

  void BeginLine() {
    if (!out_.empty()) AppendLine(out_, level_);
    empty_ = false;
  }

  std::string_view text_;
  XmlParts parts_;
  bool writes_ = false;  ///< It reads for the second time.
  std::optional<TextFault> fault_;
  std::vector<bool> holdsText_;  ///< Of each element in the order of opening.
  std::vector<OpenElement> open_;
  bool hasElement_ = false;
  std::string out_;
  std::size_t opened_ = 0;  ///< Elements opened so far.
  std::size_t level_ = 0;
  std::size_t onLine_ = 0;  ///< Elements open inside of one that stays on its line, it included.
  bool empty_ = false;      ///< Nothing stands behind the tag that was opened last.
};

}  // namespace

std::unique_ptr<Indenting> StartIndentingXml(std::string_view text) {
  return std::make_unique<XmlIndenter>(text);
}

}  // namespace tessel
