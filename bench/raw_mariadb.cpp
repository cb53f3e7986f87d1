#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <mysql.h>

#include "bench/ServerOrders.h"
#include "platform/data/mariadb/MariaKeys.h"

namespace tessel::bench {

namespace {

constexpr const char* createOrders =
    "create table orders as select cast(seq as int) as id,"
    " concat('Customer ', seq * 7919 % 20000) as customer,"
    " elt(seq % 5 + 1, 'Aachen', 'Z\u00fcrich', 'S\u00e3o Paulo', 'New York', 'Reykjav\u00edk') as"
    " city, (seq * 104729 % 1000003) / 100e0 as amount, cast(seq * 31 % 97 as int) as quantity,"
    " timestamp'2020-09-13 12:26:40' + interval seq * 61 second as placed,"
    " if(seq % 10 <> 3, substr('Please leave the parcel beside the door, \u6f22\u5b57 or ring "
    "twice', 1, seq * 13 % 61), null) as note, seq % 2 = 1 as paid,"
    " lpad(hex(seq * 2654435761 % 4294967296), 8, '0') as code,"
    " cast(seq % 9 + 1 + (seq * 17 % 10000) / 10000 as decimal(10,4)) as rate"
    " from seq_1_to_1000000";

const ServerOrders& Orders() {
  static const ServerOrders orders("TESSEL_BENCH_MARIADB", createOrders);
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
