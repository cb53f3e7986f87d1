#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/EventQueue.h"
#include "contract/data/Connection.h"
#include "data/cursor/CombinedAccess.h"
#include "data/providers/memory/MemoryServer.h"
#include "data/providers/memory/MemorySession.h"
#include "tests/support/QueueHost.h"

namespace tessel::test {

/// The databases of a test: the program's own connections and recordsets, over servers in memory,
/// whose work is done on the test's event queue. It is itself the server of every connection string
/// that has none of its own; it and `queue` outlive the connections.
class MemoryData final : public CombinedAccess, public MemoryServer {
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

  std::optional<ErrorInfo> closeFailure;  ///< Closing a connection raises it.
  /// When transactions are first seen: at 14:05.
  std::chrono::system_clock::time_point transactionTime{std::chrono::minutes(14 * 60 + 5)};

  /// The server of one connection string, made at the first call.
  [[nodiscard]] MemoryServer& ServerOf(const std::string& connectionString);
  [[nodiscard]] const MemoryLog& Log() const { return *log_; }
  /// The texts executed so far, on whatever connection.
  [[nodiscard]] std::vector<std::string> ExecutedSql() const;
  /// The connections that are alive, the oldest first.
  [[nodiscard]] std::vector<std::shared_ptr<Connection>> Connections() const;
  /// Lets the one step that is held back come; fails the test when there is none or several.
  void Resume();
  /// Lets all steps come that are held back.
  void ResumeAll();
  /// The servers of all sessions go away without a sign.
  void LoseSessions();

 private:
  [[nodiscard]] MemoryRoute RouteOf(const std::string& connectionString);
  [[nodiscard]] std::shared_ptr<SessionHost> StartHost(std::unique_ptr<ProviderSession> session);
  [[nodiscard]] std::vector<std::shared_ptr<QueueHost>> Hosts() const;

  EventQueue& queue_;
  std::shared_ptr<MemoryLog> log_ = std::make_shared<MemoryLog>();
  std::map<std::string, MemoryServer> servers_;
  std::vector<std::weak_ptr<Connection>> connections_;
  std::vector<std::weak_ptr<QueueHost>> hosts_;
};

}  // namespace tessel::test
