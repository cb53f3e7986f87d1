#include "logic/text/LineEnds.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(LineEndsTest, TheDocumentsFirstLineEndIsTaken) {
  EXPECT_EQ(WithLineEndsOf("a\nb\r\n", "1\r\n2\n3"), "1\n2\n3");
  EXPECT_EQ(WithLineEndsOf("a\r\nb\n", "1\n2\r\n3"), "1\r\n2\r\n3");
}

TEST(LineEndsTest, ADocumentOfOneLineTakesThePlatforms) {
  EXPECT_EQ(WithLineEndsOf("SELECT 1", "1\r\n2\n"), "1\n2\n");
}

TEST(LineEndsTest, AnEmptyDocumentTakesTheTextAsItIs) {
  EXPECT_EQ(WithLineEndsOf("", "1\r\n2\n"), "1\r\n2\n");
}

TEST(LineEndsTest, ACarriageReturnAloneIsNoLineEnd) {
  EXPECT_EQ(WithLineEndsOf("a\n", "1\r2\r\r\n\r"), "1\r2\r\n\r");
}

}  // namespace
}  // namespace tessel
