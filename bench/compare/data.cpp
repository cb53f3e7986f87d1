// One measurement of the data layer in a process of its own.

#include <algorithm>
#include <stdexcept>

#include "bench/OrdersFile.h"
#include "bench/OrdersSql.h"
#include "bench/compare/Cases.h"
#include "bench/compare/Say.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "tests/data/support/EventLog.h"
#include "tests/data/support/PumpQueue.h"
#include "tests/support/DataSteps.h"

namespace tessel::bench {

namespace {

constexpr std::chrono::minutes limit{10};

/// The data layer, its notices delivered on this thread as the program does it.
struct Platform {
  explicit Platform(RowMemory memory = RowMemory::OfMachine()) : data(queue, nullptr, memory) {}

  test::PumpQueue queue;
  DataAccessObjects data;

  std::shared_ptr<Connection> Connect(const std::string& connectionString) {
    auto connection = data.CreateConnection();
    connection->SetConnectionString(connectionString);
    test::OpenNow(*connection);
    return connection;
  }
  static test::StartedQuery Start(Connection& connection, const std::string& sql,
                                  test::EventLog& log) {
    test::StartedQuery query(connection.StartQuery(sql, LockType::ReadOnly));
    log.Watch(query.Operation());
    return query;
  }
  void WaitForEnd(const test::EventLog& log) {
    if (!queue.PumpUntil([&] { return log.Ends() > 0; }, limit))
      throw std::runtime_error("It does not come to an end.");
  }
};

void Run(Connection& connection, const std::string& sql) { test::QueryNow(connection, sql); }

/// From the start of the command until its end is announced.
void FetchWithin(RowMemory memory, Arguments arguments) {
  Platform platform(std::move(memory));
  const auto connection = platform.Connect(arguments[0]);
  test::EventLog log;
  const Stopwatch watch;
  const auto recordset = Platform::Start(*connection, arguments[1], log);
  platform.WaitForEnd(log);
  Say("seconds", watch.Seconds());
  if (log.LastError()) throw std::runtime_error(log.LastError()->description);
  Say("held", static_cast<const ClientRecordset&>(*recordset).HeldBytes());
  Say("rows", recordset->RecordCount());
  Say("peak", PeakBytes());
  Say("present", PresentBytes());
}

/// <connection string> <query>
void Fetch(Arguments arguments) { FetchWithin(RowMemory::OfMachine(), arguments); }

/// <connection string> <query> <megabytes that the rows may take>
void FetchLarge(Arguments arguments) {
  constexpr std::size_t megabyte = 1'000'000;
  RowMemory memory = RowMemory::OfMachine();
  memory.bytes = std::stoull(arguments[2]) * megabyte;
  FetchWithin(std::move(memory), arguments);
}

using Results = std::vector<test::StartedQuery>;

struct Stall {
  double longest = 0;
  double work = 0;
};

/// Delivers notices until the end, and in between looks at the rows that were fetched before, all
/// over them. Adds the longest time in which this thread did nothing else, and the most that it
/// worked itself in such a time.
void LookUntilEnd(Platform& platform, const Results& results, const test::EventLog& log,
                  Stall& stall) {
  constexpr std::int64_t step = 7919;
  std::int64_t row = 0;
  while (log.Ends() == 0) {
    const Stopwatch watch;
    const double worked = ThreadSeconds();
    platform.queue.Pump();
    for (const test::StartedQuery& result : results)
      if (const std::int64_t count = result.Rows() ? result->RecordCount() : 0; count > 0)
        (void)result->ValueAt(row % count, 0);
    row += step;
    stall.longest = std::max(stall.longest, watch.Seconds());
    stall.work = std::max(stall.work, ThreadSeconds() - worked);
  }
  if (log.LastError()) throw std::runtime_error(log.LastError()->description);
}

/// Looks at every row of all results; gives the sum of their first fields.
std::int64_t SumOf(const Results& results) {
  std::int64_t sum = 0;
  for (const test::StartedQuery& result : results)
    for (std::int64_t row = 0; row < result->RecordCount(); ++row)
      sum += std::get<std::int64_t>(result->ValueAt(row, 0));
  return sum;
}

/// <connection string> <query> <megabytes that the rows may take> <results>: so many results of the
/// query, each on a connection of its own and kept.
void FetchTogether(Arguments arguments) {
  constexpr std::size_t megabyte = 1'000'000;
  Platform platform({std::stoull(arguments[2]) * megabyte, SpillFolder()});
  std::vector<std::shared_ptr<Connection>> connections;
  Results results;
  Stall stall;
  const Stopwatch watch;
  for (int i = 0; i < std::stoi(arguments[3]); ++i) {
    connections.push_back(platform.Connect(arguments[0]));
    test::EventLog log;
    results.push_back(Platform::Start(*connections.back(), arguments[1], log));
    LookUntilEnd(platform, results, log, stall);
  }
  Say("seconds", watch.Seconds());
  Say("longest", stall.longest);
  Say("work", stall.work);
  Say("present", PresentBytes());
  std::size_t held = 0;
  for (const test::StartedQuery& result : results)
    held += static_cast<const ClientRecordset&>(*result).HeldBytes();
  Say("held", held);
  Say("sum", SumOf(results));
  Say("looked", PresentBytes());
  Say("peak", PeakBytes());
  const Stopwatch closing;
  results.clear();
  Say("close", closing.Seconds());
  Say("closed", PresentBytes());
}

/// <connection string> <query> execute|fetch: from a cancel until its end is announced.
void Cancel(Arguments arguments) {
  constexpr std::chrono::milliseconds executing{400};
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  test::EventLog log;
  const auto recordset = Platform::Start(*connection, arguments[1], log);
  if (arguments[2] == "execute") {
    (void)platform.queue.PumpUntil([] { return false; }, executing);
    if (log.Ends() > 0) throw std::runtime_error("It had ended before the cancel.");
  } else if (!platform.queue.PumpUntil([&] { return log.ProgressCount() > 0; }, limit)) {
    throw std::runtime_error("No row came.");
  }
  const Stopwatch watch;
  recordset.Cancel();
  platform.WaitForEnd(log);
  Say("seconds", watch.Seconds());
  const bool cancelled = log.LastError() && log.LastError()->number == errorNumber::cancelled;
  Say("cancelled", cancelled ? 1 : 0);
  Say("open", connection->State() == objectState::open ? 1 : 0);
}

/// <connection string>: all tables and columns.
void Catalog(Arguments arguments) {
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  const Stopwatch watch;
  const auto tables = test::ReadSchema(*connection, SchemaRowset::Tables, {});
  const auto columns = test::ReadSchema(*connection, SchemaRowset::Columns, {});
  Say("seconds", watch.Seconds());
  Say("rows", tables->RecordCount() + columns->RecordCount());
}

// --- setting up ----------------------------------------------------------------------------------

/// <rows>: tells where the file with so many orders is.
void MakeFile(Arguments arguments) { Say("file", OrdersFile(std::stoll(arguments[0]))); }

/// <connection string> <rows>: the table `orders` on a server.
void MakePostgres(Arguments arguments) {
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  Run(*connection, PostgresOrders(std::stoll(arguments[1])));
  Run(*connection, "vacuum analyze orders");
}

void MakeMaria(Arguments arguments) {
  Platform platform;
  Run(*platform.Connect(arguments[0]), MariaOrders(std::stoll(arguments[1])));
}

/// <connection string> <tables>: so many tables of 20 columns, in a schema of their own.
void MakeCatalog(Arguments arguments) {
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  Run(*connection, "create schema many");
  const int tables = std::stoi(arguments[1]);
  constexpr int batch = 100;  // A transaction holds a lock for every table.
  for (int first = 0; first < tables; first += batch)
    Run(*connection,
        "do $$ begin for t in " + std::to_string(first) + ".." +
            std::to_string(std::min(first + batch, tables) - 1) +
            " loop execute 'create table many.table_' || t || ' (id integer not null, ' || "
            "(select string_agg('column_' || c || case c % 3 when 0 then ' text' when 1 then "
            "' numeric(10,2)' else ' timestamp' end, ', ') from generate_series(2, 20) c) || ')';"
            " end loop; end $$");
  Run(*connection, "vacuum analyze");
}

}  // namespace

}  // namespace tessel::bench

int main(int argc, char* argv[]) {
  using namespace tessel::bench;
  return RunCase({{"fetch", {2, Fetch}},
                  {"fetch-large", {3, FetchLarge}},
                  {"fetch-together", {4, FetchTogether}},
                  {"cancel", {3, Cancel}},
                  {"catalog", {1, Catalog}},
                  {"make-file", {1, MakeFile}},
                  {"make-postgresql", {2, MakePostgres}},
                  {"make-mariadb", {2, MakeMaria}},
                  {"make-catalog", {2, MakeCatalog}}},
                 argc, argv);
}
