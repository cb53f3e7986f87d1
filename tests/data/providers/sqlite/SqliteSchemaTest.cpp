#include "tests/data/providers/sqlite/SqliteTest.h"

namespace tessel::test {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class SqliteFields : public SqliteTest {
 protected:
  bool Unique(const std::string& sql) {
    return Run(*connection_, sql)->RecordsetProperties().Number("Unique Rows", -1) == 1;
  }

  std::shared_ptr<Connection> connection_ = OpenMemory();
};

TEST_F(SqliteFields, DeclaredTypesBecomeTypes) {
  Run(*connection_, "create table t (a bigint, b varchar(30), c decimal(12, 3), d double, e date, "
                    "f timestamp, g bool, h varbinary(9), i char, j json, k tinyint unsigned, "
                    "l nvarchar(7), m money)");
  const auto recordset = Run(*connection_, "select * from t");
  std::vector<DataType> types;
  for (const FieldInfo& field : recordset->Fields()) types.push_back(field.type);
  EXPECT_THAT(types,
              ElementsAre(DataType::BigInt, DataType::VarWChar, DataType::Numeric, DataType::Double,
                          DataType::DBDate, DataType::DBTimeStamp, DataType::Boolean,
                          DataType::VarBinary, DataType::VarWChar, DataType::VarWChar,
                          DataType::BigInt, DataType::VarWChar, DataType::Numeric));
  EXPECT_EQ(recordset->Fields()[1].definedSize, 30);
  EXPECT_EQ(recordset->Fields()[2].precision, 12);
  EXPECT_EQ(recordset->Fields()[2].scale, 3);
  EXPECT_EQ(recordset->Fields()[7].definedSize, 9);
  EXPECT_EQ(recordset->Fields()[9].typeName, "json");
}

TEST_F(SqliteFields, ExpressionsTakeTheTypeOfTheirFirstValue) {
  const auto recordset = Run(*connection_, "select 1, 1.5, 'x', x'00', null");
  std::vector<DataType> types;
  for (const FieldInfo& field : recordset->Fields()) types.push_back(field.type);
  EXPECT_THAT(types, ElementsAre(DataType::BigInt, DataType::Double, DataType::LongVarWChar,
                                 DataType::LongVarBinary, DataType::VarWChar));
}

TEST_F(SqliteFields, TableFactsAreTold) {
  Run(*connection_, "create table t (id integer primary key, a text not null, b text, "
                    "c text generated always as (a || b)); create view v as select a as x from t");
  const auto recordset = Run(*connection_, "select id, a, b, c, a || b from t");
  const auto& fields = recordset->Fields();
  EXPECT_TRUE(fields[0].autoIncrement);
  EXPECT_FALSE(fields[0].nullable);
  EXPECT_FALSE(fields[1].autoIncrement);
  EXPECT_FALSE(fields[1].nullable);
  EXPECT_TRUE(fields[2].nullable);
  EXPECT_TRUE(fields[2].updatable);
  EXPECT_FALSE(fields[3].updatable);
  EXPECT_FALSE(fields[4].updatable);
  EXPECT_TRUE(fields[4].nullable);
  const auto view = Run(*connection_, "select x from v");
  EXPECT_EQ(view->Fields()[0].baseTable, "t");
  EXPECT_EQ(view->Fields()[0].baseColumn, "a");
}

TEST_F(SqliteFields, RowsAreUniqueByTheRowNumber) {
  Run(*connection_, "create table t (a, b)");
  EXPECT_TRUE(Unique("select rowid, a from t"));
  EXPECT_FALSE(Unique("select a from t"));
  Run(*connection_, "create table w (k text primary key, v) without rowid");
  EXPECT_TRUE(Unique("select v, k from w"));
  EXPECT_FALSE(Unique("select v from w"));
}

TEST_F(SqliteFields, RowsThatMayRepeatAreNotUnique) {
  Run(*connection_, "create table t (id integer primary key, a, b); create index i on t (a);"
                    "create index j on t (b); insert into t values (1, 1, 1), (2, 1, 2)");
  EXPECT_TRUE(Unique("select id from t where a = 1 or b = 2 order by b"));
  EXPECT_TRUE(Unique("select * from t where id in (select id from t where a = 1)"));
  EXPECT_TRUE(Unique("select id, (select max(b) from t u where u.a = t.a) from t"));
  EXPECT_FALSE(Unique("select x.id from t x, t y"));
  EXPECT_FALSE(Unique("select x.id from t x left join t y on x.a = y.a"));
  EXPECT_FALSE(Unique("select id from t union all select id from t"));
  EXPECT_FALSE(Unique("select id from (select id from t union all select id from t)"));
  EXPECT_FALSE(Unique("with c as (select id from t) select c.id from c, c d"));
}

TEST_F(SqliteFields, OnlyWholeIndexesWithoutNullsMakeRowsUnique) {
  Run(*connection_, "create table t (a integer not null, b integer not null, c, "
                    "unique (a, b)); create unique index i on t (c)");
  EXPECT_TRUE(Unique("select a, b from t"));
  EXPECT_FALSE(Unique("select a, c from t"));
  Run(*connection_, "create table p (a integer not null, b); "
                    "create unique index k on p (a) where b > 0");
  EXPECT_FALSE(Unique("select a from p"));
  Run(*connection_, "create table e (a integer not null); create unique index m on e (a + 1)");
  EXPECT_FALSE(Unique("select a from e"));
}

class SqliteSchema : public SqliteTest {};

TEST_F(SqliteSchema, ListsTheDatabasesOfTheSession) {
  const auto connection = OpenFile("main.db");
  Run(*connection, "attach '" + File("other.db") + "' as other; create temp table x (a)");
  const auto catalogs = ReadSchema(*connection, SchemaRowset::Catalogs, {});
  EXPECT_THAT(TextsOf(*catalogs), ElementsAre("main", "temp", "other"));
  EXPECT_THAT(TextsOf(*ReadSchema(*connection, SchemaRowset::Catalogs, {"other"})),
              ElementsAre("other"));
}

TEST_F(SqliteSchema, TellsTablesViewsAndItsOwnTablesApart) {
  const auto connection = OpenMemory();
  Run(*connection, "create table plain (id integer primary key autoincrement); "
                   "create view seen as select * from plain; "
                   "create virtual table words using fts5 (w); "
                   "create table sqlitelike (a)");
  const auto names = [&](const std::string& type) {
    return TextsOf(*ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", type}), 2);
  };
  EXPECT_THAT(names("TABLE"), ElementsAre("plain", "sqlitelike", "words"));
  EXPECT_THAT(names("VIEW"), ElementsAre("seen"));
  EXPECT_THAT(names("SYSTEM TABLE"), Contains("sqlite_sequence"));
  EXPECT_THAT(names("SYSTEM TABLE"), Contains("words_data"));
}

TEST_F(SqliteSchema, TablesOfOneNameAreToldApartByTheirCatalog) {
  const auto connection = OpenFile("main.db");
  Run(*connection, "attach '" + File("other.db") +
                       "' as other; create table t (a); "
                       "create table other.t (b)");
  const auto both = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "t"});
  EXPECT_THAT(TextsOf(*both, 3), ElementsAre("a", "b"));
  const auto one = ReadSchema(*connection, SchemaRowset::Columns, {"other", "", "t"});
  EXPECT_THAT(TextsOf(*one, 3), ElementsAre("b"));
}

TEST_F(SqliteSchema, AViewThatIsBrokenHidesNoOtherColumns) {
  const auto connection = OpenMemory();
  Run(*connection, "create table a (x); create table b (y); create view broken as select * from a;"
                   "drop table a");
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", ""});
  EXPECT_THAT(TextsOf(*columns, 2), Contains("b"));
  EXPECT_THAT(TextsOf(*columns, 2), Not(Contains("broken")));
  ASSERT_FALSE(connection->Errors().empty());
  EXPECT_THAT(connection->Errors()[0].description, HasSubstr("no such table"));
}

TEST_F(SqliteSchema, ColumnsStandInTheOrderThatTheyAreSortedInto) {
  const auto connection = OpenMemory();
  Run(*connection, "create table a_b (z, y); create table AB (x, w); create table a (v, u);"
                   "create table b (t); create view aa as select 1 as s; create index i on b (t)");
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {});
  const auto asRead = TextsOf(*columns, 3);
  EXPECT_THAT(asRead, IsSupersetOf({"v", "u", "s", "x", "w", "z", "y", "t"}));
  columns->SetSort("TABLE_NAME, ORDINAL_POSITION");
  EXPECT_EQ(TextsOf(*columns, 3), asRead);
}

TEST_F(SqliteSchema, ColumnsTellTheirTypes) {
  const auto connection = OpenMemory();
  Run(*connection, "create table t (a integer, b varchar(5) not null, c)");
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "t"});
  EXPECT_THAT(TextsOf(*columns, 6), ElementsAre("20", "202", "202"));
  EXPECT_THAT(TextsOf(*columns, 7), ElementsAre("INTEGER", "varchar(5)", ""));
  EXPECT_THAT(TextsOf(*columns, 5), ElementsAre("True", "False", "True"));
}

TEST_F(SqliteSchema, NamesMayHoldAnyCharacter) {
  const auto connection = OpenMemory();
  Run(*connection, "create table \"a'b \"\"c\"\" %_;\" (\"x y\" text)");
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", "TABLE"});
  EXPECT_THAT(TextsOf(*tables, 2), ElementsAre("a'b \"c\" %_;"));
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "a'b \"c\" %_;"});
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("x y"));
}

}  // namespace tessel::test
