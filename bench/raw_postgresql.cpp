#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include "bench/ServerOrders.h"
#include "platform/data/postgresql/PostgresKeys.h"

namespace tessel::bench {

namespace {

constexpr const char* createOrders =
    "create table orders as select n::int as id, 'Customer ' || (n * 7919 % 20000) as customer,"
    " (array['Aachen', 'Z\u00fcrich', 'S\u00e3o Paulo', 'New York', 'Reykjav\u00edk'])[n % 5 + 1] "
    "as"
    " city, (n * 104729 % 1000003) / 100e0::float8 as amount, (n * 31 % 97)::int as quantity,"
    " timestamp '2020-09-13 12:26:40' + n * interval '61 seconds' as placed,"
    " case when n % 10 <> 3 then substr('Please leave the parcel beside the door, \u6f22\u5b57 or "
    "ring twice', 1, (n * 13 % 61)::int) end as note, n % 2 = 1 as paid,"
    " upper(lpad(to_hex(n * 2654435761 % 4294967296), 8, '0')) as code,"
    " (n % 9 + 1 + (n * 17 % 10000) / 10000.0)::numeric(10,4) as rate"
    " from generate_series(1::bigint, 1000000) n";

const ServerOrders& Orders() {
  static const ServerOrders orders("TESSEL_BENCH_POSTGRESQL", createOrders);
  return orders;
}

using Session = std::unique_ptr<PGconn, decltype(&PQfinish)>;

Session Connect() {
  const auto target = PostgresTarget::FromKeys(ConnectionKeys::Parse(Orders().ConnectionString()));
  std::vector<const char*> names;
  std::vector<const char*> values;
  for (const PqKeyword& keyword : target.keywords) {
    names.push_back(keyword.name.c_str());
    values.push_back(keyword.value.c_str());
  }
  names.push_back(nullptr);
  values.push_back(nullptr);
  Session session(PQconnectdbParams(names.data(), values.data(), 0), PQfinish);
  if (PQstatus(session.get()) != CONNECTION_OK)
    throw std::runtime_error(PQerrorMessage(session.get()));
  return session;
}

/// Looks at every cell of a row: its length and its first byte.
std::size_t LookAt(const PGresult* row, int columns) {
  std::size_t sum = 0;
  for (int column = 0; column < columns; ++column)
    if (PQgetisnull(row, 0, column) == 0)
      sum += static_cast<std::size_t>(PQgetlength(row, 0, column) + PQgetvalue(row, 0, column)[0]);
  return sum;
}

/// The loop that the manual of libpq shows, keeping nothing.
std::size_t ReadRaw(PGconn* session) {
  std::size_t sum = 0;
  PQsendQuery(session, serverOrdersQuery);
  PQsetSingleRowMode(session);
  while (PGresult* row = PQgetResult(session)) {
    if (PQresultStatus(row) == PGRES_SINGLE_TUPLE) sum += LookAt(row, PQnfields(row));
    PQclear(row);
  }
  return sum;
}

void PostgresqlRaw(benchmark::State& state) {
  if (!Orders().IsThere(state)) return;
  Orders().Prepare();
  const Session session = Connect();
  for (auto _ : state) benchmark::DoNotOptimize(ReadRaw(session.get()));
}
BENCHMARK(PostgresqlRaw)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

void PostgresqlToLastRow(benchmark::State& state) { Orders().ReadAll(state); }
BENCHMARK(PostgresqlToLastRow)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

}  // namespace

}  // namespace tessel::bench
