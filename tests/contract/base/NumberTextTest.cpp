#include "contract/base/NumberText.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(ByteToHexTest, WritesTwoUpperCaseDigits) {
  EXPECT_EQ(ByteToHex(0), "00");
  EXPECT_EQ(ByteToHex(10), "0A");
  EXPECT_EQ(ByteToHex(255), "FF");
}

}  // namespace
}  // namespace tessel
