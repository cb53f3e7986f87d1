#include "contract/text/TextCut.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(CutTest, CutsAtTheFirstAndKeepsAfterTheLastDelimiter) {
  std::string text = "a--b--c";
  CutAtFirst(text, "--");
  EXPECT_EQ(text, "a");
  CutAtFirst(text, "x");
  EXPECT_EQ(text, "a");
  text = "/home/me/file.sql";
  KeepAfterLast(text, "/");
  EXPECT_EQ(text, "file.sql");
  text = "a--b--c";
  KeepAfterLast(text, "--");
  EXPECT_EQ(text, "-c");
  KeepAfterLast(text, "zz");
  EXPECT_EQ(text, "-c");
}

}  // namespace
}  // namespace tessel
