#include "tests/data/servers/TestServers.h"

#include "tests/data/servers/OdbcFiles.h"

namespace tessel::test {

TestServers::TestServers() { UseOwnOdbcFiles(folder_.Path()); }

TestServers& TestServers::Instance() {
  static TestServers servers;
  return servers;
}

DatabaseServer& TestServers::Postgres() {
  if (!postgres_) postgres_ = std::make_unique<DatabaseServer>(folder_, "postgres", PostgresRecipe);
  return *postgres_;
}

DatabaseServer& TestServers::MariaDb() {
  if (!mariaDb_) mariaDb_ = std::make_unique<DatabaseServer>(folder_, "mariadb", MariaDbRecipe);
  return *mariaDb_;
}

}  // namespace tessel::test
