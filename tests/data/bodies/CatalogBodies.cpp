#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::size_t id = 0;
constexpr std::size_t name = 1;

}  // namespace

/// The other catalog has a table of the same name, whose rows have the same values.
void CatalogBodies::SetUp() {
  WriteTest::SetUp();
  if (IsSkipped()) return;
  if (Db().OtherCatalog().empty()) GTEST_SKIP() << "has no catalogs to change between";
  own_ = connection_->DefaultDatabase();
  elsewhere_ = Connect();
  for (const std::string& sql : Db().OtherCatalogSetup()) Run(*elsewhere_, sql);
  UseCatalog(*elsewhere_, Db().OtherCatalog());
  Run(*elsewhere_, "create table " + table_->Name() + " (id " + Db().KeyType() + ", name " +
                       Db().TextType() + ", data " + Db().BinaryType() + ", n integer)");
  Run(*elsewhere_,
      "insert into " + table_->Name() +
          " values (1, 'one', null, 10), (2, 'two', null, 20), (3, 'three', null, null)");
}

void CatalogBodies::TearDown() {
  if (!elsewhere_) return;
  Run(*elsewhere_, "drop table " + table_->Name());
  UseCatalog(*connection_, own_);  // The scratch table is dropped there.
}

void CatalogBodies::ExpectRefused(const std::function<void()>& action) const {
  const ErrorInfo error = ErrorOf(action);
  EXPECT_EQ(error.number, errorNumber::notSupported);
  EXPECT_THAT(error.description, HasSubstr("These records come from the database '" + own_ +
                                           "', and '" + Db().OtherCatalog() + "' is in use now"));
}

std::vector<std::string> CatalogBodies::NamesElsewhere() {
  return TextsOf(*Run(*elsewhere_, "select name from " + table_->Name() + " order by id"), 0);
}

TEST_P(CatalogBodies, RowsAreReadAndNotWrittenIntoAnotherCatalog) {
  const auto recordset = OpenAll();
  UseCatalog(*connection_, Db().OtherCatalog());
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "one");
  EXPECT_TRUE(recordset->WhyNotChangeable());
  ExpectRefused([&] { recordset->SetFieldValue(name, Text("mine")); });
  ExpectRefused([&] { recordset->AddNew(); });
  ExpectRefused([&] { Delete(*recordset); });
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_THAT(NamesElsewhere(), ElementsAre("one", "two", "three"));
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(CatalogBodies, AChangeThatWasBegunWaitsForItsCatalog) {
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("mine"));
  UseCatalog(*connection_, Db().OtherCatalog());
  ExpectRefused([&] { Update(*recordset); });
  ExpectRefused([&] { (void)recordset->StartUpdate(); });
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_EQ(ToText(recordset->FieldValue(name)), "mine");
  EXPECT_THAT(NamesElsewhere(), ElementsAre("one", "two", "three"));
  UseCatalog(*connection_, own_);
  EXPECT_FALSE(recordset->WhyNotChangeable());
  Update(*recordset);
  EXPECT_THAT(NamesElsewhere(), ElementsAre("one", "two", "three"));
  EXPECT_THAT(Names(), ElementsAre("1|mine", "2|two", "3|three"));
}

TEST_P(CatalogBodies, AChangeThatWasBegunIsDroppedUnderAnotherCatalog) {
  const auto recordset = OpenAll();
  recordset->AddNew();
  recordset->SetFieldValue(id, Value(std::int64_t{4}));
  UseCatalog(*connection_, Db().OtherCatalog());
  ExpectRefused([&] { Update(*recordset); });
  recordset->CancelUpdate();
  EXPECT_EQ(recordset->Editing(), EditMode::None);
  EXPECT_THAT(NamesElsewhere(), ElementsAre("one", "two", "three"));
}

TEST_P(CatalogBodies, RowsOfTheCatalogInUseAreWrittenThere) {
  UseCatalog(*connection_, Db().OtherCatalog());
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("theirs"));
  Update(*recordset);
  recordset->MoveLast();
  Delete(*recordset);
  EXPECT_THAT(NamesElsewhere(), ElementsAre("theirs", "two"));
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(CatalogBodies, AReconnectionToAnotherCatalogIsNoticed) {
  UseCatalog(*connection_, Db().OtherCatalog());
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("theirs"));
  connection_->Close();
  OpenNow(*connection_);
  ASSERT_EQ(connection_->DefaultDatabase(), own_);
  EXPECT_THAT(ErrorOf([&] { Update(*recordset); }).description,
              HasSubstr("come from the database '" + Db().OtherCatalog() + "', and '" + own_ +
                        "' is in use now"));
  EXPECT_EQ(recordset->Editing(), EditMode::InProgress);
  EXPECT_THAT(Names(), ElementsAre("1|one", "2|two", "3|three"));
}

TEST_P(CatalogBodies, ATypedChangeOfTheCatalogCountsToo) {
  const std::string use = Db().UseStatement(Db().OtherCatalog());
  if (use.empty()) GTEST_SKIP() << "no statement changes the catalog";
  const auto recordset = OpenAll();
  recordset->SetFieldValue(name, Text("mine"));
  Run(*connection_, use);
  ExpectRefused([&] { Update(*recordset); });
  recordset->CancelUpdate();
  ExpectRefused([&] { recordset->SetFieldValue(name, Text("mine")); });
  Run(*connection_, Db().UseStatement(own_));
  recordset->SetFieldValue(name, Text("mine"));
  Update(*recordset);
  EXPECT_THAT(NamesElsewhere(), ElementsAre("one", "two", "three"));
  EXPECT_THAT(Names(), ElementsAre("1|mine", "2|two", "3|three"));
}

}  // namespace tessel::test
