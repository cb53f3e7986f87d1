#include "logic/query/completion/ReservedWords.h"
#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

class MariaSchema : public MariaTest {
 protected:
  void SetUp() override {
    MariaTest::SetUp();
    Run("create or replace database lib character set utf8mb4");
    Run("create table lib.a_b (id int unsigned not null primary key, name varchar(20), amount "
        "decimal(10,2) not null, flag bit(1), wide bit(9), u uuid) comment 'first; table'");
    Run("create table lib.axb (other int); create table shop.axb (n int)");
    Run("create view lib.seen as select id from lib.a_b; create sequence lib.counted");
  }
  void TearDown() override { Run("drop database lib; drop table shop.axb"); }

  std::shared_ptr<Recordset> Tables(const std::vector<std::string>& restrictions) {
    return ReadSchema(*connection_, SchemaRowset::Tables, restrictions);
  }
};

TEST_F(MariaSchema, CatalogsAreTheDatabases) {
  const auto names = TextsOf(*ReadSchema(*connection_, SchemaRowset::Catalogs, {}));
  EXPECT_THAT(names, IsSupersetOf({"lib", "mysql", "shop"}));
  EXPECT_TRUE(std::ranges::is_sorted(names));
  EXPECT_THAT(TextsOf(*ReadSchema(*connection_, SchemaRowset::Catalogs, {"lib"})),
              ElementsAre("lib"));
}

TEST_F(MariaSchema, TheCatalogInUseIsChangedAndFollowed) {
  EXPECT_EQ(connection_->DefaultDatabase(), "shop");
  UseCatalog(*connection_, "[lib]");
  EXPECT_EQ(connection_->DefaultDatabase(), "lib");
  EXPECT_EQ(Cell("select database()"), Value("lib"));
  Run("use shop");
  EXPECT_EQ(connection_->DefaultDatabase(), "shop");
  EXPECT_EQ(ErrorOf([&] { UseCatalog(*connection_, "nowhere"); }).nativeError, 1049);
  EXPECT_EQ(connection_->DefaultDatabase(), "shop");
  Run("create or replace database gone; use gone; drop database gone");
  EXPECT_EQ(connection_->DefaultDatabase(), "");
}

TEST_F(MariaSchema, TablesAreThoseOfTheDatabaseAskedFor) {
  const auto tables = Tables({"lib"});
  EXPECT_THAT(TextsOf(*tables, 2), ElementsAre("a_b", "axb", "counted", "seen"));
  EXPECT_THAT(TextsOf(*tables, 3), ElementsAre("TABLE", "TABLE", "SEQUENCE", "VIEW"));
  EXPECT_EQ(TextsOf(*tables, 0)[0], "lib");
  EXPECT_EQ(TextsOf(*tables, 1)[0], "NULL");
  EXPECT_EQ(TextsOf(*tables, 4)[0], "first; table");
  EXPECT_EQ(TextsOf(*tables, 4)[3], "NULL");
}

TEST_F(MariaSchema, ATableOfAnotherDatabaseThanTheOneInUseNeedsIt) {
  const auto needs = [&](const std::string& database) {
    const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {database, "", "axb"});
    const auto tables = Tables({database, "", "axb"});
    EXPECT_EQ(TextsOf(*columns, 8), TextsOf(*tables, 5));
    return TextsOf(*tables, 5);
  };
  EXPECT_THAT(needs("shop"), ElementsAre("False"));
  EXPECT_THAT(needs("lib"), ElementsAre("True"));
  UseCatalog(*connection_, "lib");
  EXPECT_THAT(needs(""), ElementsAre("False"));
  EXPECT_EQ(connection_->ProviderProperties().At("Schema By Rowsets"), Value(std::int64_t{1}));
}

TEST_F(MariaSchema, EveryWordThatIsNotKnownAsReservedIsAName) {
  const auto words = TextsOf(*Run("select word from information_schema.keywords"), 0);
  EXPECT_GT(words.size(), 500U);
  for (const std::string& word : words) {
    const bool isWord =
        word.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789") == word.npos;
    if (!isWord || IsReservedWord(word)) continue;
    EXPECT_NO_THROW(Run("create or replace temporary table " + word + " (" + word + " int)"))
        << word;
    EXPECT_NO_THROW(Run("select " + word + " from " + word)) << word;
  }
}

TEST_F(MariaSchema, WithoutRestrictionTheDatabaseInUseCounts) {
  EXPECT_THAT(TextsOf(*Tables({"", "", "axb"}), 0), ElementsAre("shop"));
  EXPECT_EQ(Tables({"", "", "a'b\\"})->RecordCount(), 0);
  EXPECT_EQ(Tables({"lib", "", "A_B"})->RecordCount(), 0);
  const auto none = data_.CreateConnection();
  std::string string = server_.ConnectionString();
  string.erase(string.find("Database=shop;"), std::string("Database=shop;").size());
  none->SetConnectionString(string);
  OpenNow(*none);
  EXPECT_EQ(none->DefaultDatabase(), "");
  const auto all = ReadSchema(*none, SchemaRowset::Tables, {});
  EXPECT_THAT(TextsOf(*all, 0), IsSupersetOf({"lib", "shop"}));
  EXPECT_THAT(TextsOf(*all, 0), Not(Contains("mysql")));
}

TEST_F(MariaSchema, ColumnsTellTypePlaceAndName) {
  const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {"lib", "", "a_b"});
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("id", "name", "amount", "flag", "wide", "u"));
  EXPECT_THAT(TextsOf(*columns, 4), ElementsAre("1", "2", "3", "4", "5", "6"));
  EXPECT_THAT(TextsOf(*columns, 5), ElementsAre("False", "True", "False", "True", "True", "True"));
  EXPECT_THAT(TextsOf(*columns, 6), ElementsAre("19", "202", "131", "11", "128", "72"));
  EXPECT_THAT(TextsOf(*columns, 7),
              ElementsAre("int unsigned", "varchar", "decimal", "bit", "bit", "uuid"));
}

TEST_F(MariaSchema, ColumnsHaveTheTypesThatResultsHave) {
  Run("create table lib.every (a tinyint, b smallint unsigned, c mediumint, d bigint unsigned, e "
      "float, f double, g char(3), h varchar(3), i tinytext, j text, k mediumtext, l longtext, m "
      "binary(3), n varbinary(3), o tinyblob, p blob, q mediumblob, r longblob, s date, t time, u "
      "datetime, v timestamp null, w year, x enum('a'), y set('a'), z json)");
  const auto columns = ReadSchema(*connection_, SchemaRowset::Columns, {"lib", "", "every"});
  std::vector<std::string> types;
  std::vector<std::string> names;
  const auto rows = Run("select * from lib.every");
  for (const FieldInfo& field : rows->Fields()) {
    types.push_back(std::to_string(static_cast<int>(field.type)));
    names.push_back(field.typeName);
  }
  EXPECT_EQ(TextsOf(*columns, 6), types);
  names.back() = "longtext";  // What json is kept as.
  EXPECT_EQ(TextsOf(*columns, 7), names);
}

}  // namespace tessel::test
