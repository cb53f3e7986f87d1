#include "data/cursor/DataAccessObjects.h"

#include "data/providers/mariadb/MariaSession.h"
#include "data/providers/odbc/OdbcProvider.h"
#include "data/providers/postgresql/PostgresSession.h"
#include "data/providers/sqlite/SqliteSession.h"
#include "data/tasks/ThreadHost.h"

namespace tessel {

namespace {

/// A provider of one name, whose sessions need nothing but the keys of a connection string.
template <class Session>
class NamedProvider final : public Provider {
 public:
  explicit NamedProvider(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] std::vector<std::string> Names() const override { return {name_}; }
  [[nodiscard]] std::unique_ptr<ProviderSession>
  CreateSession(const ConnectionKeys& keys) const override {
    return std::make_unique<Session>(keys);
  }

 private:
  std::string name_;
};

std::shared_ptr<const ProviderRegistry> AllProviders() {
  auto registry = std::make_shared<ProviderRegistry>();
  registry->Add(std::make_unique<NamedProvider<SqliteSession>>("SQLite"));
  registry->Add(std::make_unique<NamedProvider<PostgresSession>>("PostgreSQL"));
  registry->Add(std::make_unique<NamedProvider<MariaSession>>("MariaDB"));
  registry->Add(std::make_unique<OdbcProvider>(), true);
  return registry;
}

}  // namespace

DataAccessObjects::DataAccessObjects(EventQueue& queue, FailureSink* failures, RowMemory memory,
                                     int patienceFactor)
    : services_{queue, failures, AllProviders(), ThreadHost::Starter(leftBehind_, patienceFactor),
                std::make_shared<RowBudget>(std::move(memory))} {}

std::shared_ptr<Connection> DataAccessObjects::CreateConnection() {
  return std::make_shared<DataConnection>(services_);
}

std::vector<std::string> DataAccessObjects::ProviderNames() const {
  return services_.providers->Names();
}

std::vector<std::string> DataAccessObjects::OdbcDrivers() const { return tessel::OdbcDrivers(); }

std::vector<std::string> DataAccessObjects::OdbcDataSources() const {
  return tessel::OdbcDataSources();
}

bool DataAccessObjects::HasAbandonedWork() const { return leftBehind_->Any(); }

}  // namespace tessel
