#include "logic/text/find/FoundText.h"

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel {
namespace {

bool Holds(const char* what, const char* text, FindOptions options = {}) {
  return MakeTextTest(what, options)->Holds(text);
}

TEST(FoundText, CaseDoesNotCountUnlessItIsAskedFor) {
  EXPECT_TRUE(Holds("wien", "Hauptbahnhof WIEN"));
  EXPECT_TRUE(Holds("n", "N"));
  EXPECT_FALSE(Holds("wien", "Wie n"));
  EXPECT_FALSE(Holds("wien", "wie"));
  EXPECT_FALSE(Holds("wien", ""));
  EXPECT_TRUE(Holds("aab", "aaab"));
  EXPECT_FALSE(Holds("wien", "WIEN", {.matchCase = true}));
  EXPECT_TRUE(Holds("WIEN", "in WIEN", {.matchCase = true}));
}

TEST(FoundText, NorThatOfOtherLetters) {
  EXPECT_TRUE(Holds("äpfel", "ÄPFEL"));
  EXPECT_TRUE(Holds("Straße", "eine Straße"));
  EXPECT_FALSE(Holds("äpfel", "apfel"));
  EXPECT_TRUE(Holds("apfel", "Äpfel Apfel"));
  EXPECT_FALSE(Holds("ä", "\xC3"));
}

TEST(FoundText, WordsAndExpressionsAreFollowed) {
  EXPECT_TRUE(Holds("graz", "in Graz.", {.wholeWords = true}));
  EXPECT_FALSE(Holds("graz", "Grazer", {.wholeWords = true}));
  EXPECT_TRUE(Holds("^[0-9]+-b$", "123-B", {.regularExpression = true}));
  EXPECT_FALSE(Holds("^[0-9]+-b$", "x123-B", {.regularExpression = true}));
  EXPECT_THROW(static_cast<void>(MakeTextTest("(", {.regularExpression = true})), Error);
}

}  // namespace
}  // namespace tessel
