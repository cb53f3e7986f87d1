#include "tests/data/providers/odbc/OdbcFixture.h"

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
  data_ = std::make_unique<DataAccessObjects>(queue_);
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
  connection->Open(user, password, 0);
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

std::shared_ptr<Recordset> OdbcTest::Run(Connection& connection, const std::string& sql) {
  auto recordset = connection.CreateRecordset();
  recordset->SetSource(sql);
  recordset->Open(openOption::text);
  return recordset;
}

std::int64_t OdbcTest::Affected(Connection& connection, const std::string& sql) {
  std::int64_t affected = -2;
  connection.ExecuteComplete = [&](std::int64_t count, const ErrorInfo*, EventStatus, Recordset*) {
    affected = count;
  };
  Run(connection, sql);
  connection.ExecuteComplete = nullptr;
  return affected;
}

Value OdbcTest::Single(Connection& connection, const std::string& sql) {
  const Rows rows = AllRows(*Run(connection, sql));
  if (rows.size() != 1 || rows[0].size() != 1) throw std::runtime_error("Not one value: " + sql);
  return rows[0][0];
}

std::shared_ptr<Pending> OdbcTest::StartOpen(const std::shared_ptr<Connection>& connection) {
  auto pending = std::make_shared<Pending>();
  connection->ConnectComplete = [pending](const ErrorInfo* error, EventStatus) {
    ++pending->ends;
    if (error != nullptr) pending->error = *error;
  };
  connection->Open({}, {}, asyncConnect);
  return pending;
}

std::shared_ptr<Pending> OdbcTest::Start(const std::shared_ptr<Connection>& connection,
                                         const std::string& sql) {
  auto pending = std::make_shared<Pending>();
  auto recordset = connection->CreateRecordset();
  connection->ExecuteComplete = [pending](std::int64_t affected, const ErrorInfo* error,
                                          EventStatus, Recordset* opened) {
    pending->affected = affected;
    if (error != nullptr) pending->error = *error;
    const bool rowsFollow = opened != nullptr && (opened->State() & objectState::open) != 0;
    if (error != nullptr || !rowsFollow) ++pending->ends;
  };
  // The recordset is the operation's own: owning it in turn, they would never go.
  const std::weak_ptr<Pending> weak = pending;
  recordset->FetchProgress = [weak](std::int64_t rows, std::int64_t, EventStatus) {
    if (const auto told = weak.lock()) told->fetched = rows;
  };
  recordset->FetchComplete = [weak](const ErrorInfo* error, EventStatus) {
    const auto told = weak.lock();
    if (told == nullptr) return;
    if (error != nullptr) told->error = *error;
    ++told->ends;
  };
  pending->recordset = recordset;
  recordset->SetSource(sql);
  recordset->Open(openOption::text | openOption::asyncExecute | openOption::asyncFetch);
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
