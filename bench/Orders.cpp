#include "bench/Orders.h"

#include "bench/OrdersFile.h"

namespace tessel::bench {

std::shared_ptr<Recordset> ReadOrders(Connection& connection) {
  auto recordset = connection.CreateRecordset();
  recordset->SetSource(ordersQuery);
  recordset->Open(openOption::text);
  return recordset;
}

std::shared_ptr<Connection> OpenOrders(DataAccess& data, std::int64_t rows) {
  auto connection = data.CreateConnection();
  connection->SetConnectionString("Provider=SQLite;Data Source=" + OrdersFile(rows));
  connection->Open({}, {}, 0);
  return connection;
}

}  // namespace tessel::bench
