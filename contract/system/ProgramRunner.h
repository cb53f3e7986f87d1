#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Another program that runs and is given a text and gives one back. Nothing goes on by itself: the
/// texts pass while HasEnded is called, which is therefore called again and again, as from a loop
/// that lets the interface have its turn. UI thread. Destroying it ends the program at once if it
/// still runs, whatever it does then, and leaves nothing of it behind.
class RunningProgram {
 public:
  virtual ~RunningProgram() = default;

  /// Passes texts on, waiting for news no longer than `milliseconds`. False while it runs; true
  /// once it has ended and all it wrote has been read.
  [[nodiscard]] virtual bool HasEnded(int milliseconds) = 0;
  /// What it wrote to its standard output, as bytes; whole only after the end.
  [[nodiscard]] virtual const std::string& Output() const = 0;
  /// What it wrote to its standard error.
  [[nodiscard]] virtual const std::string& Complaints() const = 0;
  /// Its exit status; -1 before the end, and when a signal ended it.
  [[nodiscard]] virtual int ExitStatus() const = 0;
};

/// Starts programs that do one piece of work. They get no terminal, and their folder is this
/// program's; so is their environment. What they give is not trusted: whoever takes it looks
/// whether it is what was asked for. UI thread.
class ProgramRunner {
 public:
  virtual ~ProgramRunner() = default;

  /// The full path of the program of that name on the search path of the environment; empty when it
  /// is not there.
  [[nodiscard]] virtual std::string Find(std::string_view name) const = 0;
  /// Starts the program at `path` with `arguments`, which no shell reads, and gives it `input` as
  /// its standard input. Raises Error(file) with the system's reason when it cannot be started.
  [[nodiscard]] virtual std::unique_ptr<RunningProgram>
  Start(const std::string& path, const std::vector<std::string>& arguments, std::string input) = 0;
};

}  // namespace tessel
