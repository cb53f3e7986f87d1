#include "tests/data/providers/native/NativeServers.h"

namespace tessel::test {

std::string NativeServer::StringAt(int port, const std::string& database) const {
  const ServerLogin login;
  return "Provider=" + name + ";Server=" + login.host + ";Port=" + std::to_string(port) +
         ";Database=" + database + ";User ID=" + login.user + ";Password=" + login.password;
}

NativeServer PostgresNative() {
  return {.name = "PostgreSQL",
          .server = []() -> DatabaseServer& { return TestServers::Instance().Postgres(); },
          .sleep = "select pg_sleep(60)",
          .nap = "select 'x' || pg_sleep(0.02)::text",
          .endless = "select generate_series(1, 1000000000), repeat('x', 20)"};
}

NativeServer MariaNative() {
  return {.name = "MariaDB",
          .server = []() -> DatabaseServer& { return TestServers::Instance().MariaDb(); },
          .sleep = "select sleep(60)",
          .nap = "select concat('x', sleep(0.02))",
          .endless = "select seq, repeat('x', 20) from seq_1_to_1000000000"};
}

}  // namespace tessel::test
