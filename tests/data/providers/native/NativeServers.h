#pragma once

#include <ostream>
#include <string>

#include "tests/data/servers/TestServers.h"

namespace tessel::test {

/// A test server as its native provider reaches it, and how things are said there.
struct NativeServer {
  std::string name;
  DatabaseServer& (*server)();
  std::string sleep;    ///< A statement of a minute.
  std::string nap;      ///< A query of one row that takes 20 milliseconds.
  std::string endless;  ///< A query of a thousand million rows.

  /// Leads to the database "shop" of the server.
  [[nodiscard]] std::string ConnectionString() const { return StringAt(server().Login().port); }
  /// The same, at another port of the loopback interface.
  [[nodiscard]] std::string StringAt(int port, const std::string& database = "shop") const;
};

[[nodiscard]] NativeServer PostgresNative();
[[nodiscard]] NativeServer MariaNative();

inline void PrintTo(const NativeServer& server, std::ostream* out) { *out << server.name; }

}  // namespace tessel::test
