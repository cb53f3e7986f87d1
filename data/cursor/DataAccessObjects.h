#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/cursor/CombinedAccess.h"
#include "data/cursor/DataConnection.h"
#include "data/tasks/LeftBehind.h"

namespace tessel {

/// Every database this program can speak to: SQLite, PostgreSQL and MariaDB by their own libraries,
/// all others through ODBC. UI thread.
class DataAccessObjects : public CombinedAccess {
 public:
  /// `queue` carries the notices; `failures` gets what event handlers throw (null: it passes
  /// through, out of the notice). Both outlive this and all connections.
  /// `memory` is what the rows of all results may take together. A driver that was cancelled gets
  /// `patienceFactor` times its session's patience: more than 1 in a build that is slow.
  explicit DataAccessObjects(EventQueue& queue, FailureSink* failures = nullptr,
                             RowMemory memory = RowMemory::OfMachine(), int patienceFactor = 1);

  [[nodiscard]] std::shared_ptr<Connection> CreateConnection() override;
  [[nodiscard]] std::vector<std::string> ProviderNames() const override;
  [[nodiscard]] std::vector<std::string> OdbcDrivers() const override;
  [[nodiscard]] std::vector<std::string> OdbcDataSources() const override;

  /// Whether threads still hang in a driver that did not react to a cancel. They own all they use;
  /// but they may wake up at any time, so a program that ends while this holds must leave by
  /// _exit: without running destructors of static objects.
  [[nodiscard]] bool HasAbandonedWork() const;

 private:
  std::shared_ptr<LeftBehind> leftBehind_ = std::make_shared<LeftBehind>();
  ConnectionServices services_;
};

}  // namespace tessel
