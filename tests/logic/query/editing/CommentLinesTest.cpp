#include "logic/query/editing/CommentLines.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

/// The text with its lines changed; what is selected afterwards between "[" and "]".
std::string Changed(std::string text, TextRange selected) {
  const LineChange change = CommentOrUncomment(text, selected);
  text.replace(change.replaced.begin, change.replaced.end - change.replaced.begin, change.text);
  text.insert(change.selected.end, "]");
  return text.insert(change.selected.begin, "[");
}

TEST(CommentLinesTest, TheLineOfTheCaretBecomesAComment) {
  EXPECT_EQ(Changed("one\n  two\nthree", {8, 8}), "one\n  -- tw[]o\nthree");
  EXPECT_EQ(Changed("one", {0, 0}), "-- []one");
  EXPECT_EQ(Changed("one\ntwo", {7, 7}), "one\n-- two[]");
}

TEST(CommentLinesTest, ACommentBecomesSqlAgain) {
  EXPECT_EQ(Changed("one\n  -- two\nthree", {11, 11}), "one\n  tw[]o\nthree");
  EXPECT_EQ(Changed("--one", {0, 0}), "[]one");
}

TEST(CommentLinesTest, SeveralLinesGoTogether) {
  EXPECT_EQ(Changed("  a\n\n    b\nc", {0, 9}), "[  -- a\n\n  --   b]\nc");
  EXPECT_EQ(Changed("  -- a\n\n  --   b\nc", {0, 16}), "[  a\n\n    b]\nc");
}

TEST(CommentLinesTest, LinesThatAreCommentsOnlyInPartAreMadeSo) {
  EXPECT_EQ(Changed("-- a\nb", {0, 6}), "[-- -- a\n-- b]");
}

TEST(CommentLinesTest, ALineOnlyBegunIsLeft) {
  EXPECT_EQ(Changed("a\nb\nc", {0, 4}), "[-- a\n-- b]\nc");
}

TEST(CommentLinesTest, LineEndsOfWindowsStay) {
  EXPECT_EQ(Changed("a\r\n\r\nb\r\n", {0, 7}), "[-- a\r\n\r\n-- b\r]\n");
}

TEST(CommentLinesTest, AnEmptyTextHasNothingToComment) {
  EXPECT_EQ(Changed("", {0, 0}), "[]");
  EXPECT_EQ(Changed("  \n", {0, 3}), "[  ]\n");
}

}  // namespace
}  // namespace tessel
