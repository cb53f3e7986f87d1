#include "tests/data/servers/FrontRecipes.h"

#include <fstream>

#include "tests/data/servers/RecipeParts.h"

namespace tessel::test {

namespace fs = std::filesystem;

namespace {

void Set(CommandLine& command, const std::string& setting) {
  command.insert(command.end(), {"-c", setting});
}

/// "host0 = ..." of a server behind pgpool, its number `place`.
std::string PgPoolBackend(const ServerLogin& behind, const std::string& place,
                          const std::string& flags) {
  return "backend_hostname" + place + " = '" + behind.host + "'\n" + "backend_port" + place +
         " = " + std::to_string(behind.port) + "\n" + "backend_weight" + place + " = 1\n" +
         "backend_flag" + place + " = '" + flags + "'\n";
}

}  // namespace

/// A server that is gone is said to be soon, and looked for again at once.
ServerRecipe PgBouncerRecipe(const fs::path& folder, const ServerLogin& login,
                             const ServerLogin& behind) {
  const fs::path program = "/usr/sbin/pgbouncer";
  RequireProgram(program, "pgbouncer");
  const fs::path settings = folder / "pgbouncer.ini";
  const fs::path users = folder / "users.txt";
  const std::string server = "host=" + behind.host + " port=" + std::to_string(behind.port);
  WriteText(users, "\"" + behind.user + "\" \"" + behind.password + "\"\n");
  WriteText(settings, "[databases]\n"
                      "pooled = " +
                          server + " dbname=" + behind.database +
                          "\n"
                          "narrow = " +
                          server + " dbname=" + behind.database +
                          " pool_size=1\n"
                          "* = " +
                          server +
                          "\n"
                          "[pgbouncer]\n"
                          "listen_addr = " +
                          login.host +
                          "\n"
                          "listen_port = " +
                          std::to_string(login.port) +
                          "\n"
                          "unix_socket_dir =\n"
                          "auth_type = scram-sha-256\n"
                          "auth_file = " +
                          users.string() +
                          "\n"
                          "pool_mode = transaction\n"
                          "server_round_robin = 1\n"
                          "min_pool_size = 3\n"
                          "default_pool_size = 10\n"
                          "server_login_retry = 0.2\n"
                          "query_wait_timeout = 3\n");
  ServerRecipe recipe;
  recipe.command = {program, settings};
  ServerLogin pooled = login;
  pooled.database = "pooled";
  recipe.answers = [pooled] { return PostgresAnswers(pooled); };
  return recipe;
}

// --- pgpool-II -----------------------------------------------------------------------------------

ServerRecipe PrimaryRecipe(const fs::path& folder, const ServerLogin& login) {
  ServerRecipe recipe = PostgresRecipe(folder, login);
  Set(recipe.command, "synchronous_standby_names=*");
  Set(recipe.command, "synchronous_commit=remote_apply");
  return recipe;
}

ServerRecipe StandbyRecipe(const fs::path& folder, const ServerLogin& login,
                           const ServerLogin& primary) {
  ServerRecipe recipe;
  recipe.preparation = {{{PostgresPrograms() / "pg_basebackup", "-D", folder / "data", "-d",
                          PostgresAddress(primary), "-R", "-c", "fast", "--no-sync"}}};
  recipe.command = PostgresCommand(folder, login);
  Set(recipe.command, "wal_retrieve_retry_interval=50ms");
  recipe.answers = [login] { return PostgresAnswers(login); };
  return recipe;
}

/// It is told which is which, so it neither looks for that nor changes it.
ServerRecipe PgPoolRecipe(const fs::path& folder, const ServerLogin& login,
                          const ServerLogin& primary, const ServerLogin& standby) {
  const fs::path program = "/usr/sbin/pgpool";
  RequireProgram(program, "pgpool2");
  const std::string place = "'" + folder.string() + "'\n";
  WriteText(folder / "pool_passwd", login.user + ":TEXT" + login.password + "\n");
  WriteText(folder / "pool_hba.conf", "host all all 127.0.0.1/32 scram-sha-256\n");
  WriteText(folder / "pcp.conf", "");
  WriteText(folder / "pgpool.conf",
            "backend_clustering_mode = 'streaming_replication'\n"
            "listen_addresses = '" +
                login.host +
                "'\n"
                "port = " +
                std::to_string(login.port) + "\n" +
                PgPoolBackend(primary, "0", "ALWAYS_PRIMARY|DISALLOW_TO_FAILOVER") +
                PgPoolBackend(standby, "1", "DISALLOW_TO_FAILOVER") + "socket_dir = " + place +
                "pcp_socket_dir = " + place + "work_dir = " + place + "logdir = " + place +
                "pid_file_name = '" + (folder / "pgpool.pid").string() +
                "'\n"
                "pcp_listen_addresses = ''\n"
                "enable_pool_hba = on\n"
                "pool_passwd = 'pool_passwd'\n"
                "num_init_children = 12\n"
                "load_balance_mode = on\n"
                "statement_level_load_balance = on\n"
                "sr_check_period = 0\n"
                "health_check_period = 0\n"
                "failover_on_backend_error = off\n");
  ServerRecipe recipe;
  recipe.command = {program,
                    "-n",
                    "-D",
                    "-f",
                    folder / "pgpool.conf",
                    "-F",
                    folder / "pcp.conf",
                    "-a",
                    folder / "pool_hba.conf"};
  recipe.answers = [login] { return PostgresAnswers(login); };
  return recipe;
}

// --- Spider --------------------------------------------------------------------------------------

ServerRecipe SpiderRecipe(const fs::path& folder, const ServerLogin& login,
                          const std::vector<ServerLogin>& parts) {
  RequireProgram("/usr/lib/mysql/plugin/ha_spider.so", "mariadb-plugin-spider");
  ServerRecipe recipe = MariaDbRecipe(folder, login);
  std::ofstream init(folder / "init.sql", std::ios::app);
  for (std::size_t i = 0; i < parts.size(); ++i)
    init << "create server if not exists part" << i + 1
         << " foreign data wrapper mysql options (host '" << parts[i].host << "', port "
         << parts[i].port << ", user '" << parts[i].user << "', password '" << parts[i].password
         << "', database '" << parts[i].database << "');\n";
  recipe.command.emplace_back("--plugin-load-add=ha_spider.so");
  return recipe;
}

}  // namespace tessel::test
