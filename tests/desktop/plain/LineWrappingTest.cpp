// Where lines are broken to fit a width.

#include "desktop/plain/LineWrapping.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "desktop/plain/LineBreaks.h"

namespace tessel::test {
namespace {

using Places = std::vector<std::size_t>;

/// Ordinary characters are 1 wide, those of three bytes 2, and U+0301 stands above another.
double WidthOf(std::string_view character) {
  if (character == "\xCC\x81") return 0;
  return character.size() == 3 ? 2 : 1;
}

Places Wrapped(std::string_view text, double width) { return WrappedPlaces(text, width, WidthOf); }

TEST(LineWrappingTest, WhatFitsIsLeftAlone) {
  EXPECT_EQ(Wrapped("", 5), Places());
  EXPECT_EQ(Wrapped("12345\r\n12345\n\n12345\r12345", 5), Places());
}

TEST(LineWrappingTest, BreaksBehindTheLastBlankThatFits) {
  EXPECT_EQ(Wrapped("ab cd ef", 7), Places({6}));
  EXPECT_EQ(Wrapped("ab cd ef\nab cd ef", 7), Places({6, 15}));
}

TEST(LineWrappingTest, AWordWithoutBlanksIsCut) {
  EXPECT_EQ(Wrapped("1234567890123", 5), Places({5, 10}));
  EXPECT_EQ(Wrapped("a 1234567890", 5), Places({2, 7}));
}

TEST(LineWrappingTest, OneBlankMayStandBeyondTheWidth) {
  EXPECT_EQ(Wrapped("12345 789", 5), Places({6}));
  EXPECT_EQ(Wrapped("12345  89", 5), Places({6}));
}

TEST(LineWrappingTest, WideAndCombinedCharactersCountAsTheyAreShown) {
  EXPECT_EQ(Wrapped("\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC", 5), Places({6}));
  EXPECT_EQ(Wrapped("e\xCC\x81"
                    "e\xCC\x81"
                    "e\xCC\x81",
                    2),
            Places({6}));
}

TEST(LineWrappingTest, NothingFitsAndStillItEnds) {
  EXPECT_EQ(Wrapped("abc", 0), Places({1, 2}));
  EXPECT_EQ(Wrapped("abc", -10), Places({1, 2}));
}

TEST(LineWrappingTest, CharactersWithoutWidthAreNotEndless) {
  std::string text;
  while (text.size() < 3 * LineBreaks::pieceLength) text += "\xCC\x81";
  EXPECT_EQ(Wrapped(text, 10), Places({LineBreaks::pieceLength, 2 * LineBreaks::pieceLength}));
}

TEST(LineWrappingTest, AnyBytesAreWrappedWithinTheWidth) {
  std::mt19937 random(1);
  std::string text;
  while (text.size() < 100'000) text += static_cast<char>(random());
  std::size_t last = 0;
  for (const std::size_t place : Wrapped(text, 20)) {
    ASSERT_GT(place, last);
    last = place;
  }
  EXPECT_LT(last, text.size());
}

}  // namespace
}  // namespace tessel::test
