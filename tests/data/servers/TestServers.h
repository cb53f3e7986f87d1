#pragma once

#include <memory>

#include "tests/data/servers/DatabaseServer.h"

namespace tessel::test {

/// The database servers of a test program, each started at its first use and ended with the
/// program. Use it from the program's main thread.
class TestServers {
 public:
  /// The one set of the program. Its first use also makes the process use ODBC definitions of its
  /// own (see UseOwnOdbcFiles), so call it before the first use of ODBC.
  static TestServers& Instance();

  /// Throw std::runtime_error with the server's log when it cannot be started.
  DatabaseServer& Postgres();
  DatabaseServer& MariaDb();

  /// A folder for the test program's own files; deleted at its end.
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_.Path(); }

 private:
  TestServers();

  ServerFolder folder_;
  std::unique_ptr<DatabaseServer> postgres_;
  std::unique_ptr<DatabaseServer> mariaDb_;
};

}  // namespace tessel::test
