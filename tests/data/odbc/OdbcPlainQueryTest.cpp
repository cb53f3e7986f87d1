#include <gtest/gtest.h>

#include "platform/data/odbc/OdbcPlainQuery.h"

namespace tessel::odbc {

TEST(OdbcPlainQuery, BelievesPlainColumns) {
  for (const char* sql :
       {"select * from t", "SELECT a,b FROM t", " select t.a , \"b c\" from T;",
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
                          "select a from v.t2"})
    EXPECT_FALSE(NamesPlainColumns(sql, "t")) << sql;
}

}  // namespace tessel::odbc
