#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace tessel::test {

/// A program and its arguments; the program is searched on the path unless it has a slash.
using CommandLine = std::vector<std::string>;

/// Where a child process reads from and writes to.
struct ProcessFiles {
  std::filesystem::path input = "/dev/null";
  std::filesystem::path output = "/dev/null";  ///< Standard output and error, appended.
};

/// A child process of the test program, in a process group of its own (so that Ctrl+C at a terminal
/// reaches the test program only). The destructor kills it and waits for its end.
class Process {
 public:
  Process() = default;
  /// Starts it; throws std::runtime_error when it cannot be started.
  explicit Process(const CommandLine& command, const ProcessFiles& files = {});
  Process(Process&& other) noexcept : pid_(std::exchange(other.pid_, 0)) {}
  Process& operator=(Process&& other) noexcept;
  ~Process();

  /// 0 once its end was waited for.
  [[nodiscard]] pid_t Id() const { return pid_; }
  /// Its exit status as waitpid gives it, or nothing when it still runs after `limit`.
  std::optional<int> Wait(std::chrono::milliseconds limit);
  /// Sends `signal` to the process; nothing happens when it has ended.
  void Signal(int signal) const;
  /// Whether every thread of the process and of all that descend from it has been stopped by a
  /// signal, or ended.
  [[nodiscard]] bool IsStopped() const;
  /// Sends `signal` to the process and all that descend from it.
  void SignalTree(int signal) const;

 private:
  pid_t pid_ = 0;
};

/// Runs a command to its end. Throws std::runtime_error, with the tail of what it wrote, when it
/// fails or takes longer than a minute.
void RunCommand(const CommandLine& command, const ProcessFiles& files);

/// The last 2,000 bytes of a file; empty when it cannot be read.
[[nodiscard]] std::string FileTail(const std::filesystem::path& file);

}  // namespace tessel::test
