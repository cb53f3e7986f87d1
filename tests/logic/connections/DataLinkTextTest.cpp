#include "logic/connections/text/DataLinkText.h"

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

TEST(DataLinkTextTest, ReadsBracesAsTheProvidersDo) {
  EXPECT_EQ(SplitDataLink("PWD={a}};b};B=1"), (DataLinkPairs{{"PWD", "{a}};b}"}, {"B", "1"}}));
  EXPECT_EQ(SplitDataLink("A={x;B=1"), (DataLinkPairs{{"A", "{x;B=1"}}));
  EXPECT_EQ(SplitDataLink("A= {x;y};B=1"), (DataLinkPairs{{"A", " {x;y}"}, {"B", "1"}}));
}

TEST(DataLinkTextTest, WhatIsJoinedIsReadAgain) {
  DataLinkPairs pairs;
  SetDataLinkPair(pairs, "PWD", "a}b;c");
  const std::string text = JoinDataLink(pairs);
  EXPECT_EQ(text, "PWD={a}}b;c}");
  EXPECT_EQ(SplitDataLink(text), (DataLinkPairs{{"PWD", "{a}}b;c}"}}));
}

TEST(DataLinkTextTest, KeepsAPieceWithoutAValueAndTheBlanksOfValues) {
  EXPECT_EQ(SplitDataLink("flag; A = x ;B=2"),
            (DataLinkPairs{{"flag", ""}, {"A", " x "}, {"B", "2"}}));
}

}  // namespace
}  // namespace tessel
