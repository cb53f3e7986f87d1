#include "tests/data/providers/odbc/OdbcFixture.h"

namespace tessel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

std::vector<std::string> Column(const Recordset& recordset, std::size_t field) {
  std::vector<std::string> values;
  for (const auto& row : AllText(recordset)) values.push_back(row[field]);
  return values;
}

}  // namespace

class OdbcSchema : public OdbcTest {
 protected:
  void MakeTables(Connection& connection) {
    Run(connection, "drop table if exists a_b");
    Run(connection, "drop table if exists axb");
    Run(connection, "create table a_b (id integer not null primary key, name varchar(20), "
                    "amount decimal(10,2) not null)");
    Run(connection, "create table axb (other integer)");
  }
  bool Unique(Connection& connection, const std::string& sql) {
    return Run(connection, sql)->RecordsetProperties().At("Unique Rows") == Value(true);
  }
};

// --- catalogs ------------------------------------------------------------------------------------

TEST_F(OdbcSchema, CatalogsOfPostgreSqlAreItsDatabasesWithoutTemplates) {
  const auto connection = Connect(PostgresString());
  const auto catalogs = ReadSchema(*connection, SchemaRowset::Catalogs, {});
  EXPECT_THAT(Column(*catalogs, 0), IsSupersetOf({"postgres", "shop"}));
  EXPECT_THAT(Column(*catalogs, 0), Not(Contains("template1")));
}

TEST_F(OdbcSchema, CatalogsOfMariaDbAreItsDatabases) {
  const auto connection = Connect(MariaDbString());
  const auto catalogs = ReadSchema(*connection, SchemaRowset::Catalogs, {});
  EXPECT_THAT(Column(*catalogs, 0), IsSupersetOf({"mysql", "shop"}));
}

TEST_F(OdbcSchema, TheCatalogInUseIsChanged) {
  const auto postgres = Connect(PostgresString());
  EXPECT_EQ(postgres->DefaultDatabase(), "shop");
  UseCatalog(*postgres, "[postgres]");
  EXPECT_EQ(postgres->DefaultDatabase(), "postgres");
  EXPECT_EQ(Single(*postgres, "select current_database()::text"), Value("postgres"));
  UseCatalog(*postgres, "shop");
  EXPECT_EQ(Single(*postgres, "select current_database()::text"), Value("shop"));
  const auto mariaDb = Connect(MariaDbString());
  UseCatalog(*mariaDb, "[mysql]");
  EXPECT_EQ(mariaDb->DefaultDatabase(), "mysql");
  EXPECT_EQ(Single(*mariaDb, "select database()"), Value("mysql"));
}

TEST_F(OdbcSchema, AChangeToNoCatalogFailsAndChangesNothing) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    EXPECT_THROW(UseCatalog(*connection, "[nowhere]"), Error);
    EXPECT_THROW(UseCatalog(*connection, "nowhere"), Error);
    EXPECT_EQ(connection->DefaultDatabase(), "shop");
    EXPECT_EQ(Single(*connection, "select 1"), Value(std::int64_t{1}));
  }
}

TEST_F(OdbcSchema, ACatalogChosenInACommandIsNoticed) {
  const auto connection = Connect(MariaDbString());
  Run(*connection, "use mysql");
  EXPECT_EQ(connection->DefaultDatabase(), "mysql");
}

TEST_F(OdbcSchema, WithoutADatabaseThereIsNoCatalogInUse) {
  const ServerLogin& login = TestServers::Instance().MariaDb().Login();
  const auto connection =
      Connect("Driver={MariaDB Unicode};Server=127.0.0.1;Port=" + std::to_string(login.port) +
              ";UID=" + login.user + ";PWD=" + login.password);
  EXPECT_EQ(connection->DefaultDatabase(), "");
}

// --- tables and columns --------------------------------------------------------------------------

TEST_F(OdbcSchema, TablesAreListedByName) {
  for (const std::string& server : {PostgresString(), MariaDbString(), SqliteString("s.db")}) {
    const auto connection = Connect(server);
    MakeTables(*connection);
    const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", "TABLE"});
    const std::vector<std::string> names = Column(*tables, 2);
    EXPECT_THAT(names, IsSupersetOf({"a_b", "axb"}));
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_THAT(Column(*tables, 3), testing::Each("TABLE"));
    const auto one = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "a_b"});
    EXPECT_THAT(Column(*one, 2), ElementsAre("a_b"));
  }
}

TEST_F(OdbcSchema, TablesOfOtherSchemasAreListedAndSystemOnesAreNot) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "create schema if not exists side");
  Run(*connection, "create table if not exists side.lone (n integer)");
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {});
  EXPECT_THAT(Column(*tables, 2), Contains("lone"));
  EXPECT_THAT(Column(*tables, 1), Not(Contains(HasSubstr("pg_"))));
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {});
  EXPECT_THAT(Column(*columns, 2), Contains("lone"));
  EXPECT_THAT(Column(*columns, 1), Not(Contains("information_schema")));
  const auto system =
      ReadSchema(*connection, SchemaRowset::Columns, {"", "information_schema", "tables"});
  EXPECT_GT(system->RecordCount(), 0);
  Run(*connection, "drop schema side cascade");
}

TEST_F(OdbcSchema, OfMariaDbOnlyTheCatalogInUseIsListed) {
  const auto connection = Connect(MariaDbString());
  MakeTables(*connection);
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {});
  EXPECT_THAT(Column(*tables, 0), testing::Each("shop"));
  const auto other = ReadSchema(*connection, SchemaRowset::Tables, {"mysql"});
  EXPECT_THAT(Column(*other, 0), testing::Each("mysql"));
  EXPECT_GT(other->RecordCount(), 0);
}

TEST_F(OdbcSchema, ColumnsAreListedInOrderWithTheirTypes) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    MakeTables(*connection);
    const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "a_b"});
    EXPECT_THAT(Column(*columns, 2), ElementsAre("a_b", "a_b", "a_b"));
    EXPECT_THAT(Column(*columns, 3), ElementsAre("id", "name", "amount"));
    EXPECT_THAT(Column(*columns, 4), ElementsAre("1", "2", "3"));
    EXPECT_THAT(Column(*columns, 5), ElementsAre("False", "True", "False"));
    EXPECT_THAT(Column(*columns, 6)[0], "3");
    EXPECT_THAT(Column(*columns, 6)[2], "131");
    const auto one = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "a_b", "name"});
    EXPECT_EQ(one->RecordCount(), 1);
  }
}

// --- base columns and unique rows ----------------------------------------------------------------

TEST_F(OdbcSchema, BaseColumnsAreToldBehindAnAlias) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    MakeTables(*connection);
    const auto recordset = Run(*connection, "select x.id as k, x.id + 1 as e from a_b x");
    const std::vector<FieldInfo>& fields = recordset->Fields();
    EXPECT_EQ(fields[0].name, "k");
    EXPECT_EQ(fields[0].baseTable, "a_b");
    EXPECT_EQ(fields[0].baseColumn, "id");
    EXPECT_TRUE(fields[0].updatable);
    EXPECT_EQ(fields[1].baseTable, "");
    EXPECT_EQ(fields[1].baseColumn, "");
    EXPECT_FALSE(fields[1].updatable);
  }
}

TEST_F(OdbcSchema, RowsAreUniqueWithTheWholeKeyOfOneTable) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    MakeTables(*connection);
    Run(*connection, "drop table if exists pairs");
    Run(*connection, "create table pairs (a integer not null, b integer not null, c integer, "
                     "primary key (a, b))");
    EXPECT_TRUE(Unique(*connection, "select name, id as k from a_b"));
    EXPECT_TRUE(Unique(*connection, "select id, id + 1 as e from a_b"));
    EXPECT_FALSE(Unique(*connection, "select name as id, amount from a_b"));
    EXPECT_FALSE(Unique(*connection, "select a_b.id, axb.other from a_b, axb"));
    EXPECT_FALSE(Unique(*connection, "select x.id, y.id as id2 from a_b x, a_b y"));
    EXPECT_FALSE(Unique(*connection, "select a, c from pairs"));
    EXPECT_TRUE(Unique(*connection, "select c, b, a from pairs"));
    EXPECT_FALSE(Unique(*connection, "select 1 as one"));
    Run(*connection, "drop table pairs");
  }
}

TEST_F(OdbcSchema, AUniqueIndexCountsWhenItHasNoNulls) {
  for (const std::string& server : {PostgresString(), MariaDbString()}) {
    const auto connection = Connect(server);
    Run(*connection, "drop table if exists indexed");
    Run(*connection, "create table indexed (a integer not null unique, b integer unique, "
                     "c integer)");
    EXPECT_TRUE(Unique(*connection, "select c, a from indexed"));
    EXPECT_FALSE(Unique(*connection, "select c, b from indexed"));
    Run(*connection, "drop table indexed");
  }
}

TEST_F(OdbcSchema, AnIndexOfPartOfTheRowsMakesThemNotUnique) {
  const auto connection = Connect(PostgresString());
  Run(*connection, "create temp table partly (a integer not null, b integer)");
  Run(*connection, "create unique index on partly (a) where b > 0");
  EXPECT_FALSE(Unique(*connection, "select * from partly"));
  Run(*connection, "create temp table computed (a text not null)");
  Run(*connection, "create unique index on computed (lower(a))");
  EXPECT_FALSE(Unique(*connection, "select * from computed"));
}

}  // namespace tessel::test
