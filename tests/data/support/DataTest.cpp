#include "tests/data/support/DataTest.h"

namespace tessel::test {

namespace {

std::string NewName() {
  static int count = 0;
  return "scratch_" + std::to_string(++count);
}

/// Of the test that runs: "WriteBodies.AnAliasIsNoColumn".
std::string BodyName() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string suite = test->test_suite_name();
  const std::string name = test->name();
  return suite.substr(suite.find('/') + 1) + "." + name.substr(0, name.find('/'));
}

}  // namespace

ErrorInfo ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Info();
  }
  ADD_FAILURE() << "No error was raised.";
  return {};
}

std::vector<std::vector<Value>> RowsOf(const Recordset& recordset) {
  std::vector<std::vector<Value>> rows;
  for (std::int64_t position = 0; position < recordset.RecordCount(); ++position) {
    auto& row = rows.emplace_back();
    for (std::size_t field = 0; field < recordset.Fields().size(); ++field)
      row.push_back(ToValue(recordset.ValueAt(position, field)));
  }
  return rows;
}

std::vector<std::string> TextsOf(const Recordset& recordset, std::size_t field) {
  std::vector<std::string> texts;
  for (std::int64_t position = 0; position < recordset.RecordCount(); ++position) {
    const ValueView value = recordset.ValueAt(position, field);
    texts.push_back(IsNull(value) ? "NULL" : ToText(value));
  }
  return texts;
}

std::shared_ptr<Connection> DataTest::ConnectTo(const std::string& connectionString) {
  auto connection = data_.CreateConnection();
  connection->SetConnectionString(connectionString);
  OpenNow(*connection);
  return connection;
}

StartedQuery DataTest::Run(Connection& connection, const std::string& sql) {
  return QueryNow(connection, sql);
}

Value DataTest::Cell(Connection& connection, const std::string& sql) {
  return ToValue(Run(connection, sql)->ValueAt(0, 0));
}

StartedQuery DataTest::Start(Connection& connection, const std::string& sql, EventLog& log) {
  StartedQuery query(connection.StartQuery(sql, LockType::ReadOnly));
  log.Watch(query.Operation());
  return query;
}

bool DataTest::PumpToEnd(const EventLog& log, int ends) {
  return queue_.PumpUntil([&] { return log.Ends() >= ends; });
}

void DatabaseTest::SetUp() {
  const std::string why = database_->WhyUnavailable();
  if (!why.empty()) GTEST_SKIP() << why;
  const std::string body = BodyName();
  for (const auto& [skipped, reason] : database_->Skipped())
    if (body == skipped || body.starts_with(skipped + ".")) GTEST_SKIP() << reason;
}

ScratchTable::ScratchTable(std::shared_ptr<Connection> connection, const std::string& columns)
    : connection_(std::move(connection)), name_(NewName()), drops_{"drop table " + name_} {
  QueryNow(*connection_, "create table " + name_ + " (" + columns + ")");
}

ScratchTable::ScratchTable(const Database& database, std::shared_ptr<Connection> connection,
                           const std::string& columns)
    : connection_(std::move(connection)), name_(NewName()), drops_(database.DropTable(name_)) {
  for (const std::string& sql : database.MakeTable(name_, columns)) QueryNow(*connection_, sql);
}

ScratchTable::~ScratchTable() {
  try {
    for (const std::string& sql : drops_) QueryNow(*connection_, sql);
  } catch (const Error&) {
    return;  // The connection was closed by the test: the scratch database goes as a whole.
  }
}

void ScratchTable::Insert(const std::string& values) const {
  QueryNow(*connection_, "insert into " + name_ + " values " + values);
}

}  // namespace tessel::test
