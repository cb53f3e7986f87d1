#include "data/providers/text/CommandText.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(CommandText, FindsTheFirstWord) {
  EXPECT_EQ(FirstWord("  -- show\n /* x */ Select 1"), "Select");
  EXPECT_EQ(FirstWord("-- nothing"), "");
  EXPECT_EQ(FirstWord(""), "");
}

TEST(CommandText, FindsAWord) {
  EXPECT_TRUE(HasWord("select Found_Rows()", {"show", "found_rows"}));
  EXPECT_FALSE(HasWord("-- show\n/* show */ select 'show', \"show\", shown", {"show"}));
  EXPECT_FALSE(HasWord("", {"show"}));
}

TEST(CommandText, FindsAStatementByItsWords) {
  const auto hangs = [](std::string_view sql) {
    return HasStatement(sql, "copy", {"stdin", "stdout"});
  };
  EXPECT_TRUE(hangs("COPY t FROM Stdin"));
  EXPECT_TRUE(hangs("select 1; copy (select ';') to stdout"));
  EXPECT_TRUE(hangs("/* ; */ copy t to stdout -- x"));
  EXPECT_FALSE(hangs("copy t to '/tmp/stdout'"));
  EXPECT_FALSE(hangs("copy t to '/tmp/x'; select stdout from y"));
  EXPECT_FALSE(hangs("select 'copy', stdin from copy"));
  EXPECT_FALSE(hangs("select \"a;copy\" from stdin"));
  EXPECT_FALSE(hangs("'unfinished copy stdin"));
}

}  // namespace
}  // namespace tessel
