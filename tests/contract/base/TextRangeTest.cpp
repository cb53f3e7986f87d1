#include "contract/text/TextRange.h"

#include <gtest/gtest.h>

#include <string>

namespace tessel {
namespace {

TEST(TextRangeTest, SpotsCountLinesAndCharacters) {
  const std::string text = "a\xC3\xA9z\r\n\nx";
  EXPECT_EQ(SpotOf(text, 0), (TextSpot{1, 1}));
  EXPECT_EQ(SpotOf(text, 2), (TextSpot{1, 2})) << "inside a character is its beginning";
  EXPECT_EQ(SpotOf(text, 3), (TextSpot{1, 3}));
  EXPECT_EQ(SpotOf(text, 6), (TextSpot{2, 1}));
  EXPECT_EQ(SpotOf(text, 100), (TextSpot{3, 2}));
}

TEST(TextRangeTest, ARangeGoesWithItsText) {
  const TextRange range{10, 13};
  EXPECT_EQ(AfterChange(range, 0, 4, 0), (TextRange{6, 9}));
  EXPECT_EQ(AfterChange(range, 2, 3, 5), (TextRange{12, 15}));
  EXPECT_EQ(AfterChange(range, 14, 3, 5), range);
  EXPECT_EQ(AfterChange(range, 9, 0, 2), (TextRange{12, 15}));
}

TEST(TextRangeTest, AChangeThatTouchesARangeEndsIt) {
  const TextRange range{10, 13};
  for (const std::size_t at : {std::size_t{10}, std::size_t{12}, std::size_t{13}})
    EXPECT_FALSE(AfterChange(range, at, 0, 1)) << at;
  EXPECT_FALSE(AfterChange(range, 8, 2, 0));
  EXPECT_FALSE(AfterChange(range, 0, 100, 1));
}

TEST(TextRangeTest, ANewLineBeginsWithTheBlanksBeforeTheCaret) {
  EXPECT_EQ(BlanksOfNewLine(" \tselect", 5), " \t");
  EXPECT_EQ(BlanksOfNewLine("    select", 2), "  ");
  EXPECT_EQ(BlanksOfNewLine("select", 3), "");
  EXPECT_EQ(BlanksOfNewLine("", 0), "");
}

}  // namespace
}  // namespace tessel
