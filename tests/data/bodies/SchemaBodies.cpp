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

TEST_P(SchemaBodies, KeysAndIndexesOfATableAreTold) {
  if (!Db().Traits().structure) GTEST_SKIP() << "its driver tells no structure";
  const auto connection = Connect();
  const std::string key = Db().KeyType();
  const ScratchTable to(connection, "id " + key + ", v integer");
  const ScratchTable from(connection, "id " + key + ", to_id integer, v integer, " +
                                          "foreign key (to_id) references " + to.Name() + " (id)");
  Run(*connection, "create unique index i_" + from.Name() + " on " + from.Name() + " (v, to_id)");
  const auto keys = ReadSchema(*connection, SchemaRowset::PrimaryKeys, {"", "", from.Name()});
  EXPECT_THAT(TextsOf(*keys, 3), ElementsAre("id"));
  EXPECT_THAT(TextsOf(*keys, 4), ElementsAre("1"));
  const auto foreign =
      ReadSchema(*connection, SchemaRowset::ForeignKeys, {"", "", "", "", "", from.Name()});
  EXPECT_THAT(TextsOf(*foreign, 2), ElementsAre(to.Name()));
  EXPECT_THAT(TextsOf(*foreign, 3), ElementsAre("id"));
  EXPECT_THAT(TextsOf(*foreign, 6), ElementsAre(from.Name()));
  EXPECT_THAT(TextsOf(*foreign, 7), ElementsAre("to_id"));
  const auto indexes = ReadSchema(*connection, SchemaRowset::Indexes, {"", "", from.Name()});
  std::vector<std::string> told;
  for (std::int64_t row = 0; row < indexes->RecordCount(); ++row)
    if (ToText(indexes->ValueAt(row, 3)) == "i_" + from.Name())
      told.push_back(ToText(indexes->ValueAt(row, 4)) + ToText(indexes->ValueAt(row, 5)) +
                     ToText(indexes->ValueAt(row, 6)));
  EXPECT_THAT(told, ElementsAre("True1v", "True2to_id"));
  Run(*connection, "drop table " + from.Name());
}

TEST_P(SchemaBodies, DefinitionsMakeTheSameObjectAgain) {
  if (!Db().Traits().structure) GTEST_SKIP() << "its driver tells no structure";
  const auto connection = Connect();
  const ScratchTable table(connection, "id " + Db().KeyType() + ", v integer not null, w integer");
  const std::string view = "view_of_" + table.Name();
  const std::string index = "index_of_" + table.Name();
  Run(*connection, "create view " + view + " as select v from " + table.Name());
  Run(*connection, "create index " + index + " on " + table.Name() + " (w)");
  const auto definition = [&](const std::string& name, const std::string& type) {
    const auto rows =
        ReadSchema(*connection, SchemaRowset::Definitions, {"", "", name, type, table.Name()});
    return rows->RecordCount() == 1 ? ToText(rows->ValueAt(0, 1)) : "";
  };
  const std::string ofView = definition(view, "VIEW");
  const std::string ofIndex = definition(index, "INDEX");
  const std::string ofTable = definition(table.Name(), "TABLE");
  EXPECT_EQ(definition("there_is_none", "INDEX"), "");
  Run(*connection, "drop view " + view);
  Run(*connection, "drop table " + table.Name());
  Run(*connection, ofTable);
  Run(*connection, ofView);
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", table.Name()});
  EXPECT_THAT(TextsOf(*columns, 3), ElementsAre("id", "v", "w"));
  EXPECT_EQ(TextsOf(*columns, 5)[1], "False");
  EXPECT_EQ(
      ReadSchema(*connection, SchemaRowset::PrimaryKeys, {"", "", table.Name()})->RecordCount(), 1);
  EXPECT_EQ(definition(view, "VIEW"), ofView);
  EXPECT_EQ(definition(index, "INDEX"), ofIndex) << "it stands with its table";
  Run(*connection, "drop view " + view);
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
