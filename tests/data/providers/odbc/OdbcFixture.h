#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"
#include "data/cursor/DataAccessObjects.h"
#include "tests/data/servers/TestServers.h"
#include "tests/data/support/PumpQueue.h"
#include "tests/support/DataSteps.h"

namespace tessel::test {

/// Connection strings of the test servers, through their ODBC drivers.
[[nodiscard]] std::string PostgresString();
[[nodiscard]] std::string MariaDbString();
/// Leads to a port of the loopback interface with the driver of PostgreSQL or MariaDB.
[[nodiscard]] std::string PostgresStringAt(int port);
[[nodiscard]] std::string MariaDbStringAt(int port);
/// A SQLite file of this name, made when it is opened; deleted at the end of the program.
[[nodiscard]] std::string SqliteString(const std::string& name);

using Row = std::vector<Value>;
using Rows = std::vector<Row>;

/// All rows of an open recordset.
[[nodiscard]] Rows AllRows(const Recordset& recordset);
/// The rows with every value as its text; null as "(null)".
[[nodiscard]] std::vector<std::vector<std::string>> AllText(const Recordset& recordset);

/// An operation that runs while the test pumps the event queue.
struct Pending {
  std::shared_ptr<Operation> operation;
  std::shared_ptr<Recordset> recordset;  ///< Null while there is none.
  int ends = 0;                          ///< Completions told.
  std::optional<ErrorInfo> error;
  std::int64_t affected = -2;
  std::int64_t fetched = 0;  ///< Rows told so far.
};

/// Connections through ODBC, with an event queue that the test pumps.
class OdbcTest : public ::testing::Test {
 protected:
  OdbcTest();

  [[nodiscard]] std::shared_ptr<Connection> NewConnection(const std::string& connectionString);
  /// Opens and waits; throws Error.
  std::shared_ptr<Connection> Connect(const std::string& connectionString,
                                      const std::string& user = {},
                                      const std::string& password = {});
  /// The error of opening; none when it opens.
  std::optional<ErrorInfo> FailureOf(const std::string& connectionString);

  /// Runs and waits; throws Error. The recordset is closed when there are no columns.
  StartedQuery Run(Connection& connection, const std::string& sql);
  /// The count that was announced.
  std::int64_t Affected(Connection& connection, const std::string& sql);
  /// The one value of a query.
  Value Single(Connection& connection, const std::string& sql);

  /// Starts without waiting.
  std::shared_ptr<Pending> StartOpen(const std::shared_ptr<Connection>& connection);
  std::shared_ptr<Pending> Start(const std::shared_ptr<Connection>& connection,
                                 const std::string& sql);
  bool Ends(const Pending& pending, std::chrono::milliseconds limit = std::chrono::seconds(30));

  PumpQueue queue_;

 private:
  std::unique_ptr<DataAccess> data_;
};

/// Milliseconds since `start`.
[[nodiscard]] std::int64_t MillisecondsSince(std::chrono::steady_clock::time_point start);

}  // namespace tessel::test
