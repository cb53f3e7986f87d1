#include "tests/support/MemoryData.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/headless/HeadlessServices.h"
#include "tests/support/ErrorNumber.h"
#include "tests/support/FakeFiles.h"

namespace tessel::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int asyncOptions = openOption::text | openOption::asyncExecute | openOption::asyncFetch;

class MemoryDataTest : public testing::Test {
 protected:
  std::shared_ptr<Connection> Connect(const std::string& connectionString = "db") {
    auto connection = data_.CreateConnection();
    connection->SetConnectionString(connectionString);
    Listen(*connection);
    connection->Open("me", "secret", 0);
    return connection;
  }

  /// Notes all events of the connection.
  void Listen(Connection& connection) {
    connection.ConnectComplete = [this](const ErrorInfo* error, EventStatus status) {
      Note("connect", error, status);
    };
    connection.ExecuteComplete = [this](std::int64_t affected, const ErrorInfo* error,
                                        EventStatus status, Recordset* recordset) {
      Note("execute " + std::to_string(affected) + " state " + std::to_string(recordset->State()),
           error, status);
    };
  }

  std::shared_ptr<Recordset> Command(Connection& connection, const std::string& sql) {
    auto recordset = connection.CreateRecordset();
    recordset->SetSource(sql);
    recordset->FetchProgress = [this](std::int64_t rows, std::int64_t, EventStatus) {
      seen_.push_back("progress " + std::to_string(rows));
    };
    recordset->FetchComplete = [this](const ErrorInfo* error, EventStatus status) {
      Note("fetch", error, status);
    };
    return recordset;
  }

  void Note(const std::string& what, const ErrorInfo* error, EventStatus status) {
    EXPECT_EQ(error != nullptr, status == EventStatus::ErrorsOccurred);
    seen_.push_back(what + (error != nullptr ? ": " + error->description : ""));
  }

  void Drain() {
    while (queue_.RunOne()) continue;
  }

  HeadlessQueue queue_;
  MemoryData data_{queue_};
  std::vector<std::string> seen_;
};

const MemoryRows threeRows = {{1, "b"}, {2, "a"}, {3, Value()}};

std::vector<FieldInfo> IdAndName() {
  return {MemoryField("id", DataType::Integer), MemoryField("name")};
}

}  // namespace

TEST_F(MemoryDataTest, OpensAtOnceOrInSteps) {
  const auto waiting = Connect();
  EXPECT_EQ(waiting->State(), objectState::open);
  EXPECT_THAT(seen_, IsEmpty());
  const auto later = data_.CreateConnection();
  Listen(*later);
  later->Open("", "", asyncConnect);
  EXPECT_EQ(later->State(), objectState::connecting);
  Drain();
  EXPECT_EQ(later->State(), objectState::open);
  EXPECT_THAT(seen_, ElementsAre("connect"));
  EXPECT_EQ(data_.Log().opened.at(0).password, "secret");
  EXPECT_EQ(data_.Log().openSessions, 2);
}

TEST_F(MemoryDataTest, OpeningFailsOnDemand) {
  data_.ServerOf("db").openFailure = MemoryError("refused");
  EXPECT_EQ(ErrorNumberOf([&] { Connect(); }), errorNumber::database);
  const auto later = data_.CreateConnection();
  later->SetConnectionString("db");
  Listen(*later);
  later->Open("", "", asyncConnect);
  Drain();
  EXPECT_EQ(later->State(), objectState::closed);
  EXPECT_THAT(seen_, ElementsAre("connect: refused"));
  EXPECT_EQ(later->Errors().at(0).description, "refused");
  data_.ServerOf("db").openRefused = MemoryError("no provider", errorNumber::providerNotFound);
  EXPECT_EQ(ErrorNumberOf([&] { later->Open("", "", asyncConnect); }),
            errorNumber::providerNotFound);
  EXPECT_EQ(later->State(), objectState::closed);
}

TEST_F(MemoryDataTest, AHeldOpeningEndsByCancel) {
  data_.holdConnecting = true;
  const auto connection = data_.CreateConnection();
  Listen(*connection);
  connection->Open("", "", asyncConnect);
  Drain();
  EXPECT_EQ(connection->State(), objectState::connecting);
  connection->Cancel();
  connection->Cancel();
  Drain();
  EXPECT_EQ(connection->State(), objectState::closed);
  EXPECT_THAT(seen_, ElementsAre("connect: The operation was cancelled."));
}

TEST_F(MemoryDataTest, ASchemaRowsetIsReadAsACommandIs) {
  data_.tables = {{"shop", "", "item", "TABLE", IdAndName()}};
  const auto connection = Connect();
  const auto tables = connection->CreateSchemaRecordset(SchemaRowset::Tables, {});
  EXPECT_EQ(tables->State(), objectState::closed);
  tables->Open(openOption::text | openOption::asyncExecute | openOption::asyncFetch);
  EXPECT_EQ(tables->State(), objectState::executing);
  Drain();
  EXPECT_EQ(tables->State(), objectState::open);
  EXPECT_EQ(tables->RecordCount(), 1);
}

TEST_F(MemoryDataTest, AHeldOpeningGoesOnWhenResumed) {
  data_.holdConnecting = true;
  const auto connection = data_.CreateConnection();
  Listen(*connection);
  connection->Open("", "", asyncConnect);
  Drain();
  data_.Resume();
  Drain();
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_THAT(seen_, ElementsAre("connect"));
}

TEST_F(MemoryDataTest, FetchesInBlocks) {
  data_.Answer("select", IdAndName(), threeRows).Block(2);
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  EXPECT_EQ(recordset->State(), objectState::executing);
  EXPECT_EQ(connection->State(), objectState::open | objectState::executing);
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 9", "progress 2", "progress 3", "fetch"));
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_EQ(ToText(recordset->FieldValue(1)), "b");
  EXPECT_EQ(recordset->RecordsetProperties().Number("Unique Rows", 0), 1);
  EXPECT_THAT(data_.ExecutedSql(), ElementsAre("select"));
}

TEST_F(MemoryDataTest, WaitsForAllRows) {
  data_.Answer("select", IdAndName(), threeRows);
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(openOption::text);
  EXPECT_EQ(recordset->RecordCount(), 3);
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 9"));
}

TEST_F(MemoryDataTest, CommandsWithoutRowsLeaveTheRecordsetClosed) {
  data_.AnswerCount("update", 3);
  data_.AnswerNothing("create");
  const auto connection = Connect();
  Command(*connection, "update")->Open(openOption::text);
  const auto recordset = Command(*connection, "create");
  recordset->Open(asyncOptions);
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute 3 state 0", "execute -1 state 0"));
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(recordset->RecordCount()); }),
            errorNumber::objectClosed);
}

TEST_F(MemoryDataTest, CommandsFailOnDemand) {
  data_.AnswerError("bad", MemoryError("syntax"));
  const auto connection = Connect();
  EXPECT_EQ(ErrorNumberOf([&] { Command(*connection, "bad")->Open(openOption::text); }),
            errorNumber::database);
  const auto recordset = Command(*connection, "bad");
  recordset->Open(asyncOptions);
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 0: syntax", "execute -1 state 0: syntax"));
  EXPECT_EQ(connection->Errors().size(), 1U);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(MemoryDataTest, AFetchFailsOnDemandAndKeepsTheRows) {
  data_.Answer("select", IdAndName(), threeRows).FailAtRow(2, MemoryError("broken"));
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 9", "progress 2", "fetch: broken"));
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 2);
}

TEST_F(MemoryDataTest, CancelsWhileExecuting) {
  data_.Answer("select", IdAndName(), threeRows).HoldExecuting();
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  Drain();
  EXPECT_THAT(seen_, IsEmpty());
  recordset->Cancel();
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 0: The operation was cancelled."));
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(MemoryDataTest, CancelsWhileFetchingAndKeepsTheRows) {
  data_.Answer("select", IdAndName(), threeRows).HoldAtRow(1);
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  Drain();
  EXPECT_EQ(recordset->State(), objectState::open | objectState::fetching);
  recordset->Cancel();
  recordset->Cancel();
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 9", "progress 1",
                                 "fetch: The operation was cancelled."));
  EXPECT_EQ(recordset->State(), objectState::open);
  EXPECT_EQ(recordset->RecordCount(), 1);
}

TEST_F(MemoryDataTest, ARecordsetClosedWhileFetchingStaysEmpty) {
  data_.Answer("select", IdAndName(), threeRows).HoldAtRow(1);
  data_.Answer("other", IdAndName(), {{7, "x"}});
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  Drain();
  recordset->Close();
  EXPECT_EQ(recordset->State(), objectState::closed);
  Drain();
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_EQ(recordset->State(), objectState::closed);
  recordset->SetSource("other");
  recordset->Open(openOption::text);
  EXPECT_EQ(recordset->RecordCount(), 1);
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "7");
}

TEST_F(MemoryDataTest, ALateCancelDoesNotHitTheNextCommand) {
  data_.AnswerCount("update", 1);
  const auto connection = Connect();
  const auto first = Command(*connection, "update");
  first->Open(asyncOptions);
  Drain();
  first->Cancel();
  connection->Cancel();
  Command(*connection, "update")->Open(openOption::text);
  EXPECT_THAT(seen_, ElementsAre("execute 1 state 0", "execute 1 state 0"));
}

TEST_F(MemoryDataTest, OneCommandRunsAtATime) {
  data_.AnswerCount("update", 1);
  const auto connection = Connect();
  const auto first = Command(*connection, "update");
  first->Open(asyncOptions);
  const auto second = Command(*connection, "update");
  EXPECT_EQ(ErrorNumberOf([&] { second->Open(asyncOptions); }), errorNumber::application);
  Drain();
  EXPECT_EQ(ErrorNumberOf([&] { Command(*connection, " \n")->Open(0); }), errorNumber::application);
}

TEST_F(MemoryDataTest, NoticesFollowASuccess) {
  data_.AnswerCount("update", 1).Notices({MemoryError("truncated", errorNumber::information)});
  const auto connection = Connect();
  Command(*connection, "update")->Open(openOption::text);
  ASSERT_EQ(connection->Errors().size(), 1U);
  EXPECT_EQ(connection->Errors()[0].description, "truncated");
  connection->ClearErrors();
  EXPECT_THAT(connection->Errors(), IsEmpty());
}

TEST_F(MemoryDataTest, NoticesOfAConnectionThatIsGoneAreDropped) {
  data_.AnswerCount("update", 1);
  auto connection = Connect();
  const auto recordset = Command(*connection, "update");
  recordset->Open(asyncOptions);
  connection.reset();
  Drain();
  EXPECT_THAT(seen_, IsEmpty());
  EXPECT_THAT(data_.Log().closed, ElementsAre("db"));
}

TEST_F(MemoryDataTest, ClosingEndsWhatRuns) {
  data_.Answer("select", IdAndName(), threeRows).HoldExecuting();
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(asyncOptions);
  Drain();
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  Drain();
  EXPECT_THAT(seen_, ElementsAre("execute -1 state 0: The operation was cancelled."));
  EXPECT_EQ(data_.Log().openSessions, 0);
  connection->Open("", "", 0);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_F(MemoryDataTest, ClosingFailsOnDemand) {
  data_.closeFailure = MemoryError("stuck");
  const auto connection = Connect();
  EXPECT_EQ(ErrorNumberOf([&] { connection->Close(); }), errorNumber::database);
}

TEST_F(MemoryDataTest, AnswersOfOneTextComeInOrder) {
  data_.AnswerCount("update", 1);
  data_.AnswerCount("update", 0);
  const auto connection = Connect();
  for (int i = 0; i < 3; ++i) Command(*connection, "update")->Open(openOption::text);
  EXPECT_THAT(seen_, ElementsAre("execute 1 state 0", "execute 0 state 0", "execute 0 state 0"));
}

TEST_F(MemoryDataTest, EachConnectionStringMayHaveItsServer) {
  data_.AnswerCount("update", 1);
  data_.ServerOf("other").AnswerCount("update", 7);
  const auto connection = Connect("db");
  const auto other = Connect("other");
  Command(*other, "update")->Open(openOption::text);
  Command(*connection, "update")->Open(openOption::text);
  EXPECT_THAT(seen_, ElementsAre("execute 7 state 0", "execute 1 state 0"));
}

TEST_F(MemoryDataTest, CatalogsAreChanged) {
  data_.catalogs = {"shop", "archive"};
  data_.defaultDatabase = "shop";
  const auto connection = Connect();
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  EXPECT_EQ(ErrorNumberOf([&] { connection->SetDefaultDatabase("[archive]"); }),
            errorNumber::database);
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  connection->SetDefaultDatabase("ARCHIVE");
  EXPECT_EQ(connection->DefaultDatabase(), "archive");
  data_.takesBrackets = true;
  connection->SetDefaultDatabase("[shop]");
  EXPECT_EQ(connection->DefaultDatabase(), "shop");
  data_.catalogFailures["archive"] = MemoryError("denied");
  EXPECT_EQ(ErrorNumberOf([&] { connection->SetDefaultDatabase("archive"); }),
            errorNumber::database);
  EXPECT_THAT(data_.Log().catalogs, ElementsAre("[archive]", "ARCHIVE", "[shop]", "archive"));
}

TEST_F(MemoryDataTest, SchemaRowsetsObeyTheirRestrictions) {
  data_.catalogs = {"shop"};
  data_.tables = {{"shop", "", "item", "TABLE", IdAndName()}, {"shop", "", "recent", "VIEW", {}}};
  const auto connection = Connect();
  const auto catalogs = connection->OpenSchema(SchemaRowset::Catalogs, {});
  EXPECT_EQ(ToText(catalogs->FieldValue(*catalogs->FindField("catalog_name"))), "shop");
  const auto views = connection->OpenSchema(SchemaRowset::Tables, {"", "", "", "VIEW"});
  ASSERT_EQ(views->RecordCount(), 1);
  EXPECT_EQ(ToText(views->ValueAt(0, 2)), "recent");
  EXPECT_TRUE(IsNull(views->ValueAt(0, 1)));
  const auto columns = connection->OpenSchema(SchemaRowset::Columns, {"", "", "item"});
  ASSERT_EQ(columns->RecordCount(), 2);
  EXPECT_EQ(ToText(columns->ValueAt(1, *columns->FindField("ORDINAL_POSITION"))), "2");
  data_.schemaFailures[SchemaRowset::Tables] = MemoryError("none", errorNumber::notSupported);
  EXPECT_EQ(
      ErrorNumberOf([&] { static_cast<void>(connection->OpenSchema(SchemaRowset::Tables, {})); }),
      errorNumber::notSupported);
}

TEST_F(MemoryDataTest, PropertiesCanBeMissing) {
  data_.properties.Clear();
  data_.Answer("select", IdAndName(), threeRows).WithoutProperties();
  const auto connection = Connect();
  EXPECT_EQ(ErrorNumberOf([&] {
              static_cast<void>(
                  connection->ProviderProperties().At("Data Source Object Threading Model"));
            }),
            errorNumber::itemNotFound);
  const auto recordset = Command(*connection, "select");
  recordset->Open(openOption::text);
  EXPECT_EQ(recordset->RecordsetProperties().Find("Unique Rows"), nullptr);
}

TEST_F(MemoryDataTest, RecordsAreWalked) {
  data_.Answer("select", IdAndName(), threeRows);
  data_.Answer("none", IdAndName(), {});
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(openOption::text);
  EXPECT_FALSE(recordset->Bof());
  recordset->MoveLast();
  EXPECT_TRUE(IsNull(recordset->FieldValue(1)));
  EXPECT_EQ(recordset->ActualSize(1), 0);
  recordset->MoveNext();
  EXPECT_TRUE(recordset->Eof());
  EXPECT_EQ(ErrorNumberOf([&] { recordset->MoveNext(); }), errorNumber::noCurrentRecord);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(recordset->CurrentBookmark()); }),
            errorNumber::noCurrentRecord);
  const auto empty = Command(*connection, "none");
  empty->Open(openOption::text);
  EXPECT_TRUE(empty->Bof() && empty->Eof());
}

TEST_F(MemoryDataTest, SortingKeepsBookmarksAndTheCurrentRecord) {
  data_.Answer("select", IdAndName(), threeRows);
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(openOption::text);
  const Bookmark first = recordset->CurrentBookmark();
  recordset->SetSort("[name], id DESC");
  EXPECT_EQ(ToText(recordset->ValueAt(0, 0)), "3") << "nulls come first";
  EXPECT_EQ(ToText(recordset->ValueAt(1, 1)), "a");
  EXPECT_EQ(recordset->CurrentBookmark(), first);
  EXPECT_EQ(recordset->PositionOf(first), 2);
  EXPECT_EQ(ErrorNumberOf([&] { recordset->SetSort("nothing"); }), errorNumber::itemNotFound);
  EXPECT_EQ(recordset->PositionOf(first), 2);
  recordset->SetSort("");
  EXPECT_EQ(recordset->PositionOf(first), 0);
}

TEST_F(MemoryDataTest, AClonePositionsByItself) {
  data_.Answer("select", IdAndName(), threeRows);
  const auto connection = Connect();
  const auto recordset = Command(*connection, "select");
  recordset->Open(openOption::text);
  recordset->SetSort("id DESC");
  recordset->MoveLast();
  const auto clone = recordset->Clone(LockType::ReadOnly);
  EXPECT_EQ(ToText(clone->FieldValue(0)), "1") << "in the order of opening";
  clone->MoveTo(3);
  EXPECT_EQ(ToText(clone->FieldValue(0)), "3");
  EXPECT_EQ(ToText(recordset->FieldValue(0)), "1");
  clone->Close();
  EXPECT_EQ(recordset->RecordCount(), 3);
}

TEST(FakeFilesTest, KeepsFilesInMemoryAndFailsOnDemand) {
  FakeFiles files;
  files.ReplaceWhole("/home/me/a.sql", "select 1", true);
  EXPECT_EQ(files.ReadWhole("/home/me/a.sql"), "select 1");
  EXPECT_TRUE(files.IsOwnerOnly("/home/me/a.sql"));
  EXPECT_TRUE(files.Exists("/home/me/a.sql"));
  EXPECT_FALSE(files.Exists("/home/me/b.sql"));
  EXPECT_THROW(static_cast<void>(files.ReadWhole("/home/me/b.sql")), Error);
  files.FailWrites();
  try {
    files.ReplaceWhole("/home/me/a.sql", "select 2", false);
    ADD_FAILURE() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "/home/me/a.sql: No space left on device");
  }
  EXPECT_EQ(files.ReadWhole("/home/me/a.sql"), "select 1");
  files.FailReads();
  EXPECT_THROW(static_cast<void>(files.ReadWhole("/home/me/a.sql")), Error);
}

}  // namespace tessel::test
