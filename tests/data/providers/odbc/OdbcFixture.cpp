#include "tests/data/providers/odbc/OdbcFixture.h"
#include "tests/support/Slowdown.h"

#include "tests/data/servers/OdbcFiles.h"

namespace tessel::test {

namespace {

std::string ServerString(const char* driver, const ServerLogin& login, int port) {
  return std::string("Driver={") + driver + "};Server=" + login.host +
         ";Port=" + std::to_string(port) + ";Database=" + login.database + ";UID=" + login.user +
         ";PWD=" + login.password;
}

/// The definitions of data sources, as in odbc.ini.
constexpr const char* dataSources = R"([test-shop]
Driver=PostgreSQL Unicode
Servername=127.0.0.1
Database=shop
)";

std::string TextOf(const Value& value) {
  return std::holds_alternative<std::monostate>(value) ? "(null)" : ToText(ToView(value));
}

}  // namespace

std::string PostgresStringAt(int port) {
  return ServerString("PostgreSQL Unicode", ServerLogin(), port);
}

std::string MariaDbStringAt(int port) {
  return ServerString("MariaDB Unicode", ServerLogin(), port);
}

std::string PostgresString() {
  return PostgresStringAt(TestServers::Instance().Postgres().Login().port);
}

std::string MariaDbString() {
  return MariaDbStringAt(TestServers::Instance().MariaDb().Login().port);
}

std::string SqliteString(const std::string& name) {
  return "Driver=SQLite3;Database=" + (TestServers::Instance().Folder() / name).string();
}

Rows AllRows(const Recordset& recordset) {
  Rows rows;
  for (std::int64_t at = 0; at < recordset.RecordCount(); ++at) {
    Row row;
    for (std::size_t field = 0; field < recordset.Fields().size(); ++field)
      row.push_back(ToValue(recordset.ValueAt(at, field)));
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<std::vector<std::string>> AllText(const Recordset& recordset) {
  std::vector<std::vector<std::string>> text;
  for (const Row& row : AllRows(recordset)) {
    text.emplace_back();
    for (const Value& value : row) text.back().push_back(TextOf(value));
  }
  return text;
}

OdbcTest::OdbcTest() {
  UseOwnOdbcFiles(TestServers::Instance().Folder(), dataSources);
  data_ = std::make_unique<DataAccessObjects>(queue_, nullptr, RowMemory::OfMachine(), slowdown);
}

std::shared_ptr<Connection> OdbcTest::NewConnection(const std::string& connectionString) {
  auto connection = data_->CreateConnection();
  connection->SetConnectionString(connectionString);
  return connection;
}

std::shared_ptr<Connection> OdbcTest::Connect(const std::string& connectionString,
                                              const std::string& user,
                                              const std::string& password) {
  auto connection = NewConnection(connectionString);
  OpenNow(*connection, user, password);
  return connection;
}

std::optional<ErrorInfo> OdbcTest::FailureOf(const std::string& connectionString) {
  try {
    Connect(connectionString);
    return std::nullopt;
  } catch (const Error& error) {
    return error.Info();
  }
}

StartedQuery OdbcTest::Run(Connection& connection, const std::string& sql) {
  return QueryNow(connection, sql);
}

std::int64_t OdbcTest::Affected(Connection& connection, const std::string& sql) {
  return Run(connection, sql).Operation().RecordsAffected();
}

Value OdbcTest::Single(Connection& connection, const std::string& sql) {
  const Rows rows = AllRows(*Run(connection, sql));
  if (rows.size() != 1 || rows[0].size() != 1) throw std::runtime_error("Not one value: " + sql);
  return rows[0][0];
}

std::shared_ptr<Pending> OdbcTest::StartOpen(const std::shared_ptr<Connection>& connection) {
  auto pending = std::make_shared<Pending>();
  pending->operation = connection->StartOpen({}, {});
  pending->operation->Ended = [told = pending.get()] {
    ++told->ends;
    told->error = told->operation->Failure();
  };
  return pending;
}

std::shared_ptr<Pending> OdbcTest::Start(const std::shared_ptr<Connection>& connection,
                                         const std::string& sql) {
  auto pending = std::make_shared<Pending>();
  const auto query = connection->StartQuery(sql, LockType::ReadOnly);
  pending->operation = query;
  query->Progress = [told = pending.get(), &operation = *query] {
    told->recordset = operation.FirstRows();
    told->fetched = operation.Rows();
  };
  query->Ended = [told = pending.get(), &operation = *query] {
    ++told->ends;
    told->recordset = operation.FirstRows();
    told->affected = operation.RecordsAffected();
    told->error = operation.Failure();
  };
  return pending;
}

bool OdbcTest::Ends(const Pending& pending, std::chrono::milliseconds limit) {
  return queue_.PumpUntil([&] { return pending.ends > 0; }, limit);
}

std::int64_t MillisecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start)
      .count();
}

}  // namespace tessel::test
