#include "tests/data/servers/TestServers.h"

#include "tests/data/servers/FrontRecipes.h"
#include "tests/data/servers/OdbcFiles.h"

namespace tessel::test {

namespace {

using Path = std::filesystem::path;

}  // namespace

TestServers::TestServers() { UseOwnOdbcFiles(folder_.Path()); }

TestServers& TestServers::Instance() {
  static TestServers servers;
  return servers;
}

DatabaseServer& TestServers::Started(const std::string& name, const RecipeMaker& recipe) {
  std::unique_ptr<DatabaseServer>& server = servers_[name];
  if (!server) server = std::make_unique<DatabaseServer>(folder_, name, recipe);
  return *server;
}

DatabaseServer& TestServers::Postgres() { return Started("postgres", PostgresRecipe); }

DatabaseServer& TestServers::MariaDb() { return Started("mariadb", MariaDbRecipe); }

DatabaseServer& TestServers::PgBouncer() {
  const ServerLogin behind = Postgres().Login();
  return Started("pgbouncer", [&](const Path& folder, const ServerLogin& login) {
    return PgBouncerRecipe(folder, login, behind);
  });
}

DatabaseServer& TestServers::PgPoolPrimary() { return Started("primary", PrimaryRecipe); }

DatabaseServer& TestServers::PgPool() {
  const ServerLogin primary = PgPoolPrimary().Login();
  const auto standbyRecipe = [&](const Path& folder, const ServerLogin& login) {
    return StandbyRecipe(folder, login, primary);
  };
  const ServerLogin standby = Started("standby", standbyRecipe).Login();
  return Started("pgpool", [&](const Path& folder, const ServerLogin& login) {
    return PgPoolRecipe(folder, login, primary, standby);
  });
}

DatabaseServer& TestServers::PostgresPart(int number) {
  return Started("postgres_part" + std::to_string(number), PostgresRecipe);
}

DatabaseServer& TestServers::SpiderPart() { return Started("spider_part", MariaDbRecipe); }

DatabaseServer& TestServers::Spider() {
  const std::vector<ServerLogin> parts = {MariaDb().Login(), SpiderPart().Login()};
  return Started("spider", [&](const Path& folder, const ServerLogin& login) {
    return SpiderRecipe(folder, login, parts);
  });
}

}  // namespace tessel::test
