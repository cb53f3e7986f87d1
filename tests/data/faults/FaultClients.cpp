#include "tests/data/faults/FaultClients.h"

#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/providers/odbc/OdbcFixture.h"

namespace tessel::test {

namespace {

DatabaseServer& Postgres() { return TestServers::Instance().Postgres(); }
DatabaseServer& MariaDb() { return TestServers::Instance().MariaDb(); }

std::string PostgresSeries(std::int64_t rows) {
  return "select n, 'row ' || n from generate_series(1, " + std::to_string(rows) + ") n";
}

std::string MariaSeries(std::int64_t rows) {
  return "select seq, concat('row ', seq) from seq_1_to_" + std::to_string(rows);
}

}  // namespace

FaultClient PostgresNativeClient() {
  return {.name = "PostgresNative",
          .server = Postgres,
          .stringAt = [](int port) { return PostgresNative().StringAt(port); },
          .series = PostgresSeries,
          .sleep = "select pg_sleep(60)"};
}

FaultClient MariaNativeClient() {
  return {.name = "MariaNative",
          .server = MariaDb,
          .stringAt = [](int port) { return MariaNative().StringAt(port); },
          .series = MariaSeries,
          .sleep = "select sleep(60)"};
}

FaultClient PostgresOdbcClient() {
  return {.name = "PostgresOdbc",
          .server = Postgres,
          .stringAt = PostgresStringAt,
          .series = PostgresSeries,
          .sleep = "select pg_sleep(60)"};
}

FaultClient MariaOdbcClient() {
  return {.name = "MariaOdbc",
          .server = MariaDb,
          .stringAt = MariaDbStringAt,
          .series = MariaSeries,
          .sleep = "select sleep(60)"};
}

}  // namespace tessel::test
