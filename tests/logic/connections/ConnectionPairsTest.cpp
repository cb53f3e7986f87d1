#include "logic/connections/text/ConnectionPairs.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(ParseConnectionStringTest, FirstOfEqualKeysWinsAndValuesKeepTheirEqualsSigns) {
  const ConnectionPairs pairs =
      ParseConnectionString("Provider=X;;Data Source=a=b; user id =sa;PROVIDER=Y");
  EXPECT_EQ(pairs, (ConnectionPairs{{"PROVIDER", "X"}, {"DATA SOURCE", "a=b"}, {"USER ID", "sa"}}));
}

TEST(ParseConnectionStringTest, KeepsValuesUntrimmedAndTakesAPieceWithoutEqualsAsAKey) {
  const ConnectionPairs pairs = ParseConnectionString(" a = x ;flag;=nothing; ");
  EXPECT_EQ(pairs, (ConnectionPairs{{"A", " x "}, {"FLAG", ""}}));
  EXPECT_TRUE(ParseConnectionString("").empty());
}

TEST(GetConnectionStringValueTest, TakesTheFirstNameThatIsAKey) {
  const ConnectionPairs pairs = ParseConnectionString("Server=s;Data Source=");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"data source", "server"}), "");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"host", "server"}), "s");
  EXPECT_EQ(GetConnectionStringValue(pairs, {"host"}), "");
}

TEST(AppendConnectionStringPairTest, LeavesTheStringUntouchedForAnEmptyValue) {
  std::string text;
  AppendConnectionStringPair(text, "A", "");
  EXPECT_EQ(text, "");
  AppendConnectionStringPair(text, "A", "1");
  AppendConnectionStringPair(text, "B", "2;3");
  AppendConnectionStringPair(text, "C", "");
  EXPECT_EQ(text, "A=1;B=2;3");
}

}  // namespace
}  // namespace tessel
