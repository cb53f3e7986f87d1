#pragma once

#include <map>
#include <memory>
#include <string>

#include "tests/data/servers/DatabaseServer.h"

namespace tessel::test {

/// The database servers of a test program, each started at its first use and ended with the
/// program. Use it from the program's main thread.
class TestServers {
 public:
  /// The one set of the program. Its first use also makes the process use ODBC definitions of its
  /// own (see UseOwnOdbcFiles), so call it before the first use of ODBC.
  static TestServers& Instance();

  // All throw std::runtime_error with the server's log when one cannot be started.
  DatabaseServer& Postgres();
  DatabaseServer& MariaDb();

  /// PgBouncer before Postgres().
  DatabaseServer& PgBouncer();
  /// pgpool-II before PgPoolPrimary() and its standby server.
  DatabaseServer& PgPool();
  DatabaseServer& PgPoolPrimary();
  /// Two PostgreSQL servers for parts of tables, number 1 and 2.
  DatabaseServer& PostgresPart(int number);
  /// A MariaDB server with the engine Spider, whose parts are MariaDb() and SpiderPart().
  DatabaseServer& Spider();
  DatabaseServer& SpiderPart();

  /// A folder for the test program's own files; deleted at its end.
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_.Path(); }

 private:
  TestServers();

  DatabaseServer& Started(const std::string& name, const RecipeMaker& recipe);

  ServerFolder folder_;
  std::map<std::string, std::unique_ptr<DatabaseServer>> servers_;
};

}  // namespace tessel::test
