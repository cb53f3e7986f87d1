#include "contract/base/Color.h"

#include <gtest/gtest.h>

#include <vector>

#include "logic/results/StatusLine.h"

namespace tessel {
namespace {

TEST(ColorTest, ContrastGoesFrom1To21) {
  EXPECT_DOUBLE_EQ(Contrast(color::black, color::black), 1);
  EXPECT_DOUBLE_EQ(Contrast(color::black, color::white), 21);
  EXPECT_DOUBLE_EQ(Contrast(color::white, color::black), 21);
  EXPECT_NEAR(Contrast(color::white, 0x767676), 4.54, 0.01);
  EXPECT_NEAR(Contrast(color::black, 0x00BF00), 8.4, 0.1) << "green is bright";
  EXPECT_NEAR(Contrast(color::white, 0xBF0000), 12.0, 0.1) << "blue is dark";
}

TEST(ColorTest, TextIsBlackOrWhiteByItsGround) {
  EXPECT_EQ(TextOn(color::black), color::white);
  EXPECT_EQ(TextOn(color::white), color::black);
  EXPECT_EQ(TextOn(statusColor::recordsAffected), color::black);
  EXPECT_EQ(TextOn(statusColor::records), color::white);
  EXPECT_EQ(TextOn(0x00BFFF), color::black);
}

/// Each ground of the status line alone, and combined with any others by what is appended.
TEST(ColorTest, TextCanBeReadOnEveryGroundOfTheStatusLine) {
  const std::vector<Color> grounds = {statusColor::plain,           statusColor::records,
                                      statusColor::recordsAffected, statusColor::completed,
                                      statusColor::interrupted,     statusColor::errorsOccurred,
                                      statusColor::failure};
  for (unsigned chosen = 0; chosen < 1U << grounds.size(); ++chosen) {
    Color ground = 0;
    for (std::size_t i = 0; i < grounds.size(); ++i)
      if ((chosen >> i & 1U) != 0) ground |= grounds[i];
    EXPECT_GE(Contrast(TextOn(ground), ground), readableContrast) << std::hex << ground;
  }
}

TEST(ColorTest, TextCanBeReadOnAnyGround) {
  constexpr Color step = 15;
  for (Color blue = 0; blue <= 0xFF; blue += step)
    for (Color green = 0; green <= 0xFF; green += step)
      for (Color red = 0; red <= 0xFF; red += step) {
        const Color ground = blue << 16 | green << 8 | red;
        ASSERT_GE(Contrast(TextOn(ground), ground), readableContrast) << std::hex << ground;
      }
}

}  // namespace
}  // namespace tessel
