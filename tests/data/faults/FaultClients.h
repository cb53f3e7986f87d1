#pragma once

#include <ostream>
#include <string>

#include "tests/data/servers/TestServers.h"

namespace tessel::test {

/// One way from the program to one test server.
struct FaultClient {
  std::string name;
  DatabaseServer& (*server)();
  std::string (*stringAt)(int port);  ///< A connection string to a port of the loopback interface.
  /// A query of `rows` rows: n (a whole number from 1 on) and "row " and the number.
  std::string (*series)(std::int64_t rows);
  std::string sleep;  ///< A statement of a minute.
};

inline void PrintTo(const FaultClient& client, std::ostream* out) { *out << client.name; }

[[nodiscard]] FaultClient PostgresNativeClient();
[[nodiscard]] FaultClient MariaNativeClient();
[[nodiscard]] FaultClient PostgresOdbcClient();
[[nodiscard]] FaultClient MariaOdbcClient();

}  // namespace tessel::test
