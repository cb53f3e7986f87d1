#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <mysql.h>

#include "bench/OrdersSql.h"
#include "bench/ServerOrders.h"
#include "platform/data/mariadb/MariaKeys.h"

namespace tessel::bench {

namespace {

const ServerOrders& Orders() {
  static const ServerOrders orders("TESSEL_BENCH_MARIADB", MariaOrders(ServerOrders::rows));
  return orders;
}

using Session = std::unique_ptr<MYSQL, decltype(&mysql_close)>;

Session Connect() {
  const MariaLogin login =
      MariaTarget::FromKeys(ConnectionKeys::Parse(Orders().ConnectionString())).login;
  Session session(mysql_init(nullptr), mysql_close);
  mysql_options(session.get(), MYSQL_SET_CHARSET_NAME, "utf8mb4");
  if (mysql_real_connect(session.get(), login.host.c_str(), login.user.c_str(),
                         login.password.c_str(), login.database.c_str(), login.port, nullptr,
                         0) == nullptr)
    throw std::runtime_error(mysql_error(session.get()));
  return session;
}

/// Looks at every cell of a row: its length and its first byte.
std::size_t LookAt(MYSQL_ROW row, const unsigned long* lengths, unsigned columns) {
  std::size_t sum = 0;
  for (unsigned column = 0; column < columns; ++column)
    if (row[column] != nullptr) sum += lengths[column] + static_cast<std::size_t>(row[column][0]);
  return sum;
}

/// The loop that the manual of the library shows, keeping nothing.
std::size_t ReadRaw(MYSQL* session) {
  std::size_t sum = 0;
  if (mysql_query(session, serverOrdersQuery) != 0) throw std::runtime_error(mysql_error(session));
  MYSQL_RES* result = mysql_use_result(session);
  const unsigned columns = mysql_num_fields(result);
  while (MYSQL_ROW row = mysql_fetch_row(result))
    sum += LookAt(row, mysql_fetch_lengths(result), columns);
  mysql_free_result(result);
  return sum;
}

void MariadbRaw(benchmark::State& state) {
  if (!Orders().IsThere(state)) return;
  Orders().Prepare();
  const Session session = Connect();
  for (auto _ : state) benchmark::DoNotOptimize(ReadRaw(session.get()));
}
BENCHMARK(MariadbRaw)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

void MariadbToLastRow(benchmark::State& state) { Orders().ReadAll(state); }
BENCHMARK(MariadbToLastRow)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

}  // namespace

}  // namespace tessel::bench
