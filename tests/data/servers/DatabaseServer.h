#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/data/servers/Process.h"
#include "tests/data/servers/ServerFolder.h"

namespace tessel::test {

/// How to reach a test server. The user may do everything.
struct ServerLogin {
  std::string host = "127.0.0.1";
  int port = 0;
  std::string user = "tessel";
  std::string password = "Only4Tests";
  std::string database = "shop";  ///< Empty at the start.
};

/// How one kind of server is set up and run.
struct ServerRecipe {
  struct Step {
    CommandLine command;
    std::filesystem::path input = "/dev/null";
  };
  std::string name;
  std::vector<Step> preparation;
  CommandLine command;  ///< Runs the server in the foreground.
  std::function<bool()> answers;
};

/// A recipe writes the files it needs into `folder`, which belongs to the server's user. Throws
/// std::runtime_error when the server is not installed.
[[nodiscard]] ServerRecipe PostgresRecipe(const std::filesystem::path& folder,
                                          const ServerLogin& login);
[[nodiscard]] ServerRecipe MariaDbRecipe(const std::filesystem::path& folder,
                                         const ServerLogin& login);
using RecipeMaker =
    std::function<ServerRecipe(const std::filesystem::path& folder, const ServerLogin& login)>;

/// A running database server of the test's own, on a free port of the loopback interface. Its data
/// are thrown away.
class DatabaseServer {
 public:
  /// Sets it up and starts it; returns when it answers. Throws std::runtime_error with the end of
  /// the server's log when it does not within a minute.
  DatabaseServer(const ServerFolder& folders, const std::string& name, const RecipeMaker& recipe);
  DatabaseServer(const DatabaseServer&) = delete;
  ~DatabaseServer();

  [[nodiscard]] const ServerLogin& Login() const { return login_; }

  /// Stops every process of the server where it stands: connections stay, nothing is answered.
  void Freeze() const;
  /// Lets a frozen server go on.
  void Thaw() const;
  /// Ends the server at once, as a crash would; open connections are lost.
  void Kill();
  /// Starts it again on the same port and data; returns when it answers. A running one is killed
  /// first.
  void Restart();

  /// Throws std::runtime_error with the end of the server's log when it does not within a minute.
  void WaitUntilItAnswers();

  [[nodiscard]] std::string LogTail() const { return FileTail(log_); }

 private:
  void Start();

  const ServerFolder& folders_;
  std::filesystem::path log_;
  ServerLogin login_;
  ServerRecipe recipe_;
  Process process_;
};

/// Holds a server frozen for as long as it lives.
class FrozenServer {
 public:
  explicit FrozenServer(const DatabaseServer& server) : server_(server) { server_.Freeze(); }
  FrozenServer(const FrozenServer&) = delete;
  ~FrozenServer() { server_.Thaw(); }

 private:
  const DatabaseServer& server_;
};

}  // namespace tessel::test
