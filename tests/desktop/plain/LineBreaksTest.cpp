// Where very long lines are broken to be shown.

#include "desktop/plain/LineBreaks.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace tessel::test {
namespace {

std::string ShownWith(const LineBreaks& breaks, const std::string& text) {
  std::string shown = text;
  for (std::size_t i = 0; i < breaks.Count(); ++i)
    shown.insert(shown.begin() + static_cast<std::ptrdiff_t>(breaks.Places()[i] + i), '\n');
  return shown;
}

/// Every place is found again, and every shown byte that is no break is the text's.
void ExpectPlacesFit(const LineBreaks& breaks, const std::string& text) {
  const std::string shown = ShownWith(breaks, text);
  for (std::size_t place = 0; place <= text.size(); ++place) {
    ASSERT_EQ(breaks.InText(breaks.Shown(place)), place);
    if (place < text.size()) {
      ASSERT_EQ(shown[breaks.Shown(place)], text[place]) << place;
    }
  }
  std::size_t last = 0;
  for (std::size_t place = 0; place <= shown.size(); ++place) {
    const std::size_t inText = breaks.InText(place);
    ASSERT_GE(inText, last);
    ASSERT_LE(inText - last, 1U);
    last = inText;
  }
  EXPECT_EQ(last, text.size());
}

std::size_t LongestPiece(const LineBreaks& breaks, const std::string& text) {
  std::size_t longest = 0;
  std::size_t start = 0;
  for (const std::size_t place : breaks.Places()) {
    longest = std::max(longest, place - start);
    start = place;
  }
  return std::max(longest, text.size() - start);
}

TEST(LineBreaksTest, LinesOfOrdinaryLengthAreLeftAlone) {
  EXPECT_TRUE(LineBreaks("").Empty());
  const std::string line(LineBreaks::longestLine, 'x');
  EXPECT_TRUE(LineBreaks(line).Empty());
  EXPECT_TRUE(LineBreaks(line + "\r\n" + line + "\n" + line + "\r" + line).Empty());
  EXPECT_FALSE(LineBreaks(line + "x").Empty());
}

TEST(LineBreaksTest, OnlyTheLongLineIsBroken) {
  const std::string before = "first\r\n";
  const std::string line(LineBreaks::longestLine + 1, 'x');
  const std::string text = before + line + "\nlast";
  const LineBreaks breaks(text);
  ASSERT_EQ(breaks.Count(), 8U);
  EXPECT_EQ(breaks.Places().front(), before.size() + LineBreaks::pieceLength);
  EXPECT_EQ(breaks.Places().back(), before.size() + line.size() - 1);
  ExpectPlacesFit(breaks, text);
}

TEST(LineBreaksTest, PiecesEndBehindABlankWhereThereIsOne) {
  std::string text;
  while (text.size() < 100'000) text += "123456, ";
  const LineBreaks breaks(text);
  for (const std::size_t place : breaks.Places()) EXPECT_EQ(text[place - 1], ' ') << place;
  EXPECT_LE(LongestPiece(breaks, text), LineBreaks::pieceLength);
  ExpectPlacesFit(breaks, text);
}

TEST(LineBreaksTest, CharactersStayWhole) {
  std::string text = "x";
  while (text.size() < 60'000) text += "\xE2\x82\xAC\xF0\x9F\x98\x80\xC3\xA9";
  const LineBreaks breaks(text);
  EXPECT_GT(breaks.Count(), 10U);
  for (const std::size_t place : breaks.Places())
    EXPECT_NE(static_cast<unsigned char>(text[place]) & 0xC0U, 0x80U) << place;
  ExpectPlacesFit(breaks, text);
}

TEST(LineBreaksTest, BytesThatAreNoTextAreBrokenToo) {
  const std::string continuing(50'000, '\x80');
  EXPECT_EQ(LongestPiece(LineBreaks(continuing), continuing), LineBreaks::pieceLength);
  ExpectPlacesFit(LineBreaks(continuing), continuing);
  std::mt19937 random(1);
  std::string bytes;
  while (bytes.size() < 200'000) bytes += static_cast<char>(random());
  ExpectPlacesFit(LineBreaks(bytes), bytes);
}

}  // namespace
}  // namespace tessel::test
