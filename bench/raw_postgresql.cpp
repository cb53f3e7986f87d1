#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include "bench/OrdersSql.h"
#include "bench/ServerOrders.h"
#include "platform/data/postgresql/PostgresKeys.h"

namespace tessel::bench {

namespace {

const ServerOrders& Orders() {
  static const ServerOrders orders("TESSEL_BENCH_POSTGRESQL", PostgresOrders(ServerOrders::rows));
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
