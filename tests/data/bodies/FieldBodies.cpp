#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

namespace {

bool IsUnique(const Recordset& recordset) {
  return recordset.RecordsetProperties().Number("Unique Rows", -1) == 1;
}

}  // namespace

TEST_P(FieldBodies, NamesAreThoseOfTheResult) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + Db().TextType());
  const auto recordset =
      Run(*connection, "select id, v as \"Name of v\", id + 1 as more from " + table.Name());
  const auto& fields = recordset->Fields();
  ASSERT_EQ(fields.size(), 3U);
  EXPECT_EQ(fields[0].name, "id");
  EXPECT_EQ(fields[2].name, "more");
  EXPECT_TRUE(IsNumericType(fields[0].type));
}

TEST_P(FieldBodies, BaseColumnsAreToldBehindAnAlias) {
  if (!Db().Traits().baseColumns) GTEST_SKIP() << "not told here";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + Db().TextType());
  const auto recordset =
      Run(*connection, "select a.v as other, a.id + 1 as more, a.id from " + table.Name() + " a");
  const auto& fields = recordset->Fields();
  EXPECT_EQ(fields[0].baseTable, table.Name());
  EXPECT_EQ(fields[0].baseColumn, "v");
  EXPECT_TRUE(fields[1].baseTable.empty());
  EXPECT_TRUE(fields[1].baseColumn.empty());
  EXPECT_EQ(fields[2].baseColumn, "id");
}

TEST_P(FieldBodies, RowsAreUniqueWithAWholeKey) {
  if (!Db().Traits().uniqueRows) GTEST_SKIP() << "not told here";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection,
                           "a integer not null, b integer not null, c integer, primary key (a, b)");
  const std::string from = " from " + table.Name();
  EXPECT_TRUE(IsUnique(*Run(*connection, "select *" + from)));
  EXPECT_TRUE(IsUnique(*Run(*connection, "select c, b as x, a as y" + from)));
  EXPECT_FALSE(IsUnique(*Run(*connection, "select a, c" + from)));
  EXPECT_FALSE(IsUnique(*Run(*connection, "select a, b + 0 as b" + from)));
  EXPECT_FALSE(IsUnique(*Run(*connection, "select 1 as a, 2 as b")));
}

TEST_P(FieldBodies, RowsAreUniqueWithAUniqueIndexThatHasNoNulls) {
  if (!Db().Traits().uniqueRows) GTEST_SKIP() << "not told here";
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "a integer not null unique, b integer unique");
  const std::string from = " from " + table.Name();
  EXPECT_TRUE(IsUnique(*Run(*connection, "select a" + from)));
  EXPECT_FALSE(IsUnique(*Run(*connection, "select b" + from)));
}

TEST_P(FieldBodies, RowsOfTwoTablesAreNotUnique) {
  if (!Db().Traits().uniqueRows) GTEST_SKIP() << "not told here";
  const auto connection = Connect();
  const ScratchTable one(Db(), connection, "id " + Db().KeyType());
  const ScratchTable two(Db(), connection, "id " + Db().KeyType());
  const auto recordset = Run(*connection, "select x.id, y.id as other from " + one.Name() + " x, " +
                                              two.Name() + " y");
  EXPECT_FALSE(IsUnique(*recordset));
}

TEST_P(FieldBodies, AClosedRecordsetHasTheProperty) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(1));
  recordset->Close();
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", -1), 0);
}

}  // namespace tessel::test
