#include "logic/connections/MergeConnections.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

using List = std::vector<SavedConnection>;

SavedConnection Entry(const std::string& name) { return {"DSN=" + name, name}; }

List Of(const std::string& names) {
  List list;
  for (const char name : names) list.push_back(Entry(std::string(1, name)));
  return list;
}

const List base = Of("ABCD");

TEST(MergeConnectionsTest, WithoutAnotherProgramTheListIsMine) {
  EXPECT_EQ(MergeConnections(base, base, Of("DXA")), Of("DXA"));
}

TEST(MergeConnectionsTest, WhatBothAddedIsInTheList) {
  EXPECT_EQ(MergeConnections(base, Of("ABCDX"), Of("ABCDY")), Of("ABCDXY"));
  EXPECT_EQ(MergeConnections({}, Of("X"), Of("Y")), Of("XY"));
}

TEST(MergeConnectionsTest, WhatBothAddedAlikeIsThereOnce) {
  EXPECT_EQ(MergeConnections(base, Of("ABCDX"), Of("ABCDXY")), Of("ABCDXY"));
}

TEST(MergeConnectionsTest, WhatEitherRemovedStaysRemoved) {
  EXPECT_EQ(MergeConnections(base, Of("ACD"), Of("ABD")), Of("AD"));
}

TEST(MergeConnectionsTest, AnEntryThatIChangedTakesItsPlace) {
  List mine = base;
  mine[1].caption = "mine";
  List merged = Of("ABCDX");
  merged[1].caption = "mine";
  EXPECT_EQ(MergeConnections(base, Of("ABCDX"), mine), merged);
}

TEST(MergeConnectionsTest, AnEntryThatTheOtherChangedKeepsTheChange) {
  List theirs = base;
  theirs[2].connectionString = "DSN=theirs";
  List merged = theirs;
  merged.push_back(Entry("Y"));
  EXPECT_EQ(MergeConnections(base, theirs, Of("ABCDY")), merged);
}

TEST(MergeConnectionsTest, AnEntryThatBothChangedIsKeptAsEachHasIt) {
  List theirs = base;
  theirs[1].connectionString = "DSN=theirs";
  List mine = base;
  mine[1].caption = "mine";
  const List merged = MergeConnections(base, theirs, mine);
  EXPECT_EQ(merged.size(), 5U);
  EXPECT_EQ(std::ranges::count(merged, theirs[1]), 1);
  EXPECT_EQ(std::ranges::count(merged, mine[1]), 1);
}

TEST(MergeConnectionsTest, OfColoursThatBothChangedMineAreTaken) {
  List theirs = base;
  theirs[1].backColor = 0xFF;
  List mine = base;
  mine[1].backColor = 0xFF00;
  EXPECT_EQ(MergeConnections(base, theirs, mine), mine);
}

TEST(MergeConnectionsTest, AnEntryThatIChangedSurvivesItsRemoval) {
  List mine = base;
  mine[1].caption = "mine";
  EXPECT_EQ(MergeConnections(base, Of("ACD"), mine), mine);
}

TEST(MergeConnectionsTest, MyOrderIsTakenWhenIMovedEntries) {
  EXPECT_EQ(MergeConnections(base, Of("ABCDX"), Of("DCBA")), Of("DCBAX"));
  EXPECT_EQ(MergeConnections(base, Of("XABCD"), Of("BADC")), Of("BXADC"));
}

TEST(MergeConnectionsTest, TheirOrderIsTakenWhenIMovedNone) {
  EXPECT_EQ(MergeConnections(base, Of("DCBA"), Of("ABDY")), Of("DBAY"));
}

TEST(MergeConnectionsTest, EqualEntriesCountSingly) {
  EXPECT_EQ(MergeConnections(Of("AAB"), Of("AABX"), Of("AB")), Of("ABX"));
  EXPECT_EQ(MergeConnections(Of("A"), Of("AX"), Of("AA")), Of("AXA"));
}

}  // namespace
}  // namespace tessel
