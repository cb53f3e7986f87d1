// The reader of regular expressions: a function for each level, from choices down to one character.

#include "logic/text/find/PatternTree.h"

#include <charconv>
#include <optional>
#include <string>

#include "logic/program/Characters.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr std::int32_t mostRepeats = 1000;
constexpr int deepestGroup = 100;

PatternNode CharacterNode(std::int32_t code) {
  return {.kind = PatternNode::Kind::Character, .number = code};
}

PatternNode RuleNode(PlaceRule rule) { return {.kind = PatternNode::Kind::Rule, .rule = rule}; }

/// The class that a letter behind a backslash stands for; 0 for none.
unsigned ClassOf(char letter) {
  switch (letter) {
    case 'd': return CharacterSet::digit;
    case 'w': return CharacterSet::word;
    case 's': return CharacterSet::blank;
    case 'D': return CharacterSet::notDigit;
    case 'W': return CharacterSet::notWord;
    case 'S': return CharacterSet::notBlank;
    default: return 0;
  }
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  PatternTree Read() {
    PatternNode root = ReadChoice();
    if (!AtEnd()) RaiseAppError("There is a ) without its (.");
    return {std::move(root), groups_};
  }

 private:
  [[nodiscard]] bool AtEnd() const { return text_.empty(); }
  [[nodiscard]] bool At(char sign) const { return !AtEnd() && text_.front() == sign; }
  bool Take(std::string_view signs) {
    if (!text_.starts_with(signs)) return false;
    text_.remove_prefix(signs.size());
    return true;
  }

  PatternNode ReadChoice() {
    PatternNode choice{.kind = PatternNode::Kind::Choice};
    do choice.parts.push_back(ReadSequence());
    while (Take("|"));
    return choice.parts.size() == 1 ? std::move(choice.parts.front()) : choice;
  }

  PatternNode ReadSequence() {
    PatternNode sequence{.kind = PatternNode::Kind::Sequence};
    while (!AtEnd() && !At('|') && !At(')')) sequence.parts.push_back(ReadRepeated());
    return sequence;
  }

  PatternNode ReadRepeated() {
    PatternNode node = ReadOne();
    while (const auto repeat = TakeRepeat()) {
      PatternNode outer = *repeat;
      outer.takesFewest = Take("?");
      outer.parts.push_back(std::move(node));
      node = std::move(outer);
      if (++repeats_ > deepestGroup) RaiseAppError("The expression repeats too much.");
    }
    return node;
  }

  static PatternNode RepeatOf(std::int32_t fewest, std::int32_t most) {
    return {.kind = PatternNode::Kind::Repeat, .fewest = fewest, .most = most};
  }

  std::optional<PatternNode> TakeRepeat() {
    if (Take("*")) return RepeatOf(0, PatternNode::noLimit);
    if (Take("+")) return RepeatOf(1, PatternNode::noLimit);
    if (Take("?")) return RepeatOf(0, 1);
    return TakeCounts();
  }

  /// "{2}", "{2,}" or "{2,5}"; a brace that begins none of these stands for itself.
  std::optional<PatternNode> TakeCounts() {
    const std::string_view before = text_;
    if (!Take("{")) return std::nullopt;
    const auto fewest = TakeNumber();
    auto most = fewest;
    if (fewest && Take(",")) most = At('}') ? PatternNode::noLimit : TakeNumber();
    if (!fewest || !most || !Take("}")) {
      text_ = before;
      return std::nullopt;
    }
    if (*fewest > mostRepeats || *most > mostRepeats)
      RaiseAppError("More than " + std::to_string(mostRepeats) + " repetitions are not possible.");
    if (*most != PatternNode::noLimit && *most < *fewest)
      RaiseAppError("The counts in { } stand in the wrong order.");
    return RepeatOf(*fewest, *most);
  }

  std::optional<std::int32_t> TakeNumber() {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text_.data(), text_.data() + text_.size(), number);
    if (error == std::errc::invalid_argument || number < 0) return std::nullopt;
    if (error != std::errc()) number = mostRepeats + 1;
    text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
    return number;
  }

  PatternNode ReadOne() {
    if (Take("(")) return ReadGroup();
    if (Take("[")) return {.kind = PatternNode::Kind::OneOf, .set = ReadSet()};
    if (Take(".")) return {.kind = PatternNode::Kind::AnyOfLine};
    if (Take("^")) return RuleNode(PlaceRule::LineStart);
    if (Take("$")) return RuleNode(PlaceRule::LineEnd);
    if (Take("\\")) return ReadEscape();
    if (At('*') || At('+') || At('?'))
      RaiseAppError(std::string("There is nothing in front of ") + text_.front() + " to repeat.");
    return CharacterNode(TakeFirst(text_).code);
  }

  PatternNode ReadGroup() {
    if (++depth_ > deepestGroup) RaiseAppError("The groups stand too deep in each other.");
    const bool noted = !Take("?:");
    if (noted && At('?')) RaiseAppError("(? can only be followed by a colon.");
    PatternNode group{.kind = PatternNode::Kind::Group};
    if (noted) group.number = ++groups_;
    PatternNode inside = ReadChoice();
    if (!Take(")")) RaiseAppError("There is a ( without its ).");
    --depth_;
    if (!noted) return inside;
    group.parts.push_back(std::move(inside));
    return group;
  }

  PatternNode ReadEscape() {
    if (AtEnd()) RaiseAppError("There is nothing behind the last backslash.");
    if (Take("b")) return RuleNode(PlaceRule::WordEdge);
    if (Take("B")) return RuleNode(PlaceRule::NoWordEdge);
    if (const unsigned classes = TakeClass(); classes != 0) {
      PatternNode node{.kind = PatternNode::Kind::OneOf};
      node.set.classes = classes;
      return node;
    }
    return CharacterNode(TakeEscaped());
  }

  unsigned TakeClass() {
    const unsigned classes = AtEnd() ? 0 : ClassOf(text_.front());
    if (classes != 0) text_.remove_prefix(1);
    return classes;
  }

  std::int32_t TakeEscaped() {
    if (Take("n")) return '\n';
    if (Take("r")) return '\r';
    if (Take("t")) return '\t';
    if (Take("x")) return TakeHexadecimal();
    return TakeFirst(text_).code;
  }

  std::int32_t TakeHexadecimal() {
    constexpr std::size_t digits = 2;
    std::int32_t code = 0;
    const std::string_view number = text_.substr(0, digits);
    const auto [end, error] =
        std::from_chars(number.data(), number.data() + number.size(), code, 16);
    if (error != std::errc() || number.size() < digits || end != number.data() + digits)
      RaiseAppError("Two hexadecimal digits must stand behind \\x.");
    text_.remove_prefix(digits);
    return code;
  }

  /// Up to its closing bracket. One that stands first is a character of the set.
  CharacterSet ReadSet() {
    CharacterSet set;
    set.negated = Take("^");
    for (bool first = true; first || !Take("]"); first = false) {
      if (AtEnd()) RaiseAppError("There is a [ without its ].");
      AddToSet(set);
    }
    return set;
  }

  void AddToSet(CharacterSet& set) {
    const bool escaped = Take("\\");
    if (escaped && AtEnd()) RaiseAppError("There is a [ without its ].");
    if (const unsigned classes = escaped ? TakeClass() : 0; classes != 0) {
      set.classes |= classes;
      return;
    }
    const std::int32_t first = escaped ? TakeEscaped() : TakeFirst(text_).code;
    std::int32_t last = first;
    if (text_.size() > 1 && At('-') && text_[1] != ']') {
      Take("-");
      last = Take("\\") && !AtEnd() ? TakeEscaped() : TakeFirst(text_).code;
    }
    if (last < first) RaiseAppError("A range in [ ] stands in the wrong order.");
    set.ranges.emplace_back(first, last);
  }

  std::string_view text_;
  std::int32_t groups_ = 0;
  int depth_ = 0;
  int repeats_ = 0;
};

}  // namespace

PatternTree ReadExpression(std::string_view expression) { return Reader(expression).Read(); }

PatternTree ReadPlainText(std::string_view text) {
  PatternTree tree;
  tree.root.kind = PatternNode::Kind::Sequence;
  while (!text.empty()) tree.root.parts.push_back(CharacterNode(TakeFirst(text).code));
  return tree;
}

}  // namespace tessel
