#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::ElementsAre;

class MariaFields : public MariaTest {
 protected:
  void SetUp() override {
    MariaTest::SetUp();
    Run("create or replace table `odd; ``table` (id int auto_increment primary key, `odd; ``name` "
        "varchar(30) not null, amount decimal(12,3), price decimal(10,0) unsigned, code char(4) "
        "unique, b varbinary(7), t text, l longblob, ub bigint unsigned)");
  }
  void TearDown() override { Run("drop table `odd; ``table`"); }
};

TEST_F(MariaFields, AreToldWithTheirBase) {
  const auto recordset = Run("select o.*, id + 1 as more from `odd; ``table` o");
  const auto& fields = recordset->Fields();
  ASSERT_EQ(fields.size(), 10U);
  EXPECT_EQ(fields[0].baseCatalog, "shop");
  EXPECT_EQ(fields[0].baseSchema, "");
  EXPECT_EQ(fields[0].baseTable, "odd; `table");
  EXPECT_TRUE(fields[0].autoIncrement);
  EXPECT_FALSE(fields[0].nullable);
  EXPECT_EQ(fields[1].baseColumn, "odd; `name");
  EXPECT_FALSE(fields[1].nullable);
  EXPECT_TRUE(fields[2].nullable);
  EXPECT_TRUE(fields[2].updatable);
  EXPECT_EQ(fields[9].baseTable, "");
  EXPECT_EQ(fields[9].baseColumn, "");
  EXPECT_FALSE(fields[9].updatable);
  EXPECT_EQ(recordset->RecordsetProperties().At("Unique Rows"), Value(true));
}

TEST_F(MariaFields, TellSizesAndNamesOfTypes) {
  const auto recordset = Run("select * from `odd; ``table`");
  const auto& fields = recordset->Fields();
  std::vector<std::string> types;
  std::vector<std::int64_t> sizes;
  for (const FieldInfo& field : fields) {
    types.push_back(field.typeName);
    sizes.push_back(field.definedSize);
  }
  EXPECT_THAT(types, ElementsAre("int", "varchar", "decimal", "decimal unsigned", "char",
                                 "varbinary", "text", "longblob", "bigint unsigned"));
  EXPECT_THAT(sizes, ElementsAre(0, 30, 0, 0, 4, 7, 65535, 4294967295, 0));
  EXPECT_EQ(fields[2].precision, 12);
  EXPECT_EQ(fields[2].scale, 3);
  EXPECT_EQ(fields[3].precision, 10);
  EXPECT_EQ(fields[3].scale, 0);
}

TEST_F(MariaFields, OnlyWholeIndexesOfColumnsMakeRowsUnique) {
  Run("create or replace table k (a int unique, b varchar(20) not null, c int not null, d int not "
      "null, unique (b(5)), unique (c, d))");
  EXPECT_FALSE(IsUnique("select a, b from k"));
  EXPECT_FALSE(IsUnique("select c from k"));
  EXPECT_TRUE(IsUnique("select d, c as other from k"));
  EXPECT_FALSE(IsUnique("select x.c, x.d, y.c from k x, k y"));
  EXPECT_FALSE(IsUnique("select c, d from k union all select c, d from k"));
  Run("drop table k");
}

TEST_F(MariaFields, TemporaryTablesHaveKeysToo) {
  Run("create or replace temporary table k (a int primary key)");
  EXPECT_TRUE(IsUnique("select a from k"));
}

TEST_F(MariaFields, TheAliasOfAQueryIsNoTable) {
  EXPECT_FALSE(IsUnique("select x.id from (select id from `odd; ``table`) x"));
  EXPECT_EQ(connection_->DefaultDatabase(), "shop");
}

TEST_F(MariaFields, ViewsHaveNoKey) {
  Run("create or replace view seen as select id from `odd; ``table`");
  const auto recordset = Run("select id from seen");
  EXPECT_EQ(recordset->Fields()[0].baseTable, "seen");
  EXPECT_EQ(recordset->RecordsetProperties().At("Unique Rows"), Value(false));
  Run("drop view seen");
}

}  // namespace tessel::test
