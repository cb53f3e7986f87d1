// From the tree of a pattern to the steps by which it is looked for.

#include "logic/text/find/TextPattern.h"

#include <utf8proc.h>

#include <algorithm>

#include "contract/text/Ascii.h"
#include "logic/program/Global.h"
#include "logic/text/find/PatternTree.h"

namespace tessel {

namespace {

constexpr std::size_t mostSteps = 20'000;
constexpr std::int32_t firstBehindAscii = 0x80;

bool IsDigit(std::int32_t code) { return code >= '0' && code <= '9'; }
bool IsBlank(std::int32_t code) { return code == ' ' || (code >= '\t' && code <= '\r'); }

using Kind = PatternStep::Kind;

class Compiler {
 public:
  explicit Compiler(PatternProgram& program) : program_(program) {}

  void Compile(const PatternTree& tree, bool wholeWords) {
    Add(Kind::Note, 0);
    if (wholeWords) Add(Kind::Rule, static_cast<std::int32_t>(PlaceRule::WordEdge));
    AddNode(tree.root);
    if (wholeWords) Add(Kind::Rule, static_cast<std::int32_t>(PlaceRule::WordEdge));
    Add(Kind::Note, 1);
    Add(Kind::Match);
    program_.places = 2 * (static_cast<std::size_t>(tree.groups) + 1);
  }

 private:
  [[nodiscard]] std::int32_t Next() const {
    return static_cast<std::int32_t>(program_.steps.size());
  }
  [[nodiscard]] PatternStep& StepAt(std::int32_t place) {
    return program_.steps[static_cast<std::size_t>(place)];
  }
  std::int32_t Add(Kind kind, std::int32_t x = 0, std::int32_t y = 0) {
    if (program_.steps.size() >= mostSteps) RaiseAppError("The expression is too large.");
    program_.steps.push_back({kind, x, y});
    return Next() - 1;
  }

  void AddNode(const PatternNode& node) {
    switch (node.kind) {
      case PatternNode::Kind::Nothing: return;
      case PatternNode::Kind::Character: AddCharacter(node.number); return;
      case PatternNode::Kind::AnyOfLine: Add(Kind::AnyOfLine); return;
      case PatternNode::Kind::OneOf: AddSet(node.set); return;
      case PatternNode::Kind::Rule: Add(Kind::Rule, static_cast<std::int32_t>(node.rule)); return;
      case PatternNode::Kind::Sequence:
        for (const PatternNode& part : node.parts) AddNode(part);
        return;
      case PatternNode::Kind::Choice: return AddChoice(node);
      case PatternNode::Kind::Repeat: return AddRepeat(node);
      case PatternNode::Kind::Group: return AddGroup(node);
    }
  }

  void AddCharacter(std::int32_t code) {
    Add(Kind::Character, program_.matchCase ? code : WithoutCase(code));
  }

  void AddSet(const CharacterSet& set) {
    Add(Kind::OneOf, static_cast<std::int32_t>(program_.sets.size()));
    program_.sets.push_back(set);
  }

  void AddGroup(const PatternNode& node) {
    Add(Kind::Note, 2 * node.number);
    AddNode(node.parts.front());
    Add(Kind::Note, 2 * node.number + 1);
  }

  void AddChoice(const PatternNode& node) {
    std::vector<std::int32_t> ends;
    for (std::size_t i = 0; i + 1 < node.parts.size(); ++i) {
      const std::int32_t both = Add(Kind::Both, Next() + 1);
      AddNode(node.parts[i]);
      ends.push_back(Add(Kind::Jump));
      StepAt(both).y = Next();
    }
    AddNode(node.parts.back());
    for (const std::int32_t end : ends) StepAt(end).x = Next();
  }

  /// Once more, or on.
  std::int32_t AddFork(bool takesFewest) {
    return takesFewest ? Add(Kind::Both, 0, Next() + 1) : Add(Kind::Both, Next() + 1, 0);
  }
  void LeadOn(std::int32_t fork, bool takesFewest) {
    (takesFewest ? StepAt(fork).x : StepAt(fork).y) = Next();
  }

  void AddRepeat(const PatternNode& node) {
    const PatternNode& part = node.parts.front();
    for (std::int32_t i = 0; i < node.fewest; ++i) AddNode(part);
    if (node.most == PatternNode::noLimit) {
      const std::int32_t fork = AddFork(node.takesFewest);
      AddNode(part);
      Add(Kind::Jump, fork);
      return LeadOn(fork, node.takesFewest);
    }
    std::vector<std::int32_t> forks;
    for (std::int32_t i = node.fewest; i < node.most; ++i) {
      forks.push_back(AddFork(node.takesFewest));
      AddNode(part);
    }
    for (const std::int32_t fork : forks) LeadOn(fork, node.takesFewest);
  }

  PatternProgram& program_;
};

/// Finds the bytes with which a match can begin.
class FirstBytes {
 public:
  explicit FirstBytes(PatternProgram& program)
      : program_(program), seen_(program.steps.size(), false) {}

  void Find() {
    ready_.push_back(0);
    while (!ready_.empty()) {
      const auto place = static_cast<std::size_t>(ready_.back());
      ready_.pop_back();
      if (seen_[place]) continue;
      seen_[place] = true;
      Look(program_.steps[place], place);
    }
  }

 private:
  void Look(const PatternStep& step, std::size_t place) {
    switch (step.kind) {
      case Kind::Character: return AddCharacter(step.x);
      case Kind::AnyOfLine:
        for (int code = 0; code < firstBehindAscii; ++code) Allow(code);
        return AddAllBehindAscii();
      case Kind::OneOf: return AddSet(program_.sets[static_cast<std::size_t>(step.x)]);
      case Kind::Both: ready_.push_back(step.y); [[fallthrough]];
      case Kind::Jump: ready_.push_back(step.x); return;
      case Kind::Note:
      case Kind::Rule: ready_.push_back(static_cast<std::int32_t>(place) + 1); return;
      case Kind::Match: program_.mayBeEmpty = true; return;
    }
  }

  void Allow(int byte) { program_.firstBytes[static_cast<std::size_t>(byte)] = true; }
  void AddAllBehindAscii() {
    for (int byte = firstBehindAscii; byte < 256; ++byte) Allow(byte);
  }

  void AddCharacter(std::int32_t code) {
    if (code < 0 || code >= firstBehindAscii || !program_.matchCase) AddAllBehindAscii();
    if (code < 0 || code >= firstBehindAscii) return;
    Allow(code);
    if (!program_.matchCase) Allow(static_cast<unsigned char>(AsciiUpper(static_cast<char>(code))));
  }

  void AddSet(const CharacterSet& set) {
    for (int code = 0; code < firstBehindAscii; ++code)
      if (set.Holds(code, program_.matchCase)) Allow(code);
    AddAllBehindAscii();
  }

  PatternProgram& program_;
  std::vector<bool> seen_;
  std::vector<std::int32_t> ready_;
};

/// The ASCII characters with which every match begins.
std::string StartOf(const PatternProgram& program) {
  std::string start;
  for (const PatternStep& step : program.steps) {
    if (step.kind == Kind::Note || step.kind == Kind::Rule) continue;
    if (step.kind != Kind::Character || step.x < 0 || step.x >= firstBehindAscii) break;
    start += static_cast<char>(step.x);
  }
  return start;
}

}  // namespace

bool IsWordCharacter(std::int32_t code) {
  if (code < 0) return false;
  if (code < firstBehindAscii)
    return code == '_' || IsDigit(code) || (code >= 'a' && code <= 'z') ||
           (code >= 'A' && code <= 'Z');
  const auto category = utf8proc_category(code);
  return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

std::int32_t WithoutCase(std::int32_t code) {
  if (code >= 0 && code < firstBehindAscii)
    return static_cast<unsigned char>(AsciiLower(static_cast<char>(code)));
  return utf8proc_tolower(code);
}

bool CharacterSet::Holds(std::int32_t code, bool matchCase) const {
  const auto inRanges = [this](std::int32_t one) {
    return std::ranges::any_of(
        ranges, [one](const auto& range) { return range.first <= one && one <= range.second; });
  };
  const auto has = [this](unsigned one) { return (classes & one) != 0; };
  bool held = inRanges(code);
  if (!held && !matchCase && code >= 0)
    held = inRanges(WithoutCase(code)) || inRanges(utf8proc_toupper(code));
  if (classes != 0)
    held = held || (has(IsDigit(code) ? digit : notDigit)) ||
           has(IsWordCharacter(code) ? word : notWord) || has(IsBlank(code) ? blank : notBlank);
  return held != negated;
}

PatternProgram MakePattern(std::string_view what, const FindOptions& options) {
  PatternProgram program;
  program.matchCase = options.matchCase;
  const PatternTree tree = options.regularExpression ? ReadExpression(what) : ReadPlainText(what);
  Compiler(program).Compile(tree, options.wholeWords);
  FirstBytes(program).Find();
  program.start = StartOf(program);
  return program;
}

}  // namespace tessel
