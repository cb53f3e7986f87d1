#include <thread>

#include "tests/data/bodies/AllBodies.h"
#include "tests/data/support/ListFeed.h"
#include "tests/data/support/Values.h"

namespace tessel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::int64_t manyRows = 3'000;
constexpr std::int64_t badRow = 2'500;

/// Rows with the keys from 100 on; the bad one has a key that is there.
ListFeed::Maker RowsWithOneBad() {
  return [](std::int64_t number) -> std::optional<std::vector<Value>> {
    if (number == manyRows) return std::nullopt;
    return std::vector<Value>{Whole(number == badRow ? 1 : 100 + number),
                              Text("row " + std::to_string(number))};
  };
}

/// More than anybody waits for.
ListFeed::Maker EndlessRows() {
  return [](std::int64_t number) {
    return std::optional(std::vector<Value>{Whole(100 + number), Text("row")});
  };
}

}  // namespace

LoadRequest LoadBodies::RequestOf(std::shared_ptr<RowFeed> rows) const {
  return {.table = table_->Name(),
          .columns = {{"id", DataType::Integer}, {"name", DataType::VarWChar}},
          .rows = std::move(rows)};
}

std::shared_ptr<LoadOperation> LoadBodies::Load(LoadRequest request) {
  const auto load = connection_->StartLoad(std::move(request));
  load->Wait();
  return load;
}

std::string LoadBodies::Count(const std::string& table) {
  return Outside("select count(*) from " + table).front();
}

void LoadBodies::PumpToProgress(const LoadOperation& load) {
  for (int i = 0; i < 1'000 && load.Rows() < 500 && !load.HasEnded(); ++i) {
    queue_.Pump();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  ASSERT_GE(load.Rows(), 500);
}

TEST_P(LoadBodies, RowsArriveAsTheyAre) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  const std::vector<std::vector<Value>> rows = {
      {Whole(10), Text("O'Brien said \"yes\" \\ no''"), Octets(bytes), Whole(-1)},
      {Whole(11), Text("tab\tline\nline\r\nend\r"), Octets(""), Value()},
      {Whole(12), Text(""), Value(), Whole(2'147'483'647)},
      {Whole(13), Value(), Octets("'"), Whole(0)},
      {Whole(14), Text("\\N"), Value(), Value()},
      {Whole(15), Text("Z\u00FCrich \U0001F600 \u6F22\u5B57"), Value(), Value()},
      {Whole(16), Text("\\."), Octets("\\x41"), Value()}};
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(rows));
  request.columns.push_back({"data", DataType::LongVarBinary});
  request.columns.push_back({"n", DataType::Integer});
  const auto load = Load(std::move(request));
  ASSERT_EQ(load->Outcome(), OperationOutcome::Done) << load->Failure()->description;
  EXPECT_EQ(load->Rows(), 7);
  EXPECT_EQ(load->RowsKept(), 7);
  const auto found = Run(*other_, "select id, name, data, n from " + table_->Name() +
                                      " where id >= 10 order by id");
  EXPECT_EQ(RowsOf(*found), rows);
}

TEST_P(LoadBodies, ManyRowsArriveInTheirOrder) {
  const auto make = [](std::int64_t number) -> std::optional<std::vector<Value>> {
    if (number == manyRows) return std::nullopt;
    return std::vector<Value>{Whole(100 + number), Text("row " + std::to_string(number))};
  };
  const auto load = Load(RequestOf(std::make_shared<ListFeed>(make)));
  ASSERT_EQ(load->Outcome(), OperationOutcome::Done) << load->Failure()->description;
  EXPECT_EQ(Count(), "3003");
  EXPECT_THAT(Outside("select name from " + table_->Name() + " where id = 3099"),
              ElementsAre("row 2999"));
}

TEST_P(LoadBodies, OfARefusedRowTheLineIsToldAndNothingStays) {
  const auto load = Load(RequestOf(std::make_shared<ListFeed>(RowsWithOneBad())));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused()) << load->Failure()->description;
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(badRow));
  EXPECT_EQ(load->RowsKept(), 0);
  EXPECT_EQ(Count(), "3");
  if (Db().Traits().tellsTransaction) {
    EXPECT_EQ(connection_->Transaction().state, UserTransaction::None);
  }
}

TEST_P(LoadBodies, InBatchesWhatWasTakenStays) {
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(RowsWithOneBad()));
  request.commitRows = 1'000;
  const auto load = Load(std::move(request));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused()) << load->Failure()->description;
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(badRow));
  EXPECT_EQ(load->RowsKept(), 2'000);
  EXPECT_EQ(Count(), "2003");
}

TEST_P(LoadBodies, ANullWhereNoneMayBeIsRefusedWithItsColumn) {
  const ScratchTable table(Db(), connection_, "a integer, b integer not null");
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(std::vector<std::vector<Value>>{
      {Whole(1), Whole(1)}, {Whole(2), Whole(2)}, {Whole(3), Value()}, {Whole(4), Whole(4)}}));
  request.table = table.Name();
  request.columns = {{"a", DataType::Integer}, {"b", DataType::Integer}};
  const auto load = Load(std::move(request));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused()) << load->Failure()->description;
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(2));
  if (Db().Traits().tellsRefusedColumn) {
    EXPECT_EQ(load->Refused()->column, "b");
  }
  EXPECT_EQ(Count(table.Name()), "0");
}

TEST_P(LoadBodies, ATextThatIsTooLongIsRefused) {
  if (!Db().Traits().limitsText) GTEST_SKIP() << "takes texts of any length";
  const auto load = Load(RequestOf(std::make_shared<ListFeed>(std::vector<std::vector<Value>>{
      {Whole(10), Text("short")}, {Whole(11), Text(std::string(201, 'x'))}})));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(load->Refused()) << load->Failure()->description;
  EXPECT_EQ(load->Refused()->line, ListFeed::LineOf(1));
  EXPECT_EQ(Count(), "3");
}

TEST_P(LoadBodies, WhatTheFeedCannotReadEndsTheLoad) {
  const auto make = [](std::int64_t number) -> std::optional<std::vector<Value>> {
    if (number == 1'000) throw Error(errorNumber::application, "Tessel", "Line 7 is broken.");
    return std::vector<Value>{Whole(100 + number), Text("row")};
  };
  const auto load = Load(RequestOf(std::make_shared<ListFeed>(make)));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  EXPECT_EQ(load->Failure()->description, "Line 7 is broken.");
  EXPECT_FALSE(load->Refused());
  EXPECT_EQ(Count(), "3");
}

void LoadBodies::CancelInTheMiddle(LoadOperation& load) {
  EventLog log;
  log.Watch(load);
  PumpToProgress(load);
  load.Cancel();
  ASSERT_TRUE(PumpToEnd(log));
  EXPECT_EQ(load.Outcome(), OperationOutcome::Cancelled);
}

TEST_P(LoadBodies, ACancelInTheMiddleLeavesNothing) {
  const auto load = connection_->StartLoad(RequestOf(std::make_shared<ListFeed>(EndlessRows())));
  ASSERT_NO_FATAL_FAILURE(CancelInTheMiddle(*load));
  EXPECT_EQ(load->RowsKept(), 0);
  ASSERT_EQ(connection_->State(), objectState::open);
  EXPECT_EQ(Count(), "3");
  EXPECT_EQ(ToText(ToView(Cell(*connection_, "select 1"))), "1");
}

TEST_P(LoadBodies, ACancelInTheMiddleLeavesTheBatchesThatWereTaken) {
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(EndlessRows()));
  request.commitRows = 200;
  const auto load = connection_->StartLoad(std::move(request));
  ASSERT_NO_FATAL_FAILURE(CancelInTheMiddle(*load));
  EXPECT_GE(load->RowsKept(), 200);
  EXPECT_EQ(Count(), std::to_string(3 + load->RowsKept()));
}

TEST_P(LoadBodies, RowsBelongToTheTransactionThatIsOpen) {
  if (!Db().Traits().tellsTransaction) GTEST_SKIP() << "tells nothing of transactions";
  Run(*connection_, Db().BeginStatement());
  Run(*connection_, "insert into " + table_->Name() + " (id) values (50)");
  const auto bad = Load(RequestOf(std::make_shared<ListFeed>(RowsWithOneBad())));
  EXPECT_EQ(bad->Outcome(), OperationOutcome::Failed);
  EXPECT_EQ(connection_->Transaction().state, UserTransaction::Open);
  const auto good = Load(RequestOf(
      std::make_shared<ListFeed>(std::vector<std::vector<Value>>{{Whole(60), Text("x")}})));
  EXPECT_EQ(good->Outcome(), OperationOutcome::Done);
  EXPECT_EQ(connection_->Transaction().state, UserTransaction::Open);
  Run(*connection_, "commit");
  EXPECT_THAT(Outside("select id from " + table_->Name() + " order by id"),
              ElementsAre("1", "2", "3", "50", "60"));
}

TEST_P(LoadBodies, ATableThatWasMadeForTheRowsGoesWithThem) {
  const std::string name = table_->Name() + "_new";
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(
      std::vector<std::vector<Value>>{{Whole(1), Text("one")}, {Whole(1), Text("again")}}));
  request.table = name;
  request.createTable =
      "create table " + name + " (id " + Db().KeyType() + ", name " + Db().TextType() + ")";
  const auto bad = Load(request);
  EXPECT_EQ(bad->Outcome(), OperationOutcome::Failed);
  EXPECT_FALSE(ErrorOf([&] { Run(*other_, "select * from " + name); }).description.empty());
  request.rows = std::make_shared<ListFeed>(
      std::vector<std::vector<Value>>{{Whole(1), Text("one")}, {Whole(2), Text("two")}});
  const auto good = Load(request);
  EXPECT_EQ(good->Outcome(), OperationOutcome::Done);
  EXPECT_EQ(Count(name), "2");
  Run(*connection_, "drop table " + name);
}

TEST_P(LoadBodies, ATableThatIsNotThereIsAnError) {
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(RowsWithOneBad()));
  request.table = "there_is_no_such_table";
  const auto load = Load(std::move(request));
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  EXPECT_THAT(load->Failure()->description, HasSubstr("there_is_no_such_table"));
  EXPECT_FALSE(load->Refused());
}

TEST_P(LoadBodies, AServerThatEndsInTheMiddleLeavesNothing) {
  if (!Db().Traits().hasServer) GTEST_SKIP() << "has no server";
  Run(*other_, Db().FlushStatement());
  EventLog log;
  const auto load = connection_->StartLoad(RequestOf(std::make_shared<ListFeed>(EndlessRows())));
  log.Watch(*load);
  PumpToProgress(*load);
  Db().KillServer();
  const bool ended = PumpToEnd(log);
  Db().RestartServer();
  ASSERT_TRUE(ended);
  EXPECT_EQ(load->Outcome(), OperationOutcome::Failed);
  EXPECT_EQ(connection_->State(), objectState::closed);
  other_ = Connect();
  EXPECT_EQ(Count(), "3");
  OpenNow(*connection_);
}

TEST_P(LoadBodies, AsAFileTheyArriveInTheSameWay) {
  const std::vector<std::vector<Value>> rows = {
      {Whole(10), Text("tab\tline\nback\\slash 'quoted' \"too\""), Octets("a\tb\\\n\xFF")},
      {Whole(11), Text(""), Octets("")},
      {Whole(12), Value(), Value()},
      {Whole(13), Text("\\N"), Octets("\\N")}};
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(rows));
  request.columns.push_back({"data", DataType::LongVarBinary});
  request.asFile = true;
  const auto load = Load(request);
  ASSERT_EQ(load->Outcome(), OperationOutcome::Done) << load->Failure()->description;
  const auto found =
      Run(*other_, "select id, name, data from " + table_->Name() + " where id >= 10 order by id");
  EXPECT_EQ(RowsOf(*found), rows);
  LoadRequest bad = RequestOf(std::make_shared<ListFeed>(RowsWithOneBad()));
  bad.asFile = true;
  const auto refused = Load(bad);
  EXPECT_EQ(refused->Outcome(), OperationOutcome::Failed);
  ASSERT_TRUE(refused->Refused()) << refused->Failure()->description;
  EXPECT_EQ(refused->Refused()->line, ListFeed::LineOf(badRow));
  EXPECT_EQ(Count(), "7");
}

TEST_P(LoadBodies, ARequestWithoutColumnsIsRefused) {
  LoadRequest request = RequestOf(std::make_shared<ListFeed>(RowsWithOneBad()));
  request.columns.clear();
  EXPECT_EQ(ErrorOf([&] { (void)connection_->StartLoad(request); }).number,
            errorNumber::application);
}

TEST_P(ReadOnlyBodies, NothingIsLoaded) {
  LoadRequest request{.table = table_->Name(),
                      .columns = {{"id", DataType::Integer}},
                      .rows =
                          std::make_shared<ListFeed>(std::vector<std::vector<Value>>{{Whole(10)}})};
  EXPECT_EQ(ErrorOf([&] { (void)readOnly_->StartLoad(request); }).number, errorNumber::readOnly);
}

}  // namespace tessel::test
