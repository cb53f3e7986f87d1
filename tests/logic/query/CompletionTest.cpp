#include "logic/query/completion/Completion.h"
#include "logic/program/Characters.h"
#include "logic/query/completion/Initials.h"

#include <algorithm>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessel {
namespace {

using testing::ElementsAre;

constexpr CompletionMode byStart{};
constexpr CompletionMode byCapitals{.keepCapitals = true, .splitWords = false};
constexpr CompletionMode byWords{.keepCapitals = false, .splitWords = true};
constexpr CompletionMode byBoth{.keepCapitals = true, .splitWords = true};

std::vector<std::string> AllOf(const TextLines& lines) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < lines.Size(); ++i) all.emplace_back(lines[i]);
  return all;
}

std::vector<std::string> Found(const Vocabulary::Section& section, std::string_view typed,
                               CompletionMode mode) {
  const TextLines words = FindCompletions(section, typed, mode);
  std::vector<std::string> entries;
  for (std::size_t i = 0; i < words.Size(); ++i) entries.push_back(CompletionEntry(words[i], mode));
  return entries;
}

TEST(TextLinesTest, HoldsItsLinesInOrder) {
  TextLines lines({"one", "", "three"});
  lines.Add("four");
  EXPECT_THAT(AllOf(lines), ElementsAre("one", "", "three", "four"));
}

TEST(TypedWordTest, IsTheRunOfIdentifierCharactersThatEndsAtTheCaret) {
  EXPECT_EQ(TypedWord("SELECT cust", 11), "cust");
  EXPECT_EQ(TypedWord("SELECT cust", 9), "cu");
  EXPECT_EQ(TypedWord("a.[x]#t_1@$9", 12), "#t_1@$9");
  EXPECT_EQ(TypedWord("SELECT ", 7), "");
  EXPECT_EQ(TypedWord("", 0), "");
  EXPECT_EQ(TypedWord("abc", 100), "abc") << "a position beyond the end is the end";
}

TEST(TypedWordTest, OtherCharactersThanAsciiEndIt) {
  EXPECT_EQ(TypedWord("caf\xC3\xA9x", 6), "x");
  EXPECT_EQ(TypedWord("caf\xC3\xA9", 5), "");
}

TEST(FindCompletionsTest, AnEmptyTextListsEveryWordOnceFirstOccurrenceFirst) {
  const Vocabulary::Section section = {{"d1", {"orders", "items", "orders"}},
                                       {"d2", {"items", "Orders", "people"}}};
  EXPECT_THAT(Found(section, "", byStart), ElementsAre("orders", "items", "Orders", "people"));
}

TEST(FindCompletionsTest, TheStartOfAWordMatchesWithoutRegardToCase) {
  const Vocabulary::Section section = {{"d1", {"Orders", "ORDER_LINES", "border", "ord"}}};
  EXPECT_THAT(Found(section, "oRd", byStart), ElementsAre("Orders", "ORDER_LINES", "ord"));
  EXPECT_THAT(Found(section, "order", byStart), ElementsAre("Orders", "ORDER_LINES"));
  EXPECT_TRUE(Found(section, "ordersx", byStart).empty());
}

TEST(FindCompletionsTest, WordsOfOtherCharactersMatchInUpperCaseToo) {
  const Vocabulary::Section section = {{"d1",
                                        {"\xC3\xA4lter", "a\xC3\xA4",
                                         "Stra\xC3\x9F"
                                         "e"}}};
  EXPECT_THAT(Found(section, "a", byStart), ElementsAre("a\xC3\xA4"));
  EXPECT_THAT(Found(section, "stra", byStart), ElementsAre("Stra\xC3\x9F"
                                                           "e"));
}

TEST(FindCompletionsTest, InitialsOfUnderscoreOrSpaceSeparatedWords) {
  const Vocabulary::Section section = {{"d1", {"customer_order_id", "Cost Of Ink", "coin"}}};
  EXPECT_THAT(Found(section, "coi", byWords),
              ElementsAre("COI: customer_order_id", "COI: Cost Of Ink"));
  EXPECT_THAT(Found(section, "coi", byStart), ElementsAre("coin"));
}

TEST(FindCompletionsTest, InitialsCountingCapitals) {
  const Vocabulary::Section section = {{"d1", {"CustomerOrderID", "customer_order_id"}}};
  EXPECT_THAT(Found(section, "coi", byCapitals), ElementsAre("COID: CustomerOrderID"));
  EXPECT_THAT(Found(section, "c", byCapitals),
              ElementsAre("COID: CustomerOrderID", "C: customer_order_id"));
}

TEST(FindCompletionsTest, BothKindsOfInitialsTogether) {
  const Vocabulary::Section section = {{"d1", {"fooBar_bazQux", "foo_bar"}}};
  EXPECT_THAT(Found(section, "fbb", byBoth), ElementsAre("FBBQ: fooBar_bazQux"));
  EXPECT_THAT(Found(section, "fb", byBoth), ElementsAre("FBBQ: fooBar_bazQux", "FB: foo_bar"));
}

TEST(FindCompletionsTest, GivesTheWordsThatTheEntriesStandFor) {
  const Vocabulary::Section section = {{"d1", {"odd: name"}}};
  EXPECT_THAT(AllOf(FindCompletions(section, "", byWords)), ElementsAre("odd: name"));
  EXPECT_EQ(CompletionEntry("odd: name", byWords), "ON: odd: name");
}

/// The rule as it is written down: a key for each word, a scan for each entry.
std::vector<std::string> FoundSlowly(const Vocabulary::Section& section, std::string_view typed,
                                     CompletionMode mode) {
  std::vector<std::string> entries;
  for (const auto& [name, words] : section)
    for (const std::string& word : words) {
      const std::string key = mode.Initials()
                                  ? MakeInitials(word, mode.keepCapitals, mode.splitWords)
                                  : UpperCase(word);
      if (key.substr(0, typed.size()) != UpperCase(typed)) continue;
      const std::string entry = mode.Initials() ? key + ": " + word : word;
      if (std::ranges::find(entries, entry) == entries.end()) entries.push_back(entry);
    }
  return entries;
}

TEST(FindCompletionsTest, AgreesWithTheRuleWordByWord) {
  const std::vector<std::string> pieces = {"a", "B", "_", " ", "\xC3\xA4", "9", "Ab", ": "};
  std::uint32_t seed = 1;
  const auto next = [&](std::size_t below) {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<std::size_t>(seed >> 16U) % below;
  };
  for (int round = 0; round < 200; ++round) {
    Vocabulary::Section section = {{"d1", {}}, {"d2", {}}};
    for (int i = 0; i < 30; ++i) {
      std::string word;
      for (std::size_t n = next(4) + 1; n > 0; --n) word += pieces[next(pieces.size())];
      section[next(2)].second.push_back(word);
    }
    const std::string typed = std::vector<std::string>{"", "a", "AB", "b", "ba", "9"}[next(6)];
    for (const CompletionMode mode : {byStart, byCapitals, byWords, byBoth})
      ASSERT_EQ(Found(section, typed, mode), FoundSlowly(section, typed, mode)) << typed;
  }
}

}  // namespace
}  // namespace tessel
