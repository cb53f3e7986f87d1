// The next and the previous match, round the ends of the text, and all at once.

#include "logic/text/find/TextSearch.h"

#include <gtest/gtest.h>

#include <random>

#include "logic/text/find/ReplaceAll.h"
#include "logic/text/find/TextPattern.h"

namespace tessel {
namespace {

using Direction = TextSearch::Direction;

SearchGround GroundOf(const std::string& text, const std::string& pattern,
                      std::optional<TextRange> within = {}) {
  const FindOptions options{.matchCase = true, .regularExpression = true};
  return {std::make_shared<const std::string>(text),
          std::make_shared<const PatternProgram>(MakePattern(pattern, options)),
          within.value_or(TextRange{0, text.size()})};
}

template <class Job>
StepState RunToEnd(Job& job, std::size_t work = 100) {
  StepState state = StepState::Running;
  while (state == StepState::Running) state = job.Step(work);
  return state;
}

/// Where the match begins, -1 for none; round the end it counts from 1000.
int Search(const SearchGround& ground, Direction direction, std::size_t from,
           std::optional<TextRange> avoid = {}) {
  TextSearch search(ground, direction, from, avoid);
  if (RunToEnd(search) == StepState::NotFound) return -1;
  return static_cast<int>(search.Match().begin) + (search.CameRound() ? 1000 : 0);
}

TEST(TextSearchTest, FindsTheNextAndComesRound) {
  const SearchGround ground = GroundOf("ab ab ab", "ab");
  EXPECT_EQ(Search(ground, Direction::Forwards, 0), 0);
  EXPECT_EQ(Search(ground, Direction::Forwards, 1), 3);
  EXPECT_EQ(Search(ground, Direction::Forwards, 8), 1000);
}

TEST(TextSearchTest, FindsThePreviousAndComesRound) {
  const SearchGround ground = GroundOf("ab ab ab", "ab");
  EXPECT_EQ(Search(ground, Direction::Backwards, 8), 6);
  EXPECT_EQ(Search(ground, Direction::Backwards, 6), 3);
  EXPECT_EQ(Search(ground, Direction::Backwards, 0), 1006);
}

TEST(TextSearchTest, TheOnlyMatchIsFoundAgain) {
  const SearchGround ground = GroundOf("x ab y", "ab");
  EXPECT_EQ(Search(ground, Direction::Forwards, 4, TextRange{2, 4}), 1002);
  EXPECT_EQ(Search(ground, Direction::Backwards, 2, TextRange{2, 4}), 1002);
  EXPECT_EQ(Search(GroundOf("x", "ab"), Direction::Forwards, 1), -1);
  EXPECT_EQ(Search(GroundOf("x", "ab"), Direction::Backwards, 1), -1);
  EXPECT_EQ(Search(GroundOf("", "ab"), Direction::Backwards, 0), -1);
}

TEST(TextSearchTest, AnEmptyMatchAtTheCaretIsLeft) {
  const SearchGround ground = GroundOf("a\nb\nc", "^");
  EXPECT_EQ(Search(ground, Direction::Forwards, 2, TextRange{2, 2}), 4);
  EXPECT_EQ(Search(ground, Direction::Forwards, 4, TextRange{4, 4}), 1000);
  EXPECT_EQ(Search(ground, Direction::Backwards, 2, TextRange{2, 2}), 0);
  EXPECT_EQ(Search(ground, Direction::Backwards, 0, TextRange{0, 0}), 1004);
}

TEST(TextSearchTest, StaysWithinItsPart) {
  const SearchGround ground = GroundOf("ab ab ab ab", "ab", TextRange{3, 8});
  EXPECT_EQ(Search(ground, Direction::Forwards, 0), 3);
  EXPECT_EQ(Search(ground, Direction::Forwards, 7), 1003);
  EXPECT_EQ(Search(ground, Direction::Backwards, 11), 6);
  EXPECT_EQ(Search(ground, Direction::Backwards, 3), 1006);
}

/// Backwards a long text is looked through in blocks.
TEST(TextSearchTest, LongTextsAreSearchedBackwards) {
  std::string text = "needle\n";
  for (int i = 0; i < 40'000; ++i) text += "hay and more hay\n";
  EXPECT_EQ(Search(GroundOf(text, "needle"), Direction::Backwards, text.size()), 0);
  text = "needle" + std::string(500'000, 'x');
  EXPECT_EQ(Search(GroundOf(text, "needle"), Direction::Backwards, text.size()), 0);
}

TEST(TextSearchTest, BackwardsFindsWhatForwardsFinds) {
  std::mt19937 random(7);
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "ab\n"[random() % 3];
  const SearchGround ground = GroundOf(text, "aab");
  for (int i = 0; i < 20; ++i) {
    const std::size_t from = random() % text.size();
    const std::size_t expected = from == 0 ? std::string::npos : text.rfind("aab", from - 1);
    EXPECT_EQ(Search(ground, Direction::Backwards, from), static_cast<int>(expected)) << from;
    EXPECT_EQ(Search(ground, Direction::Forwards, from), static_cast<int>(text.find("aab", from)));
  }
}

/// The whole new text, and how many were replaced.
std::pair<std::string, std::int64_t> Replace(const std::string& text, const std::string& pattern,
                                             const std::string& replacement,
                                             std::optional<TextRange> within = {}) {
  ReplaceAll all(GroundOf(text, pattern, within), {replacement, true});
  if (RunToEnd(all) == StepState::NotFound) return {text, 0};
  std::string result = text;
  const TextRange range = all.Replaced();
  result.replace(range.begin, range.end - range.begin, all.NewText());
  return {result, all.Count()};
}

TEST(ReplaceAllTest, ReplacesEveryMatch) {
  EXPECT_EQ(Replace("one two one", "one", "1"), std::pair(std::string("1 two 1"), 2L));
  EXPECT_EQ(Replace("aaa", "a", "aa"), std::pair(std::string("aaaaaa"), 3L));
  EXPECT_EQ(Replace("aaa", "b", "x"), std::pair(std::string("aaa"), 0L));
  EXPECT_EQ(Replace("a b a b", "b", "c", TextRange{0, 3}), std::pair(std::string("a c a b"), 1L));
  EXPECT_EQ(Replace("a\nb", "^", "-- ").first, "-- a\n-- b");
  EXPECT_EQ(Replace("ab", "x*", "-").first, "-a-b-");
}

TEST(ReplaceAllTest, GroupsAreFilledIn) {
  EXPECT_EQ(Replace("a=1, b=2", "(\\w)=(\\d)", "$2=$1").first, "1=a, 2=b");
  EXPECT_EQ(Replace("ab", "b", "[$0$&$$$9]\\n\\t\\\\$x").first, "a[bb$]\n\t\\$x");
}

TEST(ReplaceAllTest, PlainReplacementsStandForThemselves) {
  EXPECT_EQ(TextInPlace({"$1\\n", false}, "abc", {{0, 1}, {1, 2}}), "$1\\n");
}

TEST(ReplaceAllTest, ThePlaceOfTheCaretGoesAlong) {
  ReplaceAll all(GroundOf("one two one x", "one"), {"1", false});
  ASSERT_EQ(RunToEnd(all), StepState::Found);
  EXPECT_EQ(all.PlaceInNew(0), 0U);
  EXPECT_EQ(all.PlaceInNew(2), 1U) << "inside the first";
  EXPECT_EQ(all.PlaceInNew(5), 3U);
  EXPECT_EQ(all.PlaceInNew(13), 9U);
}

}  // namespace
}  // namespace tessel
