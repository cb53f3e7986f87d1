#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::ElementsAre;

class PostgresFields : public PostgresTest {
 protected:
  void SetUp() override {
    PostgresTest::SetUp();
    Run("create schema if not exists \"Odd Schema\"");
    Run("drop table if exists \"Odd Schema\".\"Odd; Table\" cascade");
    Run("create table \"Odd Schema\".\"Odd; Table\" (id int generated always as identity primary "
        "key, \"Odd \"\"Name\" varchar(30) not null, amount numeric(12,3), code char(4) unique, "
        "twice int generated always as (1 + 1) stored, counted serial)");
  }
  void TearDown() override { Run("drop schema \"Odd Schema\" cascade"); }
};

TEST_F(PostgresFields, AreToldFromTheCatalog) {
  const auto recordset = Run("select o.*, id + 1 as more, 'x'::varchar(7) as v from \"Odd "
                             "Schema\".\"Odd; Table\" o");
  const auto& fields = recordset->Fields();
  ASSERT_EQ(fields.size(), 8U);
  EXPECT_EQ(fields[0].baseCatalog, "shop");
  EXPECT_EQ(fields[0].baseSchema, "Odd Schema");
  EXPECT_EQ(fields[0].baseTable, "Odd; Table");
  EXPECT_EQ(fields[1].baseColumn, "Odd \"Name");
  EXPECT_EQ(fields[1].definedSize, 30);
  EXPECT_FALSE(fields[1].nullable);
  EXPECT_TRUE(fields[1].updatable);
  EXPECT_EQ(fields[2].precision, 12);
  EXPECT_EQ(fields[2].scale, 3);
  EXPECT_TRUE(fields[2].nullable);
  EXPECT_EQ(fields[3].definedSize, 4);
  EXPECT_FALSE(fields[4].updatable);
  EXPECT_EQ(fields[6].baseTable, "");
  EXPECT_FALSE(fields[6].updatable);
  EXPECT_EQ(fields[6].typeName, "integer");
  EXPECT_EQ(fields[7].definedSize, 7);
  std::vector<bool> counted;
  for (const FieldInfo& field : fields) counted.push_back(field.autoIncrement);
  EXPECT_THAT(counted, ElementsAre(true, false, false, false, false, true, false, false));
}

TEST_F(PostgresFields, AreThoseOfTheTableThatWasReadWhateverTheSearchPath) {
  Run("set search_path to \"Odd Schema\", public; create table \"Odd Schema\".twin (a int)");
  const ScratchTable table(connection_, "b int");
  Run("create table public.twin (a int primary key)");
  const auto recordset = Run("select a from public.twin");
  EXPECT_EQ(recordset->Fields()[0].baseSchema, "public");
  EXPECT_EQ(recordset->RecordsetProperties().At("Unique Rows"), Value(true));
  EXPECT_FALSE(IsUnique("select a from twin"));
  Run("drop table public.twin; reset search_path");
}

TEST_F(PostgresFields, NeedNoServedNamesInTheSearchPath) {
  Run("create function public.format_type(oid, int) returns text language sql as $$select 'x'$$");
  Run("set search_path to public, pg_catalog");
  EXPECT_EQ(
      Run("select '1'::bit(3) as b, id from \"Odd Schema\".\"Odd; Table\"")->Fields()[0].typeName,
      "bit");
  Run("reset search_path; drop function public.format_type(oid, int)");
}

TEST_F(PostgresFields, ViewsHaveTheirOwnColumnsAndNoKey) {
  Run("create view \"Odd Schema\".seen as select id as number, amount from \"Odd Schema\".\"Odd; "
      "Table\"");
  const auto recordset = Run("select number, amount from \"Odd Schema\".seen");
  EXPECT_EQ(recordset->Fields()[0].baseTable, "seen");
  EXPECT_EQ(recordset->Fields()[0].baseColumn, "number");
  EXPECT_TRUE(recordset->Fields()[1].updatable);
  EXPECT_EQ(recordset->RecordsetProperties().At("Unique Rows"), Value(false));
}

TEST_F(PostgresFields, OnlyWholeIndexesOfColumnsMakeRowsUnique) {
  Run("create temp table k (a int, b int not null, c int not null, d int not null)");
  Run("create unique index on k (b) where a > 0; create unique index on k ((b + 1))");
  Run("create unique index on k (a)");
  EXPECT_FALSE(IsUnique("select * from k"));
  Run("create unique index on k (c) include (d)");
  EXPECT_TRUE(IsUnique("select c from k"));
  EXPECT_FALSE(IsUnique("select d from k"));
  EXPECT_FALSE(IsUnique("select x.c, y.c from k x, k y"));
  EXPECT_FALSE(IsUnique("select c from k union all select c from k"));
}

TEST_F(PostgresFields, NamesOfOwnTypesAreTold) {
  Run("create type pg_temp.mood as enum ('sad', 'glad'); create domain pg_temp.small as int check "
      "(value < 9)");
  const auto recordset =
      Run("select 'glad'::pg_temp.mood as m, 3::pg_temp.small as s, array[1.5] as a");
  EXPECT_THAT(recordset->Fields()[0].typeName, testing::EndsWith("mood"));
  EXPECT_EQ(recordset->Fields()[0].type, DataType::VarWChar);
  EXPECT_EQ(recordset->Fields()[1].type, DataType::Integer);
  EXPECT_EQ(recordset->Fields()[2].typeName, "numeric[]");
  EXPECT_EQ(RowsOf(*recordset)[0], (std::vector<Value>{"glad", std::int64_t{3}, "{1.5}"}));
}

TEST_F(PostgresFields, SettingsOfTheSessionDoNotSpoilValues) {
  Run("set bytea_output to escape; set datestyle to german; set extra_float_digits to 0");
  const auto row = RowsOf(*Run("select '\\x00ff5c41'::bytea, '2024-02-29'::date, 0.5::float8"))[0];
  EXPECT_EQ(row[0], Value(Bytes{std::byte{0}, std::byte{255}, std::byte{92}, std::byte{65}}));
  EXPECT_EQ(row[1], Value(std::string("29.02.2024")));
  EXPECT_EQ(row[2], Value(0.5));
}

TEST_F(PostgresFields, TheDateStyleOfTheRoleDoesNotCount) {
  Run("alter role tessel set datestyle to 'German'");
  const auto other = Connect();
  EXPECT_EQ(DataTest::Cell(*other, "select '2024-02-29'::date"), Value(Moment{"2024-02-29"}));
  Run("alter role tessel reset datestyle");
}

}  // namespace tessel::test
