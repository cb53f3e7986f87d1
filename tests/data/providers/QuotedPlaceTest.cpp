#include "data/providers/text/QuotedPlace.h"

#include <gtest/gtest.h>

#include <string>

namespace tessel {
namespace {

std::string Complaint(const std::string& quoted, int line) {
  return "You have an error in your SQL syntax; check the manual for the right syntax to use near "
         "'" +
         quoted + "' at line " + std::to_string(line);
}

TEST(QuotedPlaceTest, IsWhereTheQuotedTextBegins) {
  EXPECT_EQ(QuotedPlace(Complaint("fro t", 1), "select * fro t"), 9U);
}

TEST(QuotedPlaceTest, WhatIsQuotedMayGoOnBehindTheStatement) {
  EXPECT_EQ(QuotedPlace(Complaint("t; insert into u", 1), "select 'a' fro t"), 15U);
}

TEST(QuotedPlaceTest, WhatIsQuotedMayBeCut) {
  EXPECT_EQ(QuotedPlace(Complaint("fro ta", 1), "select * fro table_of_long_name"), 9U);
}

TEST(QuotedPlaceTest, QuotesWithinAreKept) {
  EXPECT_EQ(
      QuotedPlace(Complaint("wher a = 'x' at line 3' ", 1), "update t wher a = 'x' at line 3' "),
      9U);
}

TEST(QuotedPlaceTest, NothingQuotedIsTheEnd) {
  EXPECT_EQ(QuotedPlace(Complaint("", 1), "select ("), 8U);
}

TEST(QuotedPlaceTest, TheLineDecidesBetweenSeveral) {
  const std::string statement = "select a,\n, b\nfrom t";
  EXPECT_EQ(QuotedPlace(Complaint(",", 2), "select a,\n,"), 10U);
  EXPECT_EQ(QuotedPlace(Complaint(", b\nfrom t", 2), statement), 10U);
}

TEST(QuotedPlaceTest, WhatDoesNotStandThereIsNoPlace) {
  EXPECT_FALSE(QuotedPlace(Complaint("other", 1), "select * fro t"));
  EXPECT_FALSE(QuotedPlace("Duplicate entry '1' for key 'PRIMARY'", "insert into t values (1)"));
  EXPECT_FALSE(QuotedPlace(Complaint("fro t", 1), ""));
  EXPECT_FALSE(QuotedPlace(Complaint("(", 7), "select (1), (2), ("));
}

}  // namespace
}  // namespace tessel
