#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::size_t name = 1;
constexpr const char* refusal = "The connection is read-only: Mode=ReadOnly.";

}  // namespace

void ReadOnlyBodies::SetUp() {
  WriteTest::SetUp();
  if (IsSkipped()) return;
  readOnly_ = ConnectWith("Mode=ReadOnly");
}

void ReadOnlyBodies::ExpectRefused(Connection& connection, const std::string& sql) {
  const ErrorInfo error = ErrorOf([&] { Run(connection, sql); });
  EXPECT_EQ(error.number, errorNumber::database) << sql;
  EXPECT_NE(error.source, "Tessel") << sql;
  EXPECT_TRUE(error.nativeError != 0 || !error.sqlState.empty()) << sql;
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three")) << sql;
}

TEST_P(ReadOnlyBodies, TheDatabaseRefusesEveryChange) {
  const std::string& table = table_->Name();
  EXPECT_EQ(Run(*readOnly_, "select * from " + table)->RecordCount(), 3);
  ExpectRefused(*readOnly_, "insert into " + table + " (id) values (4)");
  ExpectRefused(*readOnly_, "update " + table + " set name = 'x'");
  ExpectRefused(*readOnly_, "delete from " + table);
  ExpectRefused(*readOnly_, "drop table " + table);
  ExpectRefused(*readOnly_, "create table " + table + "_more (a integer)");
}

TEST_P(ReadOnlyBodies, TheDatabaseRefusesChangesInATransaction) {
  Run(*readOnly_, Db().BeginStatement());
  ExpectRefused(*readOnly_, "delete from " + table_->Name());
  Run(*readOnly_, "rollback");
  EXPECT_EQ(Run(*readOnly_, "select * from " + table_->Name())->RecordCount(), 3);
}

TEST_P(ReadOnlyBodies, RecordsSayWhyTheyCannotBeChanged) {
  const auto rows =
      OpenToWrite(*readOnly_, "select id, name from " + table_->Name() + " order by id");
  ASSERT_TRUE(rows->WhyNotChangeable());
  EXPECT_EQ(rows->WhyNotChangeable()->description, refusal);
  for (const auto& action : std::vector<std::function<void()>>{
           [&] { rows->AddNew(); }, [&] { rows->SetFieldValue(name, Text("x")); },
           [&] { Update(*rows); }, [&] { Delete(*rows); }}) {
    const ErrorInfo error = ErrorOf(action);
    EXPECT_EQ(error.number, errorNumber::readOnly);
    EXPECT_EQ(error.description, refusal);
  }
  EXPECT_EQ(rows->Editing(), EditMode::None);
}

TEST_P(ReadOnlyBodies, AnOpenConnectionTellsItsMode) {
  EXPECT_EQ(readOnly_->ProviderProperties().Number("Read Only", -1), 1);
  EXPECT_EQ(connection_->ProviderProperties().Number("Read Only", -1), 0);
  EXPECT_EQ(readOnly_->ProviderProperties().At("Mode"), Value(std::string("ReadOnly")));
  const auto writing = ConnectWith("mode=readwrite");
  EXPECT_EQ(writing->ProviderProperties().At("Mode"), Value(std::string("ReadWrite")));
  EXPECT_FALSE(OpenToWrite(*writing, "select id, name from " + table_->Name())->WhyNotChangeable());
}

TEST_P(ReadOnlyBodies, AConnectionThatIsOpenedAgainIsReadOnlyAgain) {
  readOnly_->Close();
  OpenNow(*readOnly_);
  ExpectRefused(*readOnly_, "delete from " + table_->Name());
}

TEST_P(ReadOnlyBodies, AnotherCatalogIsReadOnlyToo) {
  if (Db().OtherCatalog().empty()) GTEST_SKIP() << "has no catalogs to change between";
  const std::string own = readOnly_->DefaultDatabase();
  for (const std::string& sql : Db().OtherCatalogSetup()) Run(*connection_, sql);
  UseCatalog(*readOnly_, Db().OtherCatalog());
  ExpectRefused(*readOnly_, "create table " + table_->Name() + " (a integer)");
  UseCatalog(*readOnly_, own);
  ExpectRefused(*readOnly_, "delete from " + table_->Name());
}

TEST_P(ReadOnlyBodies, AModeThatIsNoneIsSaid) {
  const ErrorInfo error = ErrorOf([&] { (void)ConnectWith("Mode=ReadNever"); });
  EXPECT_THAT(error.description, HasSubstr("There is no Mode 'ReadNever': it is ReadWrite"));
  EXPECT_THAT(error.description, HasSubstr("ReadOnly"));
}

}  // namespace tessel::test
