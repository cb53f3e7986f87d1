#include "logic/query/completion/NameQuoting.h"
#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

std::vector<std::string> Names(const Recordset& recordset) {
  std::vector<std::string> names;
  for (const FieldInfo& field : recordset.Fields()) names.push_back(field.name);
  return names;
}

}  // namespace

TEST_P(SchemaBodies, TablesAreListed) {
  const auto connection = Connect();
  const ScratchTable one(Db(), connection, "id " + Db().KeyType());
  const ScratchTable two(Db(), connection, "id " + Db().KeyType());
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", "TABLE"});
  EXPECT_THAT(Names(*tables), ElementsAre("TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME",
                                          "TABLE_TYPE", "DESCRIPTION", "NEEDS_SCHEMA"));
  EXPECT_THAT(TextsOf(*tables, 2), Contains(one.Name()));
  EXPECT_THAT(TextsOf(*tables, 2), Contains(two.Name()));
  EXPECT_THAT(TextsOf(*tables, 3), testing::Each("TABLE"));
}

TEST_P(SchemaBodies, TablesAreRestrictedByName) {
  const auto connection = Connect();
  const ScratchTable one(Db(), connection, "id " + Db().KeyType());
  const ScratchTable two(Db(), connection, "id " + Db().KeyType());
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {"", "", one.Name()});
  EXPECT_THAT(TextsOf(*tables, 2), ElementsAre(one.Name()));
  const auto none = ReadSchema(*connection, SchemaRowset::Tables, {"", "", one.Name(), "VIEW"});
  EXPECT_EQ(none->RecordCount(), 0);
  EXPECT_EQ(none->State(), objectState::open);
}

TEST_P(SchemaBodies, RestrictionsAreNoPatterns) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  std::string pattern = table.Name();
  pattern.back() = '_';
  EXPECT_EQ(ReadSchema(*connection, SchemaRowset::Tables, {"", "", pattern})->RecordCount(), 0);
  EXPECT_EQ(ReadSchema(*connection, SchemaRowset::Tables, {"", "", "%"})->RecordCount(), 0);
}

TEST_P(SchemaBodies, ViewsAreListedAsViews) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const std::string view = "view_of_" + table.Name();
  Run(*connection, "create view " + view + " as select id from " + table.Name());
  const auto views = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", "VIEW"});
  EXPECT_THAT(TextsOf(*views, 2), Contains(view));
  EXPECT_THAT(TextsOf(*views, 2), Not(Contains(table.Name())));
  Run(*connection, "drop view " + view);
}

TEST_P(SchemaBodies, ColumnsAreListedInTheirOrder) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection,
                           "id " + Db().KeyType() + ", zeta " + Db().TextType() +
                               ", alpha integer not null");
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", table.Name()});
  EXPECT_THAT(Names(*columns), ElementsAre("TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME",
                                           "COLUMN_NAME", "ORDINAL_POSITION", "IS_NULLABLE",
                                           "DATA_TYPE", "TYPE_NAME", "NEEDS_SCHEMA"));
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("id", "zeta", "alpha"));
  EXPECT_THAT(TextsOf(*columns, 4), ElementsAre("1", "2", "3"));
  EXPECT_EQ(TextsOf(*columns, 5)[1], "True");
  EXPECT_EQ(TextsOf(*columns, 5)[2], "False");
  columns->SetSort("TABLE_NAME, COLUMN_NAME");
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("alpha", "id", "zeta"));
}

TEST_P(SchemaBodies, ColumnsAreRestrictedByTheirName) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + Db().TextType());
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", table.Name(), "v"});
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("v"));
}

TEST_P(SchemaBodies, ATableStandsInItsCatalogAndSchema) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType());
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables,
                                 {Db().TableCatalog(), Db().TableSchema(), table.Name()});
  ASSERT_EQ(tables->RecordCount(), 1);
  const auto told = [&](std::size_t field) { return ToText(tables->ValueAt(0, field)); };
  EXPECT_EQ(told(0), Db().TableCatalog());
  EXPECT_EQ(told(1), Db().TableSchema());
}

TEST_P(SchemaBodies, NamesThatNeedQuotesAreWrittenAsTheDatabaseTakesThem) {
  const auto connection = Connect();
  const NameQuoting quoting(connection->ProviderProperties());
  std::vector<std::string> names = {"Order ID", "OrderId", "2nd"};
  if (connection->ProviderProperties().Number("Bracket Identifiers", 1) == 0)
    for (const char* name : {"order", "user", "a\"b", "c`d", "[e]"}) names.emplace_back(name);
  for (const std::string& name : names) {
    const std::string written = quoting.Name(name);
    Run(*connection, "create table " + written + " (" + written + " integer)");
    const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", name});
    EXPECT_THAT(TextsOf(*columns, 3), ElementsAre(name));
    Run(*connection, "select " + written + " from " + written);
    Run(*connection, "drop table " + written);
  }
}

TEST_P(SchemaBodies, AWrongCatalogIsRefusedAndTheOldOneKept) {
  const auto connection = Connect();
  const std::string before = connection->DefaultDatabase();
  EXPECT_FALSE(
      ErrorOf([&] { UseCatalog(*connection, "there is no such one"); }).description.empty());
  EXPECT_EQ(connection->DefaultDatabase(), before);
  EXPECT_EQ(connection->State(), objectState::open);
}

}  // namespace tessel::test
