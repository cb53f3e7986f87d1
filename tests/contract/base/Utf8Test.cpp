#include "contract/text/Utf8.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(Utf8, AByteIsFoundByTheNumberOfItsCharacter) {
  constexpr std::string_view text = "aä€𝄞b";
  EXPECT_EQ(ByteOfCharacter(text, 0), 0U);
  EXPECT_EQ(ByteOfCharacter(text, 1), 1U);
  EXPECT_EQ(ByteOfCharacter(text, 2), 3U);
  EXPECT_EQ(ByteOfCharacter(text, 3), 6U);
  EXPECT_EQ(ByteOfCharacter(text, 4), 10U);
  EXPECT_EQ(ByteOfCharacter(text, 5), text.size()) << "behind the last one";
  EXPECT_EQ(ByteOfCharacter(text, 99), text.size());
  EXPECT_EQ(ByteOfCharacter("", 0), 0U);
}

}  // namespace
}  // namespace tessel
