#include "contract/text/Fnv.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

/// The values are those that the authors of the sum publish.
TEST(Fnv, TheSumIsThatOfItsAuthors) {
  EXPECT_EQ(Fnv1a(""), 0xCBF29CE484222325U);
  EXPECT_EQ(Fnv1a("a"), 0xAF63DC4C8601EC8CU);
  EXPECT_EQ(Fnv1a("foobar"), 0x85944171F73967E8U);
}

TEST(Fnv, ATextMayComeInParts) { EXPECT_EQ(Fnv1a("bar", Fnv1a("foo")), Fnv1a("foobar")); }

TEST(Fnv, AByteBeyondAsciiCountsAsItsNumber) {
  EXPECT_EQ(Fnv1a("\xFF"), (fnvOfNothing ^ 0xFFU) * 0x100000001B3U);
}

}  // namespace
}  // namespace tessel
