#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/support/DataTest.h"

namespace tessel::test {

/// A connection to a test server through its native provider.
class NativeTest : public DataTest {
 protected:
  explicit NativeTest(NativeServer server) : server_(std::move(server)) {}

  void SetUp() override { connection_ = Connect(); }

  [[nodiscard]] std::shared_ptr<Connection> Connect() {
    return ConnectTo(server_.ConnectionString());
  }
  StartedQuery Run(const std::string& sql) { return DataTest::Run(*connection_, sql); }
  Value Cell(const std::string& sql) { return DataTest::Cell(*connection_, sql); }
  ErrorInfo FailureOf(const std::string& sql) {
    return ErrorOf([&] { Run(sql); });
  }
  bool IsUnique(const std::string& sql) {
    return Run(sql)->RecordsetProperties().At("Unique Rows") == Value(true);
  }
  /// The count that was announced.
  std::int64_t Affected(const std::string& sql);
  /// What was listed of the last operation.
  [[nodiscard]] std::vector<std::string> Reports() const;
  void PumpFor(std::chrono::milliseconds time) {
    (void)queue_.PumpUntil([] { return false; }, time);
  }

  const NativeServer server_;
  std::shared_ptr<Connection> connection_;
};

class PostgresTest : public NativeTest {
 protected:
  PostgresTest() : NativeTest(PostgresNative()) {}
};

class MariaTest : public NativeTest {
 protected:
  MariaTest() : NativeTest(MariaNative()) {}
};

}  // namespace tessel::test
