#include "logic/connections/DataLinkText.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(DataLinkTextTest, KeepsOrderSpellingAndBracedValues) {
  const std::string text = "Driver={PostgreSQL;Unicode};Server=h;pwd=a=b";
  const DataLinkPairs pairs = SplitDataLink(text);
  EXPECT_EQ(pairs,
            (DataLinkPairs{{"Driver", "{PostgreSQL;Unicode}"}, {"Server", "h"}, {"pwd", "a=b"}}));
  EXPECT_EQ(JoinDataLink(pairs), text);
}

TEST(DataLinkTextTest, LeavesOutPiecesWithoutAKey) {
  EXPECT_EQ(SplitDataLink(";;=x; ;A=1;"), (DataLinkPairs{{"A", "1"}}));
}

TEST(DataLinkTextTest, SetsAKeyWithoutRegardToCaseAndAddsANewOneAtTheEnd) {
  DataLinkPairs pairs = SplitDataLink("A=1;B=2");
  SetDataLinkPair(pairs, "a", "3");
  SetDataLinkPair(pairs, "C", "x;y");
  EXPECT_EQ(JoinDataLink(pairs), "A=3;B=2;C={x;y}");
}

TEST(DataLinkTextTest, AnOpenBraceIsAnOrdinaryCharacter) {
  EXPECT_EQ(SplitDataLink("A={x;B=1"), (DataLinkPairs{{"A", "{x"}, {"B", "1"}}));
}

}  // namespace
}  // namespace tessel
