// What patterns match, and that no pattern is slow.

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "contract/base/Error.h"
#include "logic/text/find/PatternMatcher.h"
#include "logic/text/find/TextPattern.h"

namespace tessel {
namespace {

constexpr std::size_t allWork = 1'000'000'000;
constexpr FindOptions expression{.matchCase = true, .regularExpression = true};

/// The first match, as text; nothing when there is none.
std::optional<std::string> First(const std::string& pattern, const std::string& text,
                                 const FindOptions& options = expression) {
  const PatternProgram program = MakePattern(pattern, options);
  PatternMatcher matcher(program, text);
  matcher.Begin(0, text.size(), text.size());
  if (matcher.Step(allWork) != StepState::Found) return std::nullopt;
  return text.substr(matcher.Match().begin, matcher.Match().end - matcher.Match().begin);
}

struct Case {
  std::string pattern;
  std::string text;
  std::optional<std::string> match;
};

TEST(PatternTest, ExpressionsMatchTheFirstPlace) {
  const std::vector<Case> cases{{"abc", "xxabcabc", "abc"},
                                {"a.c", "a\nc abc", "abc"},
                                {"a|ab", "ab", "a"},
                                {"(?:ab|a)c", "ac abc", "ac"},
                                {"ab*", "abbb", "abbb"},
                                {"ab*?", "abbb", "a"},
                                {"ab+?b", "abbb", "abb"},
                                {"ab?c", "ac", "ac"},
                                {"a{2}", "aaa", "aa"},
                                {"a{2,}", "aaa", "aaa"},
                                {"a{1,2}?", "aaa", "a"},
                                {"a{,2}", "a{,2}", "a{,2}"},
                                {"x{", "x{", "x{"},
                                {"[a-c]+", "xxabcd", "abc"},
                                {"[^a-c]+", "abxyc", "xy"},
                                {"[]a]+", "x]a]", "]a]"},
                                {"[a\\]]+", "x]a", "]a"},
                                {"[a-]+", "b-a", "-a"},
                                {"[\\d_]+", "a1_2", "1_2"},
                                {"\\d{4}-\\d\\d", "on 2026-11", "2026-11"},
                                {"\\w+", "  caf\xC3\xA9_1 ", "caf\xC3\xA9_1"},
                                {"\\S+", "  a,b  ", "a,b"},
                                {"\\bin\\b", "index in join", "in"},
                                {"\\Bin\\B", "in join inside win2", "in"},
                                {"^b", "ab\nb", "b"},
                                {"a$", "ab\r\na\r\n", "a"},
                                {"\\$\\.\\*", "$.*", "$.*"},
                                {"\\x41\\t", "xA\t", "A\t"},
                                {"a\\nb", "a\nb", "a\nb"},
                                {".", "\xF0\x9F\x98\x80z", "\xF0\x9F\x98\x80"},
                                {"\xC3\xA9+", "e\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9"},
                                {"x*", "aaa", ""},
                                {"$", "ab", ""},
                                {"(a*)*b", "aaab", "aaab"},
                                {"a(?:)b", "ab", "ab"},
                                {"b", "aaa", std::nullopt},
                                {"a\\b", "ab", std::nullopt}};
  for (const Case& one : cases)
    EXPECT_EQ(First(one.pattern, one.text), one.match) << one.pattern << " in " << one.text;
}

TEST(PatternTest, CaseCountsOnlyWhereAskedFor) {
  const FindOptions plain;
  EXPECT_EQ(First("select", "SELECT", plain), "SELECT");
  EXPECT_EQ(First("\xC3\xA9", "\xC3\x89", plain), "\xC3\x89");
  EXPECT_EQ(First("select", "SELECT", {.matchCase = true}), std::nullopt);
  EXPECT_EQ(First("[a-z]+", "ABC", {.regularExpression = true}), "ABC");
}

TEST(PatternTest, PlainTextStandsForItself) {
  EXPECT_EQ(First("a.c(*", "abc a.c(*", {}), "a.c(*");
  EXPECT_EQ(First("\\d", "5 \\d", {}), "\\d");
}

TEST(PatternTest, WholeWordsHaveEdges) {
  const FindOptions words{.wholeWords = true};
  EXPECT_EQ(First("id", "order_id idx id", words), "id");
  EXPECT_EQ(First("id", "order_id idx", words), std::nullopt);
  EXPECT_EQ(First("caf", "caf\xC3\xA9", words), std::nullopt);
}

TEST(PatternTest, BytesThatAreNoTextAreNoCharacters) {
  EXPECT_EQ(First("b",
                  "a\xFF\xC3"
                  "b",
                  expression),
            "b");
  EXPECT_EQ(First("a.b",
                  "a\xFF"
                  "b",
                  expression),
            "a\xFF"
            "b");
  EXPECT_EQ(First("\\w", "\xFF\x80", expression), std::nullopt);
}

TEST(PatternTest, WhatIsWrongIsSaid) {
  const std::vector<std::pair<std::string, std::string>> wrong{
      {"(a", "There is a ( without its )."},
      {"a)", "There is a ) without its (."},
      {"[a", "There is a [ without its ]."},
      {"[z-a]", "A range in [ ] stands in the wrong order."},
      {"*a", "There is nothing in front of * to repeat."},
      {"a{3,2}", "The counts in { } stand in the wrong order."},
      {"a{2000}", "More than 1000 repetitions are not possible."},
      {"a\\", "There is nothing behind the last backslash."},
      {"\\xZZ", "Two hexadecimal digits must stand behind \\x."},
      {"(?=a)", "(? can only be followed by a colon."},
      {"((a{1000}){1000}){1000}", "The expression is too large."},
      {std::string(200, '('), "The groups stand too deep in each other."}};
  for (const auto& [pattern, reason] : wrong) {
    try {
      static_cast<void>(MakePattern(pattern, expression));
      ADD_FAILURE() << pattern << " is taken";
    } catch (const Error& error) {
      EXPECT_EQ(error.Description(), reason) << pattern;
    }
  }
}

/// With a matcher that tries one way after another these take longer than the universe is old.
TEST(PatternTest, NoPatternIsSlow) {
  const std::string text(2000, 'a');
  EXPECT_EQ(First("(a*)*(a*)*(a|aa)+$b", text), std::nullopt);
  EXPECT_EQ(First("(x+x+)+y", std::string(2000, 'x')), std::nullopt);
}

/// Where the beginning of a pattern is known, most places are passed over; nothing is missed by it.
TEST(PatternTest, AKnownBeginningFindsTheSamePlaces) {
  const std::string_view pieces[] = {"k", "K", "\u212A", "i", "s", "S", "\u017F", "\n", "kis"};
  std::minstd_rand random(17);
  int found = 0;
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (int i = 0; i < 12; ++i) text += pieces[random() % std::size(pieces)];
    for (const bool matchCase : {false, true}) {
      const FindOptions options{.matchCase = matchCase, .regularExpression = true};
      const auto place = First("kis", text, options);
      EXPECT_EQ(place, First("(kis|kis)", text, options)) << text;
      if (place) ++found;
    }
  }
  EXPECT_GT(found, 100);
}

TEST(PatternTest, GroupsTellTheirPlaces) {
  const std::string text = "a=1, bb=22";
  const PatternProgram program = MakePattern("(\\w+)=(2+)|(z)", expression);
  PatternMatcher matcher(program, text);
  matcher.Begin(0, text.size(), text.size());
  ASSERT_EQ(matcher.Step(allWork), StepState::Found);
  EXPECT_EQ(matcher.Groups(), (std::vector<TextRange>{{5, 10}, {5, 7}, {8, 10}, {0, 0}}));
}

TEST(PatternTest, ASearchIsDoneInSteps) {
  const std::string text = std::string(100'000, 'a') + "b";
  const PatternProgram program = MakePattern("a*b", expression);
  PatternMatcher matcher(program, text);
  matcher.Begin(0, text.size(), text.size());
  int steps = 0;
  StepState state = StepState::Running;
  while ((state = matcher.Step(1000)) == StepState::Running) ++steps;
  EXPECT_EQ(state, StepState::Found);
  EXPECT_GT(steps, 100);
  EXPECT_EQ(matcher.Match(), (TextRange{0, text.size()}));
}

TEST(PatternTest, AMatchStaysInItsBounds) {
  const std::string text = "aaaa";
  const PatternProgram program = MakePattern("a+", expression);
  PatternMatcher matcher(program, text);
  matcher.Begin(1, 4, 3);
  ASSERT_EQ(matcher.Step(allWork), StepState::Found);
  EXPECT_EQ(matcher.Match(), (TextRange{1, 3}));
  matcher.Begin(4, 3, 4);
  EXPECT_EQ(matcher.Step(allWork), StepState::NotFound);
}

}  // namespace
}  // namespace tessel
