#include <gtest/gtest.h>

#include "data/providers/odbc/driver/OdbcPlainQuery.h"

namespace tessel::odbc {

TEST(OdbcPlainQuery, BelievesPlainColumns) {
  for (const char* sql :
       {"select * from t", "SELECT a,b FROM t", " select t.a , \"b c\" from T;",
        "select a from c.s.t", "select a from t where b = ';';",
        "select `a`, [b] from main.t where a = 1 order by b", "select t.* from t limit 5",
        "select a from \"t\" group by a", "select a\nfrom t\n"})
    EXPECT_TRUE(NamesPlainColumns(sql, "t")) << sql;
}

TEST(OdbcPlainQuery, BelievesNothingElse) {
  for (const char* sql : {"select a as b from t",
                          "select a b from t",
                          "select a + 1 from t",
                          "select max(a) from t",
                          "select 'a' from t",
                          "select a from t x",
                          "select a from t, u",
                          "select a from t join u",
                          "select a from (select b as a from t)",
                          "with t as (select 1 a) select a from t",
                          "select a from u",
                          "select a from t where 1 union select b from t",
                          "select distinct a from t",
                          "select from t",
                          "select a, from t",
                          "select",
                          "",
                          "delete from t",
                          "select \"a from t",
                          "select a from t; use other",
                          "select a from t where a = 1; delete from t",
                          "select a from a.b.c.t",
                          "select a from s.",
                          "select a from v.t2"})
    EXPECT_FALSE(NamesPlainColumns(sql, "t")) << sql;
}

TEST(OdbcPlainQuery, TellsTheNameInItsParts) {
  const auto table = PlainTableOf("select a from \"my c\".s.t where a = 1");
  ASSERT_TRUE(table);
  EXPECT_EQ(table->catalog, "my c");
  EXPECT_EQ(table->schema, "s");
  EXPECT_EQ(table->name, "t");
  EXPECT_EQ(PlainTableOf("select a from s.t")->schema, "s");
  EXPECT_EQ(PlainTableOf("select a from s.t")->catalog, "");
}

}  // namespace tessel::odbc
