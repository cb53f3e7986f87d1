#include "bench/ServerOrders.h"

#include <cstdlib>
#include <utility>

#include "platform/EventQueue.h"
#include "platform/data/ClientRecordset.h"

namespace tessel::bench {

namespace {

/// Nothing here is asynchronous.
class NoQueue : public EventQueue {
 public:
  void Post(std::weak_ptr<const void> /*owner*/, std::function<void()> /*notice*/) override {}
};

std::shared_ptr<Connection> Connect(DataAccess& data, const std::string& connectionString) {
  auto connection = data.CreateConnection();
  connection->SetConnectionString(connectionString);
  connection->Open({}, {}, 0);
  return connection;
}

std::shared_ptr<Recordset> Run(Connection& connection, const std::string& sql) {
  auto recordset = connection.CreateRecordset();
  recordset->SetSource(sql);
  recordset->Open(openOption::text);
  return recordset;
}

}  // namespace

ServerOrders::ServerOrders(const char* variable, std::string create)
    : variable_(variable), create_(std::move(create)) {
  if (const char* given = std::getenv(variable)) connectionString_ = given;
}

bool ServerOrders::IsThere(benchmark::State& state) const {
  const std::string text = std::string(variable_) + " is not set";
  if (connectionString_.empty()) state.SkipWithError(text.c_str());
  return !connectionString_.empty();
}

void ServerOrders::Prepare() const {
  NoQueue queue;
  DataAccessObjects data(queue);
  const auto connection = Connect(data, connectionString_);
  const auto tables = connection->OpenSchema(SchemaRowset::Tables, {"", "", "orders"});
  if (tables->RecordCount() == 0) Run(*connection, create_);
}

void ServerOrders::ReadAll(benchmark::State& state) const {
  constexpr double megabyte = 1e6;
  if (!IsThere(state)) return;
  Prepare();
  NoQueue queue;
  DataAccessObjects data(queue);
  const auto connection = Connect(data, connectionString_);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const auto recordset = Run(*connection, serverOrdersQuery);
    bytes = static_cast<const ClientRecordset&>(*recordset).HeldBytes();
    if (recordset->RecordCount() != rows) state.SkipWithError("rows are missing");
  }
  state.counters["MB"] = static_cast<double>(bytes) / megabyte;
}

}  // namespace tessel::bench
