#include "data/changes/WriteDialects.h"

#include <gtest/gtest.h>

#include "data/changes/RowSql.h"

namespace tessel::test {

TEST(MariaDialect, ReturnsInsertedRowsOnlyFromTheVersionThatKnowsHow) {
  for (const char* version : {"10.5.0-MariaDB", "10.11.000006", "11.4.2-MariaDB", "12.0"})
    EXPECT_TRUE(MariaDialect("MariaDB", version).returnsInserted) << version;
  for (const char* version : {"10.4.34-MariaDB", "5.5.68-MariaDB", "10", "", "x"})
    EXPECT_FALSE(MariaDialect("MariaDB", version).returnsInserted) << version;
  EXPECT_FALSE(MariaDialect("MySQL", "10.9").returnsInserted);
}

TEST(UnknownDialect, QuotesWhereItKnowsTheSignAndElseTakesPlainNamesOnly) {
  EXPECT_EQ(QuotedName("it's", UnknownDialect('"')), "\"it's\"");
  EXPECT_EQ(QuotedName("a\"b", UnknownDialect('"')), "\"a\"\"b\"");
  EXPECT_EQ(QuotedName("Plain_1", UnknownDialect('\0')), "Plain_1");
  EXPECT_THROW((void)QuotedName("t; drop table u", UnknownDialect('\0')), Error);
}

}  // namespace tessel::test
