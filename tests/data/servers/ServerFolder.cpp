#include "tests/data/servers/ServerFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessel::test {

namespace {

/// $1 = the folder. Standard input ends with the test program. SIGQUIT ends a server at once.
constexpr const char* keeperScript = R"(
cat > /dev/null
for file in "$1"/*.pid; do
  [ -e "$file" ] || continue
  pid=$(cat "$file")
  kill -CONT "$pid" && kill -QUIT "$pid"
  tries=0
  while grep -qs '^State:.[^XZ]' "/proc/$pid/status" && [ "$tries" -lt 80 ]; do
    sleep 0.1
    tries=$((tries + 1))
  done
  kill -KILL "$pid"
done
rm -rf -- "$1"
)";

std::filesystem::path MakeTemporaryFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "tessel-servers-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr)
    throw std::runtime_error("Cannot make " + pattern + ": " + std::strerror(errno));
  chmod(pattern.c_str(), 0755);
  return pattern;
}

/// The user that servers run as; null when the test program is no root and may run them itself.
const passwd* ServerUser() {
  if (geteuid() != 0) return nullptr;
  for (const char* name : {"postgres", "mysql", "nobody"})
    if (const passwd* user = getpwnam(name)) return user;
  throw std::runtime_error("No ordinary user to run database servers as.");
}

}  // namespace

ServerFolder::ServerFolder() : path_(MakeTemporaryFolder()) {
  const std::filesystem::path fifo = path_ / "keeper";
  if (mkfifo(fifo.c_str(), 0600) != 0) throw std::runtime_error("Cannot make " + fifo.string());
  // Opened for both directions first, so that neither this open nor the keeper's waits for the
  // other side.
  endOfKeeper_ = open(fifo.c_str(), O_RDWR | O_CLOEXEC);
  keeper_ = Process({"/bin/sh", "-c", keeperScript, "keeper", path_.string()}, {.input = fifo});
}

ServerFolder::~ServerFolder() {
  close(endOfKeeper_);
  (void)keeper_.Wait(std::chrono::seconds(30));
}

std::filesystem::path ServerFolder::MakeServerFolder(const std::string& name) const {
  const std::filesystem::path folder = path_ / name;
  std::filesystem::create_directory(folder);
  const passwd* user = ServerUser();
  if (user != nullptr && chown(folder.c_str(), user->pw_uid, user->pw_gid) != 0)
    throw std::runtime_error("Cannot give " + folder.string() + " to " + user->pw_name);
  return folder;
}

void ServerFolder::NoteRunning(const std::string& name, pid_t pid) const {
  std::ofstream(path_ / (name + ".pid")) << pid << '\n';
}

void ServerFolder::NoteEnded(const std::string& name) const {
  std::filesystem::remove(path_ / (name + ".pid"));
}

CommandLine AsServerUser(CommandLine command) {
  const passwd* user = ServerUser();
  if (user == nullptr) return command;
  CommandLine whole{"setpriv", "--reuid=" + std::to_string(user->pw_uid),
                    "--regid=" + std::to_string(user->pw_gid), "--clear-groups"};
  whole.insert(whole.end(), command.begin(), command.end());
  return whole;
}

}  // namespace tessel::test
