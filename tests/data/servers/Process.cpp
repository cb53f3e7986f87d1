#include "tests/data/servers/Process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessel::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Whether a thread, named by its folder, has neither been stopped nor ended. Its state stands
/// behind the name of the program, in parentheses: proc(5).
bool Runs(const std::filesystem::path& thread) {
  std::ifstream file(thread / "stat");
  std::string text;
  std::getline(file, text);
  const std::size_t name = text.rfind(')');
  if (name == std::string::npos || name + 2 >= text.size()) return false;
  return std::string_view("TtZX").find(text[name + 2]) == std::string_view::npos;
}

class SpawnSettings {
 public:
  explicit SpawnSettings(const ProcessFiles& files) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, files.input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, files.output.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  [[nodiscard]] pid_t Spawn(const CommandLine& command) const {
    std::vector<char*> arguments;
    for (const std::string& part : command) arguments.push_back(const_cast<char*>(part.c_str()));
    arguments.push_back(nullptr);
    pid_t pid = 0;
    const int failure =
        posix_spawnp(&pid, arguments[0], &actions_, &attributes_, arguments.data(), environ);
    if (failure != 0)
      throw std::runtime_error("Cannot start " + command[0] + ": " + std::strerror(failure));
    return pid;
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

/// Parent of a process, 0 when it is gone. In /proc/<pid>/stat it follows the name, which ends with
/// ")".
pid_t ParentOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::stringstream text;
  text << file.rdbuf();
  const std::string stat = text.str();
  const std::size_t name = stat.rfind(')');
  int parent = 0;
  char state = 0;
  if (name == std::string::npos) return 0;
  if (std::sscanf(stat.c_str() + name + 1, " %c %d", &state, &parent) != 2) return 0;
  return parent;
}

std::vector<pid_t> AllProcesses() {
  std::vector<pid_t> all;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; }))
      all.push_back(std::stoi(name));
  }
  return all;
}

std::vector<pid_t> Tree(pid_t root) {
  std::vector<std::pair<pid_t, pid_t>> parents;
  for (const pid_t pid : AllProcesses()) parents.emplace_back(pid, ParentOf(pid));
  std::vector<pid_t> tree{root};
  for (std::size_t i = 0; i < tree.size(); ++i)
    for (const auto& [pid, parent] : parents)
      if (parent == tree[i]) tree.push_back(pid);
  return tree;
}

}  // namespace

Process::Process(const CommandLine& command, const ProcessFiles& files)
    : pid_(SpawnSettings(files).Spawn(command)) {}

Process& Process::operator=(Process&& other) noexcept {
  std::swap(pid_, other.pid_);
  return *this;
}

Process::~Process() {
  if (pid_ == 0) return;
  Signal(SIGKILL);
  waitpid(pid_, nullptr, 0);
}

std::optional<int> Process::Wait(milliseconds limit) {
  const auto end = steady_clock::now() + limit;
  int status = 0;
  while (waitpid(pid_, &status, WNOHANG) != pid_) {
    if (steady_clock::now() >= end) return std::nullopt;
    std::this_thread::sleep_for(milliseconds(5));
  }
  pid_ = 0;
  return status;
}

void Process::Signal(int signal) const {
  if (pid_ != 0) kill(pid_, signal);
}

bool Process::IsStopped() const {
  if (pid_ == 0) return true;
  return std::ranges::all_of(Tree(pid_), [](pid_t pid) {
    std::error_code ended;
    const std::filesystem::directory_iterator threads("/proc/" + std::to_string(pid) + "/task",
                                                      ended);
    return std::ranges::all_of(threads, [](const auto& thread) { return !Runs(thread.path()); });
  });
}

void Process::SignalTree(int signal) const {
  if (pid_ == 0) return;
  for (const pid_t pid : Tree(pid_)) kill(pid, signal);
}

void RunCommand(const CommandLine& command, const ProcessFiles& files) {
  Process process(command, files);
  const std::optional<int> status = process.Wait(std::chrono::minutes(1));
  if (status == 0) return;
  throw std::runtime_error(command[0] + (status ? " failed:\n" : " does not end:\n") +
                           FileTail(files.output));
}

std::string FileTail(const std::filesystem::path& file) {
  constexpr std::size_t limit = 2000;
  std::stringstream text;
  text << std::ifstream(file).rdbuf();
  std::string whole = text.str();
  return whole.size() <= limit ? whole : whole.substr(whole.size() - limit);
}

}  // namespace tessel::test
