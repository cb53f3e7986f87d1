#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/base/EventQueue.h"
#include "contract/data/Connection.h"
#include "tests/support/FakeConnection.h"
#include "tests/support/MemoryServer.h"

namespace tessel::test {

/// Databases in memory. It is itself the server of every connection string that has none of its
/// own; it and `queue` outlive the connections.
class MemoryData final : public DataAccess, public MemoryServer {
 public:
  explicit MemoryData(EventQueue& queue) : queue_(queue) {}

  [[nodiscard]] std::shared_ptr<Connection> CreateConnection() override;
  [[nodiscard]] std::vector<std::string> ProviderNames() const override { return providerNames; }
  [[nodiscard]] std::vector<std::string> OdbcDrivers() const override { return odbcDrivers; }
  [[nodiscard]] std::vector<std::string> OdbcDataSources() const override {
    return odbcDataSources;
  }

  std::vector<std::string> providerNames = {"MSDASQL", "SQLite"};
  std::vector<std::string> odbcDrivers;
  std::vector<std::string> odbcDataSources;

  /// The server of one connection string, made at the first call.
  [[nodiscard]] MemoryServer& ServerOf(const std::string& connectionString);
  [[nodiscard]] const MemoryLog& Log() const { return *log_; }
  /// The texts executed so far, on whatever connection.
  [[nodiscard]] std::vector<std::string> ExecutedSql() const;
  /// The connections that are alive, the oldest first.
  [[nodiscard]] std::vector<std::shared_ptr<FakeConnection>> Connections() const;
  /// Lets the one held operation go on; fails the test when none or several are held.
  void Resume();

 private:
  EventQueue& queue_;
  std::shared_ptr<MemoryLog> log_ = std::make_shared<MemoryLog>();
  std::map<std::string, MemoryServer> servers_;
  std::vector<std::weak_ptr<FakeConnection>> connections_;
};

}  // namespace tessel::test
