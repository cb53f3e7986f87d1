#include "data/cursor/DataAccessObjects.h"

#include "data/providers/mariadb/MariaProvider.h"
#include "data/providers/odbc/OdbcProvider.h"
#include "data/providers/postgresql/PostgresProvider.h"
#include "data/providers/sqlite/SqliteProvider.h"
#include "data/work/ThreadHost.h"

namespace tessel {

namespace {

std::shared_ptr<const ProviderRegistry> AllProviders() {
  auto registry = std::make_shared<ProviderRegistry>();
  registry->Add(std::make_unique<SqliteProvider>());
  registry->Add(std::make_unique<PostgresProvider>());
  registry->Add(std::make_unique<MariaProvider>());
  registry->Add(std::make_unique<OdbcProvider>(), true);
  return registry;
}

}  // namespace

DataAccessObjects::DataAccessObjects(EventQueue& queue, FailureSink* failures, RowMemory memory)
    : services_{queue, failures, AllProviders(), ThreadHost::Starter(leftBehind_),
                std::move(memory)} {}

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
