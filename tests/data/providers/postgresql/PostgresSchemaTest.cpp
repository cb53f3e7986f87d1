#include "logic/query/completion/ReservedWords.h"
#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class PostgresSchema : public PostgresTest {
 protected:
  void SetUp() override {
    PostgresTest::SetUp();
    Run("create schema lib");
    Run("create table lib.a_b (id int not null primary key, name varchar(20), amount "
        "decimal(10,2) not null, gone int, tags text[])");
    Run("alter table lib.a_b drop gone; comment on table lib.a_b is 'first; table'");
    Run("create table lib.axb (other int); drop table if exists public.axb; create table "
        "public.axb (n int)");
    Run("create view lib.seen as select id from lib.a_b");
    Run("create materialized view lib.kept as select id from lib.a_b");
    Run("create domain lib.small as int; create table lib.parts (n lib.small) partition by list "
        "(n)");
  }
  void TearDown() override { Run("drop schema lib cascade; drop table public.axb"); }

  std::shared_ptr<Recordset> Tables(const std::vector<std::string>& restrictions) {
    return ReadSchema(*connection_, SchemaRowset::Tables, restrictions);
  }
};

TEST_F(PostgresSchema, CatalogsAreTheDatabasesThatMayBeUsed) {
  Run("drop database if exists closed_one");
  Run("create database closed_one allow_connections false");
  const auto names = TextsOf(*ReadSchema(*connection_, SchemaRowset::Catalogs, {}));
  EXPECT_THAT(names, IsSupersetOf({"postgres", "shop"}));
  EXPECT_THAT(names, Not(Contains("template1")));
  EXPECT_THAT(names, Not(Contains("closed_one")));
  EXPECT_TRUE(std::ranges::is_sorted(names));
  EXPECT_THAT(TextsOf(*ReadSchema(*connection_, SchemaRowset::Catalogs, {"shop"})),
              ElementsAre("shop"));
  Run("drop database closed_one");
}

TEST_F(PostgresSchema, TheCatalogInUseIsChangedByConnectingAgain) {
  EXPECT_EQ(connection_->DefaultDatabase(), "shop");
  UseCatalog(*connection_, "[postgres]");
  EXPECT_EQ(connection_->DefaultDatabase(), "postgres");
  EXPECT_EQ(Cell("select current_database()::text"), Value("postgres"));
  EXPECT_THROW(UseCatalog(*connection_, "nowhere"), Error);
  EXPECT_EQ(Cell("select current_database()::text"), Value("postgres"));
  UseCatalog(*connection_, "shop");
  EXPECT_EQ(Cell("select current_database()::text"), Value("shop"));
}

TEST_F(PostgresSchema, AChangeOfCatalogIsAnnouncedAsACommandIs) {
  EventLog log;
  const auto change = connection_->StartUseCatalog("[postgres]");
  log.Watch(*change);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
  EXPECT_EQ(connection_->DefaultDatabase(), "postgres");
  EXPECT_THAT(ErrorOf([&] { UseCatalog(*connection_, "nowhere"); }).description,
              HasSubstr("nowhere"));
  EXPECT_EQ(connection_->DefaultDatabase(), "postgres");
  UseCatalog(*connection_, "shop");
  EXPECT_EQ(Cell("select current_database()::text"), Value("shop"));
}

TEST_F(PostgresSchema, TablesAreSortedByName) {
  const auto tables = Tables({"", "lib"});
  EXPECT_THAT(TextsOf(*tables, 2), ElementsAre("a_b", "axb", "kept", "parts", "seen"));
  EXPECT_THAT(TextsOf(*tables, 3),
              ElementsAre("TABLE", "TABLE", "MATERIALIZED VIEW", "TABLE", "VIEW"));
  EXPECT_EQ(TextsOf(*tables, 0)[0], "shop");
  EXPECT_EQ(TextsOf(*tables, 4)[0], "first; table");
  EXPECT_EQ(TextsOf(*tables, 4)[1], "NULL");
}

TEST_F(PostgresSchema, TablesOfOneNameStandInEachOfTheirSchemas) {
  EXPECT_THAT(TextsOf(*Tables({"", "", "axb"}), 1), ElementsAre("lib", "public"));
  EXPECT_EQ(Tables({"postgres", "", "axb"})->RecordCount(), 0);
  EXPECT_EQ(Tables({"", "LIB"})->RecordCount(), 0);
  EXPECT_EQ(Tables({"", "", "a'b"})->RecordCount(), 0);
}

TEST_F(PostgresSchema, ATableOutsideTheSearchPathNeedsItsSchema) {
  const auto needs = [&] {
    const auto tables = Tables({"", "", "axb"});
    const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {"", "", "axb"});
    EXPECT_EQ(TextsOf(*columns, 8), TextsOf(*tables, 5));
    return TextsOf(*tables, 5);
  };
  EXPECT_THAT(needs(), ElementsAre("True", "False")) << "lib, public";
  Run("set search_path to lib, public");
  EXPECT_THAT(needs(), ElementsAre("False", "True"));
  EXPECT_EQ(connection_->ProviderProperties().At("Schema By Rowsets"), Value(std::int64_t{1}));
}

TEST_F(PostgresSchema, EveryReservedWordOfTheServerIsKnown) {
  const auto words = Run("select word::text from pg_get_keywords() where catcode in ('R', 'T')");
  EXPECT_GT(words->RecordCount(), 50);
  for (const std::string& word : TextsOf(*words, 0)) EXPECT_TRUE(IsReservedWord(word)) << word;
}

TEST_F(PostgresSchema, TheServersOwnTablesAreToldWhenAskedFor) {
  EXPECT_THAT(TextsOf(*Tables({}), 1), Not(Contains("pg_catalog")));
  EXPECT_THAT(TextsOf(*Tables({}), 1), Not(Contains("information_schema")));
  const auto own = Tables({"", "pg_catalog", "pg_class"});
  EXPECT_THAT(TextsOf(*own, 3), ElementsAre("SYSTEM TABLE"));
  EXPECT_THAT(TextsOf(*Tables({"", "information_schema", "columns"}), 3),
              ElementsAre("SYSTEM VIEW"));
}

TEST_F(PostgresSchema, ColumnsTellTypePlaceAndName) {
  const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {"", "lib", "a_b"});
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("id", "name", "amount", "tags"));
  EXPECT_THAT(TextsOf(*columns, 4), ElementsAre("1", "2", "3", "5"));
  EXPECT_THAT(TextsOf(*columns, 5), ElementsAre("False", "True", "False", "True"));
  EXPECT_THAT(TextsOf(*columns, 6), ElementsAre("3", "202", "131", "203"));
  EXPECT_THAT(TextsOf(*columns, 7),
              ElementsAre("integer", "character varying", "numeric", "text[]"));
  const auto domain = ReadSchema(*connection_, SchemaRowset::Columns, {"", "lib", "parts"});
  EXPECT_THAT(TextsOf(*domain, 6), ElementsAre("3"));
  EXPECT_THAT(TextsOf(*domain, 7), ElementsAre("lib.small"));
}

TEST_F(PostgresSchema, ManyTablesAreReadInNoTime) {
  Run("do $$ begin for i in 1..300 loop execute format('create table lib.many_%s (a int, b int, c "
      "text)', i); end loop; end $$");
  const auto start = std::chrono::steady_clock::now();
  const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {"", "lib"});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  EXPECT_EQ(columns->RecordCount(), 908);
}

}  // namespace tessel::test
