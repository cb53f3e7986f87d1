#pragma once

#include <filesystem>
#include <string>

#include "tests/data/servers/Process.h"

namespace tessel::test {

/// The throw-away folder of the test servers, below the system's folder for temporary files.
///
/// A keeper process waits for the end of the test program, however it ends, then ends every server
/// whose process id stands in a file `<folder>/*.pid` and deletes the folder. So a test program
/// that crashes or is killed leaves nothing behind either.
class ServerFolder {
 public:
  ServerFolder();
  ServerFolder(const ServerFolder&) = delete;
  /// Lets the keeper do its work and waits for it.
  ~ServerFolder();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  /// A new sub-folder that belongs to the user the servers run as.
  [[nodiscard]] std::filesystem::path MakeServerFolder(const std::string& name) const;
  /// Tells the keeper of a running server.
  void NoteRunning(const std::string& name, pid_t pid) const;
  /// Tells the keeper that it has ended.
  void NoteEnded(const std::string& name) const;

 private:
  std::filesystem::path path_;
  int endOfKeeper_ = -1;
  Process keeper_;
};

/// `command` as it must be run for a server: database servers refuse to run as root, so root runs
/// them as an ordinary user of the system. Throws std::runtime_error when there is none.
[[nodiscard]] CommandLine AsServerUser(CommandLine command);

}  // namespace tessel::test
