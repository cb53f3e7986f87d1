#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::Not;

TEST_P(ConnectBodies, OpensWaitsAndCloses) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().ConnectionString());
  EXPECT_EQ(connection->State(), objectState::closed);
  connection->Open({}, {}, 0);
  EXPECT_EQ(connection->State(), objectState::open);
  EXPECT_TRUE(connection->Errors().empty());
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  connection->Close();
}

TEST_P(ConnectBodies, OpensInTheBackgroundAndSaysSoOnce) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  log.Watch(*connection);
  connection->SetConnectionString(Db().ConnectionString());
  connection->Open({}, {}, asyncConnect);
  EXPECT_EQ(connection->State(), objectState::connecting);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::open);
  queue_.Pump();
  EXPECT_THAT(log.Lines(), ElementsAre("ConnectComplete ok"));
}

TEST_P(ConnectBodies, FailureToOpenIsRaised) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().BadConnectionString());
  const ErrorInfo error = ErrorOf([&] { connection->Open({}, {}, 0); });
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
  log.Watch(*connection);
  connection->SetConnectionString(Db().BadConnectionString());
  connection->Open({}, {}, asyncConnect);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(connection->State(), objectState::closed);
  ASSERT_TRUE(log.LastError());
  EXPECT_THAT(log.Lines(),
              ElementsAre("ConnectComplete failed " + std::to_string(log.LastError()->number)));
  EXPECT_THAT(log.LastError()->description, Not(testing::IsEmpty()));
}

TEST_P(ConnectBodies, OpensAgainAfterClosingAndAfterFailing) {
  const auto connection = data_.CreateConnection();
  connection->SetConnectionString(Db().BadConnectionString());
  EXPECT_THROW(connection->Open({}, {}, 0), Error);
  connection->SetConnectionString(Db().ConnectionString());
  for (int round = 0; round < 3; ++round) {
    connection->Open({}, {}, 0);
    EXPECT_EQ(ToText(ToView(Cell(*connection, "select 42"))), "42");
    connection->Close();
  }
}

TEST_P(ConnectBodies, AnOpenConnectionRefusesToOpenAndToChangeItsString) {
  const auto connection = Connect();
  EXPECT_EQ(ErrorOf([&] { connection->Open({}, {}, 0); }).number, errorNumber::objectOpen);
  EXPECT_EQ(ErrorOf([&] { connection->SetConnectionString("x"); }).number, errorNumber::objectOpen);
  EXPECT_EQ(connection->State(), objectState::open);
}

TEST_P(ConnectBodies, AClosedConnectionRefusesCommands) {
  const auto connection = data_.CreateConnection();
  EXPECT_EQ(ErrorOf([&] { Run(*connection, "select 1"); }).number, errorNumber::objectClosed);
  EXPECT_EQ(ErrorOf([&] { (void)connection->OpenSchema(SchemaRowset::Tables, {}); }).number,
            errorNumber::objectClosed);
  EXPECT_EQ(ErrorOf([&] { connection->SetDefaultDatabase("x"); }).number,
            errorNumber::objectClosed);
}

TEST_P(ConnectBodies, ClosingWhileConnectingAnnouncesACancel) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  log.Watch(*connection);
  connection->SetConnectionString(Db().ConnectionString());
  connection->Open({}, {}, asyncConnect);
  connection->Close();
  EXPECT_EQ(connection->State(), objectState::closed);
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_THAT(log.Lines(), ElementsAre("ConnectComplete failed 3712"));
  EXPECT_EQ(connection->State(), objectState::closed);
}

TEST_P(ConnectBodies, CancellingWhileConnectingEndsOnceEitherWay) {
  EventLog log;
  const auto connection = data_.CreateConnection();
  log.Watch(*connection);
  connection->SetConnectionString(Db().ConnectionString());
  connection->Open({}, {}, asyncConnect);
  connection->Cancel();
  connection->Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  connection->Cancel();
  queue_.Pump();
  const bool open = connection->State() == objectState::open;
  EXPECT_THAT(log.Lines(),
              ElementsAre(open ? "ConnectComplete ok" : "ConnectComplete failed 3712"));
}

TEST_P(ConnectBodies, NoticesOfADroppedConnectionAreDropped) {
  EventLog log;
  auto connection = data_.CreateConnection();
  log.Watch(*connection);
  connection->SetConnectionString(Db().ConnectionString());
  connection->Open({}, {}, asyncConnect);
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
