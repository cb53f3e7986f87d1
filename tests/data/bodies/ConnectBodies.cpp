#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::Not;

TEST_P(ConnectBodies, OpensWaitsAndCloses) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  EXPECT_EQ(connection->State(), objectState::closed);
  OpenNow(*connection);
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_TRUE(connection->Errors().empty());
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  connection->Close();
}

TEST_P(ConnectBodies, OpensInTheBackgroundAndSaysSoOnce) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  EXPECT_EQ(connection->State(), objectState::connecting);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::open);
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("done"));
}

TEST_P(ConnectBodies, FailureToOpenIsRaised) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().BadConnectionString());
  const ErrorInfo error = ErrorOf([&] { OpenNow(*connection); });
  EXPECT_NE(error.number, 0);
  EXPECT_THAT(error.description, Not(testing::IsEmpty()));
  EXPECT_THAT(error.source, Not(testing::IsEmpty()));
  EXPECT_EQ(connection->State(), objectState::closed);
  ASSERT_FALSE(connection->Errors().empty());
  EXPECT_EQ(connection->Errors().front().description, error.description);
}

TEST_P(ConnectBodies, FailureToOpenInTheBackgroundIsAnnouncedOnce) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().BadConnectionString());
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::closed);
  ASSERT_TRUE(log.LastError());
  EXPECT_THAT(log.Lines(), ElementsAre("failed " + std::to_string(log.LastError()->number)));
  EXPECT_THAT(log.LastError()->description, Not(testing::IsEmpty()));
}

TEST_P(ConnectBodies, OpensAgainAfterClosingAndAfterFailing) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().BadConnectionString());
  EXPECT_THROW(OpenNow(*connection), Error);
  connection->SetConnectionString(Db().ConnectionString());
  for (int round = 0; round < 3; ++round) {
    OpenNow(*connection);
    EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
    connection->Close();
  }
}

TEST_P(ConnectBodies, AnOpenConnectionRefusesToOpenAndToChangeItsString) {
  const auto connection = Connect();
  EXPECT_EQ(ErrorOf([&] { OpenNow(*connection); }).number, errorNumber::objectOpen);
  EXPECT_EQ(ErrorOf([&] { connection->SetConnectionString("x"); }).number, errorNumber::objectOpen);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_P(ConnectBodies, AClosedConnectionRefusesCommands) {
  const auto connection = data_.CreateConnection();
  EXPECT_EQ(ErrorOf([&] { Run(*connection, "select 1"); }).number, errorNumber::objectClosed);
  EXPECT_EQ(ErrorOf([&] { (void)ReadSchema(*connection, SchemaRowset::Tables, {}); }).number,
            errorNumber::objectClosed);
  EXPECT_EQ(ErrorOf([&] { UseCatalog(*connection, "x"); }).number, errorNumber::objectClosed);
}

TEST_P(ConnectBodies, ClosingWhileConnectingAnnouncesACancel) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("failed 3712"));
  EXPECT_EQ(connection->State(), objectState::closed);
}

TEST_P(ConnectBodies, CancellingWhileConnectingEndsOnceEitherWay) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  opening->Cancel();
  opening->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  opening->Cancel();
  queue_.Pump();
  const bool open = connection->State() == objectState::open;
  EXPECT_THAT(log.Lines(), ElementsAre(open ? "done" : "failed 3712"));
}

TEST_P(ConnectBodies, NoticesOfADroppedConnectionAreDropped) {
  EventLog log;
  auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  const auto opening = connection->StartOpen({}, {});
  log.Watch(*opening);
  connection.reset();
  queue_.Pump();
  EXPECT_TRUE(log.Lines().empty());
}

TEST_P(ConnectBodies, TellsTheProviderProperties) {
  const auto connection = Connect();
  const Properties& properties = connection->ProviderProperties();
  EXPECT_EQ(properties.Number("Data Source Object Threading Model", 0) & 1, 1);
  for (const char* name : {"Provider Name", "DBMS Name", "DBMS Version"})
    EXPECT_FALSE(ToText(ToView(properties.At(name))).empty()) << name;
  EXPECT_EQ(ToText(ToView(properties.At("Identifier Quote Character"))).size(), 1U);
}

TEST_P(ConnectBodies, TwoConnectionsWorkAtTheSameTime) {
  const auto one = Connect();
  const auto two = Connect();
  EventLog logOne;
  EventLog logTwo;
  const auto rowsOne = Start(*one, Db().Series(1000), logOne);
  const auto rowsTwo = Start(*two, Db().Series(2000), logTwo);
  ASSERT_TRUE(PumpToEnd(logOne));
  ASSERT_TRUE(PumpToEnd(logTwo));
  EXPECT_EQ(rowsOne->RecordCount(), 1000);
  EXPECT_EQ(rowsTwo->RecordCount(), 2000);
}

}  // namespace tessel::test
