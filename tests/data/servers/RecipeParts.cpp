#include "tests/data/servers/RecipeParts.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace tessel::test {

namespace fs = std::filesystem;

fs::path PostgresPrograms() {
  fs::path newest;
  int newestVersion = 0;
  const fs::path root = "/usr/lib/postgresql";
  if (!fs::exists(root)) throw std::runtime_error("No PostgreSQL server in " + root.string());
  for (const auto& entry : fs::directory_iterator(root)) {
    const int version = std::atoi(entry.path().filename().c_str());
    if (version <= newestVersion || !fs::exists(entry.path() / "bin/initdb")) continue;
    newest = entry.path() / "bin";
    newestVersion = version;
  }
  if (newest.empty()) throw std::runtime_error("No PostgreSQL server in " + root.string());
  return newest;
}

void RequireProgram(const fs::path& program, const std::string& package) {
  if (fs::exists(program)) return;
  throw std::runtime_error("There is no " + program.string() + ": install the package " + package +
                           ".");
}

void WriteText(const fs::path& file, const std::string& text) {
  std::ofstream(file) << text;
  fs::permissions(file, fs::perms(0644));
}

std::string PostgresAddress(const ServerLogin& login) {
  return "host=" + login.host + " port=" + std::to_string(login.port) + " user=" + login.user +
         " password=" + login.password + " dbname=" + login.database;
}

bool PostgresAnswers(const ServerLogin& login) {
  Process process({PostgresPrograms() / "psql", "-X", "-q", "-c", "select 1",
                   PostgresAddress(login) + " connect_timeout=5"});
  return process.Wait(std::chrono::seconds(10)) == 0;
}

CommandLine PostgresCommand(const fs::path& folder, const ServerLogin& login) {
  CommandLine command = {PostgresPrograms() / "postgres", "-D", folder / "data"};
  for (const std::string& setting :
       {"listen_addresses=" + login.host, "port=" + std::to_string(login.port),
        std::string("unix_socket_directories="), std::string("fsync=off"),
        std::string("synchronous_commit=off"), std::string("full_page_writes=off"),
        std::string("shared_buffers=32MB"), std::string("TimeZone=UTC")})
    command.insert(command.end(), {"-c", setting});
  return command;
}

}  // namespace tessel::test
