#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>

namespace tessel::bench {

using Arguments = std::span<const std::string>;

struct Case {
  std::size_t arguments = 0;  ///< As many as it takes.
  std::function<void(Arguments)> run;
};

/// Runs the case that the command line names first, with the arguments behind it; it prints lines
/// of a figure's name and its value. Returns the exit status of the process.
int RunCase(const std::map<std::string, Case>& cases, int argc, char* argv[]);

}  // namespace tessel::bench
