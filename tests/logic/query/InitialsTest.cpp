#include "logic/query/completion/Initials.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(MakeInitialsTest, AbbreviatesByWordsAndCapitals) {
  EXPECT_EQ(MakeInitials("customer_order_id", false, true), "COI");
  EXPECT_EQ(MakeInitials("CustomerOrderID", true, false), "COID");
  EXPECT_EQ(MakeInitials("orders", true, true), "O");
  EXPECT_EQ(MakeInitials("", true, true), "");
  EXPECT_EQ(MakeInitials("order details\tx", false, true), "ODX");
  EXPECT_EQ(MakeInitials("order_details", false, false), "O");
  EXPECT_EQ(MakeInitials("fooBar_bazQux", true, true), "FBBQ");
}

TEST(MakeInitialsTest, RaisesTheCaseOfNonAsciiWordStartsOnly) {
  EXPECT_EQ(MakeInitials("älter_öfter", false, true), "ÄÖ");
  EXPECT_EQ(MakeInitials("aÄb", true, false), "A");
}

}  // namespace
}  // namespace tessel
