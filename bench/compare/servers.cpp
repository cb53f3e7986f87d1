// Starts a PostgreSQL and a MariaDB server of its own on the loopback interface, prints how to
// reach them and holds them until its standard input ends.

#include <iostream>
#include <string>

#include "tests/data/servers/TestServers.h"

namespace {

void Tell(const char* name, const tessel::test::ServerLogin& login) {
  std::cout << name << ' ' << login.host << ' ' << login.port << ' ' << login.user << ' '
            << login.password << ' ' << login.database << '\n';
}

}  // namespace

int main() {
  try {
    auto& servers = tessel::test::TestServers::Instance();
    Tell("postgresql", servers.Postgres().Login());
    Tell("mariadb", servers.MariaDb().Login());
    std::cout << "folder " << servers.Folder().string() << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
    }
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
