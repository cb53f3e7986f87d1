#include "logic/results/export/formats/TextEncoder.h"

#include <gtest/gtest.h>

namespace tessel::test {
namespace {

using namespace std::string_literals;

TEST(TextEncoderTest, Utf16HasPairsForWhatIsBeyondItsUnits) {
  const TextEncoder encoder(TextCode::Utf16);
  EXPECT_EQ(encoder.Mark(), "\xFF\xFE");
  EXPECT_EQ(encoder.Encoded("aü\u20AC\U0001F600"), "a\0\xFC\0\xAC\x20\x3D\xD8\x00\xDE"s);
}

TEST(TextEncoderTest, Latin1HasNoOtherCharactersThanItsOwn) {
  const TextEncoder encoder(TextCode::Latin1);
  EXPECT_EQ(encoder.Encoded("aüÿ\n"), "a\xFC\xFF\n");
  EXPECT_EQ(encoder.FirstWithout("aü\u20ACb"), "\u20AC");
  EXPECT_EQ(encoder.FirstWithout("aü"), std::nullopt);
  EXPECT_EQ(encoder.WhyNot("\u20AC"), "the character \"\u20AC\" (U+20AC) is not in ISO-8859-1.");
  EXPECT_EQ(encoder.FirstWithout("a\xFF"), "\xFF");
}

TEST(TextEncoderTest, Utf8StaysAndMayHaveAMark) {
  EXPECT_TRUE(TextEncoder(TextCode::Utf8).KeepsBytes());
  EXPECT_EQ(TextEncoder(TextCode::Utf8).Mark(), "");
  EXPECT_TRUE(TextEncoder(TextCode::Utf8WithMark).KeepsBytes());
  EXPECT_EQ(TextEncoder(TextCode::Utf8WithMark).Mark(), "\xEF\xBB\xBF");
}

}  // namespace
}  // namespace tessel::test
