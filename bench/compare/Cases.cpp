#include "bench/compare/Cases.h"

#include <exception>
#include <iostream>
#include <vector>

namespace tessel::bench {

int RunCase(const std::map<std::string, Case>& cases, int argc, char* argv[]) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto found = arguments.empty() ? cases.end() : cases.find(arguments[0]);
  if (found == cases.end() || arguments.size() != found->second.arguments + 1) {
    std::cerr << "usage: " << argv[0] << " <case> [argument...]\n";
    return 2;
  }
  try {
    found->second.run(Arguments(arguments).subspan(1));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << arguments[0] << ": " << error.what() << '\n';
    return 1;
  }
}

}  // namespace tessel::bench
