#include "bench/Orders.h"

#include "bench/OrdersFile.h"
#include "tests/support/DataSteps.h"

namespace tessel::bench {

std::shared_ptr<Recordset> ReadOrders(Connection& connection) {
  return test::QueryNow(connection, ordersQuery);
}

std::shared_ptr<Connection> OpenOrders(DataAccess& data, std::int64_t rows) {
  auto connection = data.CreateConnection();
  connection->SetConnectionString("Provider=SQLite;Data Source=" + OrdersFile(rows));
  test::OpenNow(*connection);
  return connection;
}

}  // namespace tessel::bench
