#include <stdexcept>

#include "tests/data/servers/DatabaseServer.h"
#include "tests/data/servers/Listener.h"
#include "tests/data/servers/RecipeParts.h"

namespace tessel::test {

namespace fs = std::filesystem;

ServerRecipe PostgresRecipe(const fs::path& folder, const ServerLogin& login) {
  const fs::path programs = PostgresPrograms();
  const std::string server = programs / "postgres";
  const std::string data = folder / "data";
  const fs::path passwordFile = folder / "password";
  const fs::path databaseFile = folder / "database.sql";
  WriteText(passwordFile, login.password + "\n");
  WriteText(databaseFile, "create database " + login.database + "\n");
  ServerRecipe recipe;
  recipe.preparation = {
      {{programs / "initdb", "-D", data, "-U", login.user, "--no-sync", "--locale=C.UTF-8",
        "--encoding=UTF8", "--auth=scram-sha-256", "--pwfile=" + passwordFile.string()}},
      {{server, "--single", "-D", data, "-c", "fsync=off", "postgres"}, databaseFile}};
  recipe.command = PostgresCommand(folder, login);
  recipe.answers = [login] { return PostgresAnswers(login); };
  return recipe;
}

ServerRecipe MariaDbRecipe(const fs::path& folder, const ServerLogin& login) {
  const fs::path server = "/usr/sbin/mariadbd";
  if (!fs::exists(server)) throw std::runtime_error("No MariaDB server: " + server.string());
  const std::string data = "--datadir=" + (folder / "data").string();
  const fs::path init = folder / "init.sql";
  WriteText(init, "create database if not exists " + login.database + " character set utf8mb4;\n" +
                      "create user if not exists " + login.user + " identified by '" +
                      login.password + "';\n" + "grant all on *.* to " + login.user +
                      " with grant option;\n");
  ServerRecipe recipe;
  recipe.preparation = {{{"mariadb-install-db", "--no-defaults", data, "--skip-test-db",
                          "--skip-name-resolve", "--auth-root-authentication-method=normal"}}};
  recipe.command = {server,
                    "--no-defaults",
                    data,
                    "--bind-address=" + login.host,
                    "--port=" + std::to_string(login.port),
                    "--socket=server.sock",
                    "--pid-file=server.pid",
                    "--init-file=" + init.string(),
                    "--skip-name-resolve",
                    "--innodb-flush-log-at-trx-commit=0",
                    "--innodb-flush-method=nosync",
                    "--innodb-buffer-pool-size=32M",
                    "--max-allowed-packet=256M",
                    "--default-time-zone=+00:00"};
  recipe.answers = [port = login.port] { return Greets(port); };
  return recipe;
}

}  // namespace tessel::test
