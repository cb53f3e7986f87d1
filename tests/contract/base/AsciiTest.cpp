#include "contract/text/Ascii.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(AsciiTest, TakesTheBracketsAroundANameAway) {
  EXPECT_EQ(WithoutBrackets("[Order Details]"), "Order Details");
  EXPECT_EQ(WithoutBrackets("Orders"), "Orders");
  EXPECT_EQ(WithoutBrackets("[a][b]"), "a][b");
}

TEST(AsciiTest, LeavesBracketsThatEncloseNothing) {
  for (const char* name : {"", "[", "]", "[]", "[a", "a]"}) EXPECT_EQ(WithoutBrackets(name), name);
}

}  // namespace
}  // namespace tessel
