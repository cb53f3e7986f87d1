#include <filesystem>

#include "tests/data/providers/odbc/OdbcFixture.h"
#include "tests/data/servers/Process.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

/// The Access file that the script beside the tests writes.
std::string AccessFile() {
  const fs::path folder = TestServers::Instance().Folder();
  const fs::path file = folder / "people.mdb";
  const std::string script = fs::path(TESSEL_DATA_FIXTURES) / "make_mdb.py";
  if (!fs::exists(file))
    RunCommand({"python3", script, file.string()}, {.output = folder / "make_mdb.log"});
  return file;
}

std::string AccessString() {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + AccessFile();
}

}  // namespace

class OdbcAccess : public OdbcTest {};

TEST_F(OdbcAccess, RowsAndTypesArrive) {
  const auto connection = Connect(AccessString());
  const auto people = Run(*connection, "select * from People");
  std::vector<DataType> types;
  for (const FieldInfo& field : people->Fields()) types.push_back(field.type);
  EXPECT_THAT(types, ElementsAre(DataType::Integer, DataType::VarChar, DataType::DBTimeStamp,
                                 DataType::Currency, DataType::Boolean, DataType::Double,
                                 DataType::LongVarChar, DataType::SmallInt));
  const Rows rows = AllRows(*people);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0], (Row{std::int64_t{1}, "Ann", Moment{"1990-01-02 00:00:00"}, Decimal{"12.5000"},
                          true, 1.5, "a memo", std::int64_t{7}}));
  EXPECT_EQ(rows[1], (Row{std::int64_t{2}, "B\u00e9", Moment{"1985-05-06 07:08:09"},
                          Decimal{"-3.2500"}, false, Value(), Value(), Value()}));
  EXPECT_EQ(rows[2][1], Value());
  EXPECT_EQ(rows[2][6], Value(std::string(100, 'x')));
}

TEST_F(OdbcAccess, NamesInBracketsAndSeveralPagesAreRead) {
  const auto connection = Connect(AccessString());
  const auto items = Run(*connection, "select * from [Order Items]");
  EXPECT_EQ(items->RecordCount(), 300);
  EXPECT_EQ(AllText(*items)[299], (std::vector<std::string>{"300", "item 300"}));
}

TEST_F(OdbcAccess, OneCommandAfterAnotherIsRead) {
  const auto connection = Connect(AccessString());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Run(*connection, "select ID from People")->RecordCount(), 3);
    EXPECT_EQ(Single(*connection, "select count(*) from [Order Items]"), Value("300"));
  }
}

TEST_F(OdbcAccess, ACommandItCannotRunIsAnError) {
  const auto connection = Connect(AccessString());
  EXPECT_THROW(Run(*connection, "update People set ID = 1"), Error);
  EXPECT_THROW(Run(*connection, "select * from Nowhere"), Error);
  EXPECT_EQ(Run(*connection, "select ID from People")->RecordCount(), 3);
}

TEST_F(OdbcAccess, TablesAndColumnsAreListed) {
  const auto connection = Connect(AccessString());
  const auto tables = ReadSchema(*connection, SchemaRowset::Tables, {"", "", "", "TABLE"});
  ASSERT_EQ(tables->RecordCount(), 2);
  EXPECT_EQ(AllText(*tables)[0][2], "Order Items");
  EXPECT_EQ(AllText(*tables)[1][2], "People");
  const auto columns = ReadSchema(*connection, SchemaRowset::Columns, {"", "", "Order Items"});
  ASSERT_EQ(columns->RecordCount(), 2);
  EXPECT_EQ(AllText(*columns)[0][3], "OrderID");
  EXPECT_EQ(AllText(*columns)[1][3], "Item");
  EXPECT_GE(ReadSchema(*connection, SchemaRowset::Columns, {})->RecordCount(), 10);
  EXPECT_EQ(ReadSchema(*connection, SchemaRowset::Catalogs, {})->RecordCount(), 0);
}

TEST_F(OdbcAccess, AFileThatIsNotThereIsNamed) {
  const auto failure = FailureOf("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/nowhere/x.mdb");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->number, errorNumber::file);
  EXPECT_THAT(failure->description, HasSubstr("/nowhere/x.mdb"));
}

TEST_F(OdbcAccess, ThereIsNoCatalogToChangeTo) {
  const auto connection = Connect(AccessString());
  EXPECT_EQ(connection->DefaultDatabase(), "");
  EXPECT_THROW(UseCatalog(*connection, "other"), Error);
}

}  // namespace tessel::test
